#include "tests/tools/commandrun.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr int side = 1024;

/// A frame in a file, each pixel the same.
QByteArray evenFrame(const QByteArray &number)
{
    return (number + QByteArray("," + number).repeated(side - 1) + '\n').repeated(side);
}

/// The numbers of every 16th row of a file.
QList<double> numbers(const QByteArray &csv)
{
    constexpr qsizetype step = 16;
    const QList<QByteArray> rows = csv.split('\n');
    QList<double> values;
    for (qsizetype row = 0; row < rows.size(); row += step) {
        for (const QByteArray &value : rows[row].split(','))
            values << value.toDouble();
    }
    return values;
}

} // namespace

TEST_F(Commands, a_reference_is_the_frame_that_was_taken)
{
    detector("Light=0\n");
    command(QStringLiteral("calibrate"),
            {QStringLiteral("dark"), QStringLiteral("--to"), QStringLiteral("made/dark.csv"), json});
    EXPECT_EQ(exitCode, 0) << qPrintable(errors);
    EXPECT_EQ(summary()[u"frames"].toInt(), 1);
    EXPECT_EQ(summary()[u"file"].toString(),
              QDir::current().absoluteFilePath(QStringLiteral("made/dark.csv")));
    runVirtual({QStringLiteral("--data")}); // a detector that is switched on begins with the same frame
    EXPECT_EQ(exitCode, 0) << qPrintable(errors);
    const QByteArray reference = folder.read(QStringLiteral("made/dark.csv"));
    EXPECT_FALSE(reference.isEmpty());
    EXPECT_EQ(reference, folder.read(QStringLiteral("out/T/T_data1.csv")));
    EXPECT_EQ(reference, folder.read(QStringLiteral("Logs/calib/data_fulloff.csv"))) << "as of the window";
}

TEST_F(Commands, a_reference_of_several_frames_is_their_mean)
{
    detector("Light=0.5\n");
    command(QStringLiteral("calibrate"),
            {QStringLiteral("bright"), QStringLiteral("--frames"), QStringLiteral("2"),
             QStringLiteral("--to"), QStringLiteral("b.csv")});
    EXPECT_EQ(exitCode, 0) << qPrintable(errors);
    EXPECT_TRUE(output.contains(QStringLiteral("Bright reference in "))) << qPrintable(output);
    runVirtual({QStringLiteral("--data"), QStringLiteral("--frames"), QStringLiteral("2")});
    const QList<double> reference = numbers(folder.read(QStringLiteral("b.csv")));
    const QList<double> first = numbers(folder.read(QStringLiteral("out/T/T_data1.csv")));
    const QList<double> second = numbers(folder.read(QStringLiteral("out/T/T_data2.csv")));
    ASSERT_EQ(reference.size(), first.size());
    EXPECT_NE(first, second) << "noise";
    double farthest = 0.0;
    for (qsizetype i = 0; i < reference.size(); ++i)
        farthest = std::max(farthest, std::abs(reference[i] - (first[i] + second[i]) / 2.0));
    EXPECT_LE(farthest, 0.002) << "three times six digits of 150 nA";
}

TEST_F(Commands, frames_are_shown_between_the_two_references_that_are_given)
{
    detector("");
    folder.write(QStringLiteral("dark.csv"), evenFrame("10"));
    folder.write(QStringLiteral("bright.csv"), evenFrame("110"));
    runVirtual({QStringLiteral("--data"), QStringLiteral("--dark"), QStringLiteral("dark.csv"),
                QStringLiteral("--bright"), QStringLiteral("bright.csv")});
    EXPECT_EQ(exitCode, 0) << qPrintable(errors);
    const QList<double> currents = numbers(folder.read(QStringLiteral("out/T/T_data1.csv")));
    const QList<double> levels = numbers(folder.read(QStringLiteral("out/T/T_data_gray1.csv")));
    ASSERT_EQ(currents.size(), levels.size());
    int between = 0;
    double farthest = 0.0;
    for (qsizetype i = 0; i < currents.size(); ++i) {
        const double wanted = std::clamp((currents[i] - 10.0) / 100.0 * 255.0, 0.0, 255.0);
        farthest = std::max(farthest, std::abs(levels[i] - wanted));
        between += levels[i] > 0.0 && levels[i] < 255.0 ? 1 : 0;
    }
    EXPECT_LE(farthest, 1.01) << "cut to whole numbers";
    EXPECT_GT(between, 100);
}

TEST_F(Commands, with_a_bright_reference_alone_nothing_is_dark)
{
    detector("");
    folder.write("bright.csv", evenFrame("50"));
    runVirtual({"--data", "--bright", "bright.csv"});
    EXPECT_EQ(exitCode, 0) << qPrintable(errors);
    const QList<double> currents = numbers(folder.read("out/T/T_data1.csv"));
    const QList<double> levels = numbers(folder.read("out/T/T_data_gray1.csv"));
    ASSERT_EQ(currents.size(), levels.size());
    double farthest = 0.0;
    for (qsizetype i = 0; i < currents.size(); ++i)
        farthest =
            std::max(farthest, std::abs(levels[i] - std::clamp(currents[i] / 50.0 * 255.0, 0.0, 255.0)));
    EXPECT_LE(farthest, 1.01) << "cut to whole numbers";
}

TEST_F(Commands, a_reference_that_is_not_whole_is_told_and_nothing_is_opened)
{
    detector("");
    folder.write(QStringLiteral("cut.csv"), evenFrame("1").left(10000));
    folder.write(QStringLiteral("words.csv"), evenFrame("x"));
    const QList<std::pair<QString, QString>> wrong{
        {QStringLiteral("cut.csv"), QStringLiteral("cut.csv is incomplete: line 5 holds 905 values")},
        {QStringLiteral("words.csv"), QStringLiteral("words.csv holds no number in line 1")},
        {QStringLiteral("none.csv"), QStringLiteral("none.csv is missing: ")}};
    for (const auto &[file, text] : wrong) {
        command(QStringLiteral("acquire"), {QStringLiteral("--dark"), file});
        expectFailure(text);
    }
    EXPECT_FALSE(QFile::exists(folder.filePath(QStringLiteral("written.txt"))));
}

TEST_F(Commands, a_reference_that_cannot_be_written_is_an_error)
{
    detector("");
    QDir().mkpath(QStringLiteral("dark.csv"));
    command(QStringLiteral("calibrate"),
            {QStringLiteral("dark"), QStringLiteral("--to"), QStringLiteral("dark.csv")});
    expectFailure(QStringLiteral("the reference dark.csv could not be written; the log tells why"));
    command(QStringLiteral("calibrate"),
            {QStringLiteral("grey"), QStringLiteral("--to"), QStringLiteral("x")});
    EXPECT_EQ(exitCode, 2);
    EXPECT_TRUE(errors.contains(QStringLiteral("calibrate takes dark or bright, not \"grey\"")));
    command(QStringLiteral("calibrate"), {QStringLiteral("dark")});
    EXPECT_EQ(exitCode, 2);
    EXPECT_TRUE(errors.contains(QStringLiteral("calibrate needs --to")));
}

TEST_F(Commands, a_reference_whose_folder_cannot_be_made_is_told_before_the_detector_is_opened)
{
    detector("");
    folder.write("file", "stands where the folder should be");
    command("calibrate", {"dark", "--to", "file/dark.csv"});
    expectFailure("the folder file cannot be created");
    EXPECT_FALSE(QFile::exists(folder.filePath("written.txt")));
}

TEST_F(Commands, a_detector_that_is_unplugged_leaves_no_reference)
{
    detector("[Faults]\nUnplugAtByte=5000000\n"); // in the second frame
    command(QStringLiteral("calibrate"),
            {QStringLiteral("bright"), QStringLiteral("--frames"), QStringLiteral("2"),
             QStringLiteral("--to"), QStringLiteral("b.csv")});
    expectFailure(QStringLiteral("the detector was unplugged, 1 of 2 received"));
    EXPECT_FALSE(QFile::exists(folder.filePath(QStringLiteral("b.csv"))));
}
