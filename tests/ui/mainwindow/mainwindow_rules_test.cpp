#include "ui/mainwindow/mainwindow_rules.h"

#include <gtest/gtest.h>

#include <QTransform>

#include <array>

using namespace MainWindowRules;

namespace {

/// A picture in which every turned or mirrored copy differs.
QImage unevenPicture()
{
    QImage image(64, 64, QImage::Format_Grayscale8);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            image.scanLine(y)[x] = static_cast<uchar>(x * 3 + (y * y) % 61);
    }
    return image;
}

} // namespace

TEST(MainWindowRules, only_device_change_messages_with_arrival_or_removal_are_device_changes)
{
    EXPECT_EQ(deviceChange(0x0219, 0x8000), DeviceChange::Arrival);
    EXPECT_EQ(deviceChange(0x0219, 0x8004), DeviceChange::Removal);
    EXPECT_EQ(deviceChange(0x0219, 0x0007), DeviceChange::None);
    EXPECT_EQ(deviceChange(0x0219, 0x8001), DeviceChange::None);
    EXPECT_EQ(deviceChange(0x0100, 0x8000), DeviceChange::None);
}

TEST(MainWindowRules, a_setting_is_on_only_when_it_reads_as_a_boolean)
{
    for (const char *on : {"true", "True", "TRUE", "1", " true "})
        EXPECT_TRUE(isSwitchedOn(QString::fromLatin1(on))) << on;
    for (const char *off : {"", "false", "0", "ture", "yes please", "on,off"})
        EXPECT_FALSE(isSwitchedOn(QString::fromLatin1(off))) << off;
    EXPECT_TRUE(isSwitchedOn(true));
    EXPECT_FALSE(isSwitchedOn(false));
    EXPECT_FALSE(isSwitchedOn(QVariant()));
    EXPECT_FALSE(isSwitchedOn(QStringList{"true", "true"}));
}

TEST(MainWindowRules, the_battery_gap_is_the_missing_charge_truncated_to_pixels)
{
    EXPECT_EQ(batteryGap(36, 100), 0);
    EXPECT_EQ(batteryGap(36, 0), 36);
    EXPECT_EQ(batteryGap(36, 80), 7);
    EXPECT_EQ(batteryGap(36, 97), 1);
    EXPECT_EQ(batteryGap(36, 98), 0);
    EXPECT_EQ(batteryGap(36, 255), -55);
}

TEST(MainWindowRules, the_frame_rate_is_the_average_with_two_decimals)
{
    EXPECT_EQ(frameRateText(1, 158), "FPS: 6.33");
    EXPECT_EQ(frameRateText(10, 1000), "FPS: 10.00");
    EXPECT_EQ(frameRateText(1, 1000000), "FPS: 0.00");
}

TEST(MainWindowRules, a_frame_in_no_time_has_an_infinite_rate)
{
    EXPECT_EQ(frameRateText(1, 0), "FPS: inf");
}

TEST(MainWindowRules, the_frame_rate_takes_the_count_as_a_signed_32_bit_number)
{
    EXPECT_EQ(frameRateText(0x1'0000'0005, 1000), "FPS: 5.00");
    EXPECT_EQ(frameRateText(0xFFFF'FFFF, 1000), "FPS: -1.00");
}

TEST(MainWindowRules, four_turns_give_360_and_a_fifth_gives_90)
{
    double rotation = 0.0;
    for (const double expected : {90.0, 180.0, 270.0, 360.0, 90.0, 180.0}) {
        rotation = nextRotation(rotation);
        EXPECT_EQ(rotation, expected);
    }
}

TEST(MainWindowRules, every_orientation_shows_what_turning_and_then_mirroring_shows)
{
    const QImage picture = unevenPicture();
    for (const double rotation : {0.0, 90.0, 180.0, 270.0, 360.0}) {
        for (const bool horizontal : {false, true}) {
            for (const bool vertical : {false, true}) {
                const QImage expected =
                    picture.transformed(QTransform().rotate(rotation, Qt::ZAxis), Qt::SmoothTransformation)
                        .mirrored(horizontal, vertical);
                const QImage shown = oriented(picture, rotation, horizontal, vertical);
                EXPECT_EQ(shown, expected) << rotation << horizontal << vertical;
                EXPECT_EQ(shown.format(), QImage::Format_Grayscale8);
            }
        }
    }
}

TEST(MainWindowRules, a_quarter_turn_goes_clockwise)
{
    QImage picture(4, 4, QImage::Format_Grayscale8);
    picture.fill(0);
    picture.scanLine(0)[0] = 255; // top left
    EXPECT_EQ(qGray(oriented(picture, 90.0, false, false).pixel(3, 0)), 255);
    EXPECT_EQ(qGray(oriented(picture, 270.0, false, false).pixel(0, 3)), 255);
    EXPECT_EQ(qGray(oriented(picture, 0.0, true, false).pixel(3, 0)), 255);
    EXPECT_EQ(qGray(oriented(picture, 0.0, false, true).pixel(0, 3)), 255);
}

TEST(MainWindowRules, a_part_of_the_picture_is_that_part_of_the_frame_however_it_is_turned)
{
    const QRect part(QPoint(100, 30), QPoint(103, 900));
    QImage picture(1024, 1024, QImage::Format_Grayscale8);
    picture.fill(0);
    for (int y = part.top(); y <= part.bottom(); ++y)
        std::fill_n(picture.scanLine(y) + part.left(), part.width(), uchar{255});
    for (const double rotation : {0.0, 90.0, 180.0, 270.0, 360.0}) {
        for (const bool horizontal : {false, true}) {
            for (const bool vertical : {false, true}) {
                const QImage shown = oriented(picture, rotation, horizontal, vertical);
                QRect lit;
                for (int y = 0; y < shown.height(); ++y)
                    for (int x = 0; x < shown.width(); ++x)
                        if (qGray(shown.pixel(x, y)) > 127)
                            lit |= QRect(x, y, 1, 1);
                EXPECT_EQ(partOfFrame(lit, rotation, horizontal, vertical), part)
                    << rotation << horizontal << vertical;
            }
        }
    }
}

TEST(MainWindowRules, an_upright_picture_is_not_copied)
{
    const QImage picture = unevenPicture();
    EXPECT_EQ(oriented(picture, 0.0, false, false).constBits(), picture.constBits());
    EXPECT_EQ(oriented(picture, 360.0, false, false).constBits(), picture.constBits());
}

TEST(MainWindowRules, orienting_leaves_the_original_picture_alone)
{
    const QImage picture = unevenPicture();
    const QImage copy = picture.copy();
    const QImage mirrored = oriented(picture, 0.0, true, true);
    EXPECT_NE(mirrored, copy);
    EXPECT_EQ(picture, copy);
}

TEST(MainWindowRules, a_frame_count_is_held_between_1_and_1000)
{
    const std::array<std::array<const char *, 2>, 9> cases{{{"0", "1"},
                                                            {"-3", "1"},
                                                            {"", "1"},
                                                            {"many", "1"},
                                                            {"1", "1"},
                                                            {"37", "37"},
                                                            {"1000", "1000"},
                                                            {"1001", "1000"},
                                                            {"5000", "1000"}}};
    for (const auto &[typed, shown] : cases)
        EXPECT_EQ(clampedFrameCount(QString::fromLatin1(typed)), shown) << typed;
}

TEST(MainWindowRules, a_recording_is_told_by_its_frames_and_what_failed_of_it)
{
    EXPECT_EQ(recordingText({.stored = 12, .wanted = 50, .failed = 1}),
              "12 of 50 frames stored, 1 file failed");
    EXPECT_EQ(recordingText({.stored = 50, .wanted = 50}), "50 of 50 frames stored");
    EXPECT_EQ(recordingText({.stored = 2, .wanted = 2, .failed = 7}), "2 of 2 frames stored, 7 files failed");
}

TEST(MainWindowRules, the_summary_has_a_line_for_each_setting_in_the_shortest_number_format)
{
    EXPECT_EQ(parameterSummary({QStringLiteral("10nA"), 0.5, -10.0, 15.0, -15.0, 1.25}),
              "Current Range:10nA\nVss: 0.5 V\nVcom: -10 V\nVon: 15 V\nVoff: -15 V\nContrast Ratio: 1.25 \n");
}

TEST(MainWindowRules, the_summary_without_a_range_begins_with_an_empty_line)
{
    EXPECT_EQ(parameterSummary({}), "\nVss: 0 V\nVcom: 0 V\nVon: 0 V\nVoff: 0 V\nContrast Ratio: 1 \n");
}
