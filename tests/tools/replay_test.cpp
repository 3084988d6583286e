#include "tests/tools/commandrun.h"

#include <QRegularExpression>

namespace {

/// What the lines of frames tell of the currents.
QStringList currentsTold(const QString &output)
{
    static const QRegularExpression currents(QStringLiteral("min .*$"), QRegularExpression::MultilineOption);
    QStringList lines;
    for (auto matches = currents.globalMatch(output); matches.hasNext();)
        lines << matches.next().captured();
    return lines;
}

} // namespace

TEST_F(Commands, raw_frames_are_replayed_as_they_were_recorded)
{
    detector("");
    runVirtual({QStringLiteral("--frames"), QStringLiteral("2"), QStringLiteral("--picture"),
                QStringLiteral("--raw"), QStringLiteral("--tiff"), QStringLiteral("--npy")});
    EXPECT_EQ(exitCode, 0) << qPrintable(errors);
    const QStringList told = currentsTold(output);
    EXPECT_EQ(told.size(), 2);
    EXPECT_EQ(
        QDir(QStringLiteral("out/T")).entryList(QDir::Files, QDir::Name),
        QStringList({QStringLiteral("T.npy"), QStringLiteral("T.npy.json"), QStringLiteral("T.raw"),
                     QStringLiteral("T.raw.json"), QStringLiteral("T.tif"), QStringLiteral("T.tif.json"),
                     QStringLiteral("T_pic1.png"), QStringLiteral("T_pic2.png")}));
    const QJsonObject index =
        QJsonDocument::fromJson(folder.read(QStringLiteral("out/T/T.raw.json"))).object();
    EXPECT_EQ(index[u"detector"][u"serial_number"].toString(), QStringLiteral("QV1K"));
    EXPECT_TRUE(index[u"detector"][u"simulated"].toBool());

    const QStringList replay{QStringLiteral("replay"),    QStringLiteral("out/T/T.raw"),
                             QStringLiteral("--picture"), QStringLiteral("--npy"),
                             QStringLiteral("--output"),  QStringLiteral("again"),
                             QStringLiteral("--name"),    QStringLiteral("T")};
    run(replay);
    EXPECT_EQ(exitCode, 0) << qPrintable(errors);
    EXPECT_EQ(currentsTold(output), told);
    // Time by time, setting by setting.
    const auto description = [this](const char *folderOfIt) {
        return QJsonDocument::fromJson(
                   folder.read(QLatin1String(folderOfIt) + QStringLiteral("/T/T.npy.json")))
            .object();
    };
    EXPECT_EQ(description("again"), description("out"));
    for (const char *name : {"T_pic1.png", "T_pic2.png"}) {
        const QByteArray recorded = folder.read(QStringLiteral("out/T/") + QLatin1String(name));
        EXPECT_FALSE(recorded.isEmpty());
        EXPECT_TRUE(folder.read(QStringLiteral("again/T/") + QLatin1String(name)) == recorded) << name;
    }
}

TEST_F(Commands, a_recording_is_not_replayed_over_itself)
{
    detector("");
    runVirtual({QStringLiteral("--raw")});
    const QByteArray index = folder.read(QStringLiteral("out/T/T.raw.json"));
    run({QStringLiteral("replay"), QStringLiteral("out/T/T.raw"), QStringLiteral("--raw"),
         QStringLiteral("--output"), QStringLiteral("out"), QStringLiteral("--name"), QStringLiteral("T")});
    expectFailure(
        QStringLiteral("the frames would be written over themselves: choose another --output or --name"));
    EXPECT_EQ(folder.read(QStringLiteral("out/T/T.raw.json")), index);
}

TEST_F(Commands, raw_frames_are_replayed_into_raw_frames_of_another_recording)
{
    detector("");
    runVirtual({"--raw"});
    run({"replay", "out/T/T.raw", "--raw", "--output", "again", "--name", "T"});
    EXPECT_EQ(exitCode, 0) << qPrintable(errors);
    for (const char *name : {"T.raw", "T.raw.json"}) {
        const QByteArray recorded = folder.read(QLatin1String("out/T/") + QLatin1String(name));
        EXPECT_FALSE(recorded.isEmpty());
        EXPECT_TRUE(folder.read(QLatin1String("again/T/") + QLatin1String(name)) == recorded) << name;
    }
}

TEST_F(Commands, what_a_replay_cannot_read_or_write_is_told_before_a_frame_is)
{
    detector("");
    runVirtual({"--raw"});
    folder.write("file", "stands where the folder should be");
    run({"replay", "out/T/T.raw", "--output", "file"});
    expectFailure("the folder file cannot be created");
    EXPECT_EQ(output, QString());
    run({"replay", "out/T/T.raw", "--output", "again", "--dark", "none.csv", json});
    expectFailure("none.csv is missing: ");
    EXPECT_EQ(summary()["frames"].toInt(-1), 0);
    EXPECT_EQ(summary()["wanted"].toInt(), 1);
    EXPECT_TRUE(QDir("again").isEmpty());
}

TEST_F(Commands, of_a_recording_without_a_frame_no_video_can_be_made)
{
    folder.write("none.raw", "");
    folder.write("none.raw.json", "{\"frames\": []}");
    run({"replay", "none.raw", "--video", "--name", "T"});
    expectFailure("T/output_video.mp4 is missing or unreadable");
}

TEST_F(Commands, a_damaged_frame_ends_a_replay_and_the_frames_before_are_kept)
{
    detector("");
    runVirtual({QStringLiteral("--frames"), QStringLiteral("2"), QStringLiteral("--raw")});
    QByteArray frames = folder.read(QStringLiteral("out/T/T.raw"));
    frames.back() = static_cast<char>(frames.back() ^ 1);
    folder.write(QStringLiteral("out/T/T.raw"), frames);
    run({QStringLiteral("replay"), QStringLiteral("out/T/T.raw"), QStringLiteral("--name"),
         QStringLiteral("again"), json});
    expectFailure(QStringLiteral("T.raw: frame 2 is damaged: its checksum differs, 1 of 2 replayed"));
    EXPECT_EQ(summary()[u"frames"].toInt(), 1);
    EXPECT_EQ(QDir(QStringLiteral("again")).entryList(QDir::Files),
              QStringList(QStringLiteral("again_pic1.png")));
}

TEST_F(Commands, what_is_no_recording_is_not_replayed)
{
    run({QStringLiteral("replay"), QStringLiteral("none.raw")});
    expectFailure(QStringLiteral("none.raw.json cannot be read: "));
    run({QStringLiteral("replay")});
    expectRefusal(QStringLiteral("replay needs a file"));
}
