#include "imaging/recordingfiles.h"

#include <gtest/gtest.h>

#include <QDateTime>

namespace {

const QDateTime moment(QDate(2024, 1, 31), QTime(23, 59, 59));

QString nameFor(const QString &typed)
{
    return RecordingFiles::nameFor(typed, moment);
}

} // namespace

TEST(RecordingName, what_is_harmless_stays_exactly_as_it_was_typed)
{
    for (const char *typed : {"wafer 7", " leading", "a.b.c", ".hidden", "测试 50%1 ü", "COM10", "COM",
                              "CONSOLE", "my.CON", "[a](b){c}&'!#$,;=+~`^", "2024-01-31"})
        EXPECT_EQ(nameFor(QString::fromUtf8(typed)), QString::fromUtf8(typed));
}

TEST(RecordingName, without_a_name_it_is_the_moment)
{
    EXPECT_EQ(nameFor(QString()), "20240131_235959");
}

TEST(RecordingName, one_of_dots_blanks_and_refused_characters_alone_is_the_moment)
{
    for (const char *typed :
         {".", "..", "...", " ", "   ", " . .", "/", "../..", "\\", "\t\n", "\u3000", ". \u00A0"})
        EXPECT_EQ(nameFor(QString::fromUtf8(typed)), "20240131_235959") << typed;
}

TEST(RecordingName, leads_to_no_other_folder)
{
    EXPECT_EQ(nameFor("../../etc/a"), "....etca");
    EXPECT_EQ(nameFor("a/b\\c"), "abc");
    EXPECT_FALSE(nameFor("C:\\run").contains(u'\\'));
}

TEST(RecordingName, has_no_control_characters)
{
    EXPECT_EQ(nameFor(QString("a\nb\tc\x7f") + QChar(u'\0') + QChar(0x85) + "d"), "abcd");
}

TEST(RecordingName, has_no_character_that_the_system_refuses)
{
#ifdef Q_OS_WIN
    EXPECT_EQ(nameFor("<a>:\"b|c?*"), "abc");
    EXPECT_EQ(nameFor("run. . "), "run");
#else
    for (const char *typed : {"<a>:\"b|c?*", "12:30", "run. . "})
        EXPECT_EQ(nameFor(typed), typed) << "this system takes them";
#endif
}

TEST(RecordingName, is_no_device_of_windows_in_any_case_and_with_any_ending)
{
    for (const char *device : {"CON", "prn", "Aux", "NUL", "COM1", "com9", "LPT1", "lpt9", "CON.txt",
                               "nul.tar.gz", "com1 .x", "COM¹", "CONIN$"})
        EXPECT_EQ(nameFor(QString::fromUtf8(device)), u'_' + QString::fromUtf8(device));
    EXPECT_EQ(nameFor("C/ON"), "_CON");
}

TEST(RecordingName, once_clean_stays_so)
{
    for (const char *typed : {"CON", "a/. ", "nul.x", "x", "..", "_CON"}) {
        const QString once = nameFor(QString::fromUtf8(typed));
        EXPECT_EQ(nameFor(once), once) << typed;
    }
}
