#include "tests/tools/acquirerun.h"

#include <QDir>
#include <QImage>
#include <QMap>
#include <QRegularExpression>

TEST_F(Acquire, five_frames_are_printed_and_stored_as_pictures)
{
    detector("");
    runVirtual({QStringLiteral("--frames"), QStringLiteral("5")});
    EXPECT_EQ(exitCode, 0) << qPrintable(errors);
    EXPECT_EQ(errors, QString());

    QRegularExpression line(QStringLiteral("^frame +(\\d+) +(\\d+\\.\\d{3}) s  min +(\\d+\\.\\d{4}) nA  "
                                           "mean +(\\d+\\.\\d{4}) nA  max +(\\d+\\.\\d{4}) nA$"),
                            QRegularExpression::MultilineOption);
    auto matches = line.globalMatch(output);
    for (int frame = 1; frame <= 5; ++frame) {
        ASSERT_TRUE(matches.hasNext()) << qPrintable(output);
        const QRegularExpressionMatch match = matches.next();
        EXPECT_EQ(match.captured(1).toInt(), frame);
        EXPECT_LE(match.captured(3).toDouble(), match.captured(4).toDouble());
        EXPECT_LE(match.captured(4).toDouble(), match.captured(5).toDouble());
        EXPECT_EQ(QImage(QStringLiteral("out/T/T_pic%1.png").arg(frame)).size(), QSize(1024, 1024));
    }
    EXPECT_FALSE(matches.hasNext());
    EXPECT_EQ(QDir(QStringLiteral("out/T")).entryList(QDir::Files).size(), 5);
    EXPECT_TRUE(output.contains(QStringLiteral("Virtual detector")));
    EXPECT_TRUE(log().contains(QStringLiteral("（模拟数据）"))) << qPrintable(log());
}

TEST_F(Acquire, all_three_forms_are_stored_whole_when_asked_for)
{
    detector("");
    runVirtual({QStringLiteral("--frames"), QStringLiteral("2"), QStringLiteral("--data"),
                QStringLiteral("--picture"), QStringLiteral("--video"), QStringLiteral("--test-pattern"),
                QStringLiteral("1")});
    EXPECT_EQ(exitCode, 0) << qPrintable(errors);
    EXPECT_EQ(QDir(QStringLiteral("out/T")).entryList(QDir::Files, QDir::Name),
              QStringList({QStringLiteral("T_data1.csv"), QStringLiteral("T_data2.csv"),
                           QStringLiteral("T_data_gray1.csv"), QStringLiteral("T_data_gray2.csv"),
                           QStringLiteral("T_pic1.png"), QStringLiteral("T_pic2.png"),
                           QStringLiteral("output_video.mp4")}));
}

TEST_F(Acquire, a_german_locale_changes_no_byte_of_any_file_nor_what_is_printed)
{
    detector("");
    // Where the system can make the locale, the C library's numbers change too, otherwise Qt's alone.
    QProcess::execute(QStringLiteral("localedef"),
                      {QStringLiteral("-i"), QStringLiteral("de_DE"), QStringLiteral("-f"),
                       QStringLiteral("UTF-8"), folder.filePath(QStringLiteral("de_DE.UTF-8"))});
    QList<QMap<QString, QByteArray>> files;
    for (const char *locale : {"C", "de_DE.UTF-8"}) {
        environment.insert(QStringLiteral("LC_ALL"), QString::fromLatin1(locale));
        environment.insert(QStringLiteral("LOCPATH"), folder.path());
        runVirtual({QStringLiteral("--data"), QStringLiteral("--picture"), QStringLiteral("--video"),
                    QStringLiteral("--test-pattern"), QStringLiteral("5")});
        EXPECT_EQ(exitCode, 0) << qPrintable(errors);
        EXPECT_TRUE(output.contains(QStringLiteral("min     0.0000 nA"))) << qPrintable(output);
        files.emplace_back();
        for (const QString &name : QDir(QStringLiteral("out/T")).entryList(QDir::Files))
            files.last().insert(name, folder.read(QStringLiteral("out/T/") + name));
        EXPECT_TRUE(QDir(QStringLiteral("out")).removeRecursively());
    }
    EXPECT_EQ(files[0].size(), 4);
    EXPECT_TRUE(files[0] == files[1]);
}

TEST_F(Acquire, without_a_name_the_recording_is_named_by_the_time)
{
    detector("");
    run({QStringLiteral("--library"), QStringLiteral("virtual"), QStringLiteral("--output"),
         QStringLiteral("a/b")});
    EXPECT_EQ(exitCode, 0) << qPrintable(errors);
    const QStringList names = QDir(QStringLiteral("a/b")).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    ASSERT_EQ(names.size(), 1);
    EXPECT_TRUE(QRegularExpression(QStringLiteral("^\\d{8}_\\d{6}$")).match(names[0]).hasMatch());
}

TEST_F(Acquire, the_log_of_a_run_begins_and_ends_with_the_threads_lines)
{
    detector("");
    runVirtual({});
    const QString written = log();
    EXPECT_TRUE(written.section(QLatin1Char('\n'), 0, 0).endsWith(QStringLiteral("   >>   日志线程开启")));
    EXPECT_TRUE(written.endsWith(QStringLiteral("   >>   日志线程结束\n")));
}

TEST_F(Acquire, the_log_is_repeated_on_standard_error_when_asked_for)
{
    detector("");
    // Windows shows it to a debugger instead where there is no console.
    environment.insert("QT_FORCE_STDERR_LOGGING", "1");
    runVirtual({"--verbose", "--seconds", "2"}); // the log looks for lines once a second
    EXPECT_EQ(exitCode, 0);
    EXPECT_TRUE(errors.contains("驱动库：")) << qPrintable(errors);
    EXPECT_FALSE(output.contains("驱动库：")) << qPrintable(output);
}

TEST_F(Acquire, wrong_arguments_are_told_in_one_line_and_end_with_status_2)
{
    const QList<QStringList> wrong{{QStringLiteral("--frames"), QStringLiteral("0")},
                                   {QStringLiteral("--frames"), QStringLiteral("many")},
                                   {QStringLiteral("--test-pattern"), QStringLiteral("6")},
                                   {QStringLiteral("--timeout"), QStringLiteral("-1")},
                                   {QStringLiteral("--unknown")},
                                   {QStringLiteral("stray")}};
    for (const QStringList &arguments : wrong) {
        run(arguments);
        EXPECT_EQ(exitCode, 2) << qPrintable(arguments.join(u' '));
        EXPECT_EQ(errors.count(QLatin1Char('\n')), 1) << qPrintable(errors);
    }
}

TEST_F(Acquire, help_and_version_are_printed_and_end_well)
{
    run({QStringLiteral("--help")});
    EXPECT_EQ(exitCode, 0);
    EXPECT_TRUE(output.contains(QStringLiteral("--frames")));
    EXPECT_TRUE(output.contains(QStringLiteral("--serial")));
    EXPECT_TRUE(output.contains(QStringLiteral("Exit status:")));
    run({QStringLiteral("--version")});
    EXPECT_EQ(exitCode, 0);
    EXPECT_TRUE(output.contains(QStringLiteral("1.0.8")));
}
