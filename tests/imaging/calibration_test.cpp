#include "imaging/processimage.h"
#include "tests/imaging/frames.h"
#include "tests/imaging/straightforward/straightforward.h"
#include "tests/support/debugoutput.h"
#include "tests/support/limitedwriting.h"
#include "tests/support/systemreason.h"
#include "tests/support/workingfolder.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QLocale>
#include <QSignalSpy>

#include <algorithm>

namespace {

/// A pipeline in a working folder that has its log folder.
struct Bench
{
    WorkingFolder folder;
    bool logs = QDir(folder.path()).mkdir("Logs");
    ProcessImage pipeline;
    QSignalSpy messages{&pipeline, &ProcessImage::caliMessage};
    QSignalSpy dark{&pipeline, &ProcessImage::setMinSuccess};
    QSignalSpy bright{&pipeline, &ProcessImage::setMaxSuccess};

    QImage frame(const QByteArray &bytes)
    {
        QByteArray frame = bytes;
        return pipeline.processImage(frame);
    }

    [[nodiscard]] QByteArray expectedCsv(const std::vector<double> &values) const
    {
        Straightforward::writeCsv(folder.filePath("expected.csv"), values);
        return folder.read("expected.csv");
    }
};

} // namespace

TEST(Calibration, a_dark_capture_takes_exactly_the_next_frame)
{
    Bench bench;
    bench.pipeline.fullOffFlag = true;
    const QByteArray frame = Frames::useful(1);
    bench.frame(frame);
    EXPECT_EQ(bench.pipeline.fullOffData, bench.pipeline.lastFrame());
    EXPECT_EQ(bench.pipeline.fullOnData, std::vector<double>(Frames::pixels, 255.0));
    EXPECT_FALSE(bench.pipeline.fullOffFlag);
    EXPECT_EQ(bench.messages, QList<QVariantList>{{1}});
    EXPECT_EQ(bench.dark.size(), 1);
    EXPECT_EQ(bench.bright.size(), 0);
    EXPECT_TRUE(bench.folder.read("Logs/calib/data_fulloff.csv") ==
                bench.expectedCsv(bench.pipeline.fullOffData));
    EXPECT_EQ(QDir(bench.folder.filePath("Logs/calib")).entryList(QDir::Files),
              QStringList{"data_fulloff.csv"});

    const std::vector<double> taken = bench.pipeline.fullOffData;
    bench.frame(Frames::useful(2));
    EXPECT_EQ(bench.pipeline.fullOffData, taken);
    EXPECT_EQ(bench.messages.size(), 1);
    EXPECT_EQ(bench.dark.size(), 1);
}

TEST(Calibration, a_bright_capture_takes_exactly_the_next_frame)
{
    Bench bench;
    bench.pipeline.fullOnFlag = true;
    bench.frame(Frames::useful(3));
    EXPECT_EQ(bench.pipeline.fullOnData, bench.pipeline.lastFrame());
    EXPECT_EQ(bench.pipeline.fullOffData, std::vector<double>(Frames::pixels, 0.0));
    EXPECT_FALSE(bench.pipeline.fullOnFlag);
    EXPECT_EQ(bench.messages, QList<QVariantList>{{1}});
    EXPECT_EQ(bench.bright.size(), 1);
    EXPECT_EQ(bench.dark.size(), 0);
    EXPECT_TRUE(bench.folder.read("Logs/calib/data_fullon.csv") ==
                bench.expectedCsv(bench.pipeline.fullOnData));
}

TEST(Calibration, a_capture_replaces_the_one_before)
{
    Bench bench;
    for (const quint32 seed : {4u, 5u}) {
        bench.pipeline.fullOffFlag = true;
        bench.frame(Frames::useful(seed));
    }
    EXPECT_EQ(bench.pipeline.fullOffData, bench.pipeline.lastFrame());
    EXPECT_EQ(bench.messages, (QList<QVariantList>{{1}, {1}}));
    EXPECT_TRUE(bench.folder.read("Logs/calib/data_fulloff.csv") ==
                bench.expectedCsv(bench.pipeline.fullOffData));
}

TEST(Calibration, the_file_stands_complete_when_success_is_told)
{
    Bench bench;
    QByteArray text;
    bool flag = true;
    QObject::connect(&bench.pipeline, &ProcessImage::setMaxSuccess, [&] {
        text = bench.folder.read("Logs/calib/data_fullon.csv");
        flag = bench.pipeline.fullOnFlag;
    });
    bench.pipeline.fullOnFlag = true;
    bench.frame(Frames::useful(6));
    EXPECT_EQ(std::ranges::count(text, '\n'), 1024);
    EXPECT_EQ(std::ranges::count(text, ','), 1024 * 1023);
    EXPECT_TRUE(text.endsWith('\n'));
    EXPECT_FALSE(flag);
}

TEST(Calibration, progress_is_told_before_the_pixels_and_while_the_flag_is_set)
{
    Bench bench;
    bool flag = false;
    double reference = -1;
    QObject::connect(&bench.pipeline, &ProcessImage::caliMessage, [&] {
        flag = bench.pipeline.fullOffFlag;
        reference = bench.pipeline.fullOffData[0];
    });
    bench.pipeline.fullOffFlag = true;
    bench.frame(Frames::flat(Frames::sampleOf(26)));
    EXPECT_TRUE(flag);
    EXPECT_EQ(reference, 0.0);
    EXPECT_EQ(bench.pipeline.fullOffData[0], 26.0);
}

TEST(Calibration, a_capture_cancelled_before_a_frame_leaves_the_fill_and_no_file)
{
    Bench bench;
    bench.pipeline.fullOnFlag = true;
    std::ranges::fill(bench.pipeline.fullOnData, 255.0);
    bench.pipeline.fullOnFlag = false;
    bench.frame(Frames::useful(7));
    EXPECT_EQ(bench.pipeline.fullOnData, std::vector<double>(Frames::pixels, 255.0));
    EXPECT_TRUE(bench.messages.isEmpty());
    EXPECT_TRUE(bench.bright.isEmpty());
    EXPECT_TRUE(QDir(bench.folder.filePath("Logs/calib")).isEmpty());

    bench.pipeline.fullOnFlag = true;
    bench.frame(Frames::useful(8));
    EXPECT_EQ(bench.messages, QList<QVariantList>{{1}});
}

TEST(Calibration, frames_without_a_capture_change_no_reference)
{
    Bench bench;
    bench.pipeline.caliEnabled = true;
    bench.frame(Frames::useful(9));
    EXPECT_EQ(bench.pipeline.fullOffData, std::vector<double>(Frames::pixels, 0.0));
    EXPECT_EQ(bench.pipeline.fullOnData, std::vector<double>(Frames::pixels, 255.0));
    EXPECT_TRUE(bench.messages.isEmpty());
}

TEST(Calibration, the_initial_references_show_nanoamperes_as_grey_levels)
{
    Bench bench;
    bench.pipeline.caliEnabled = true;
    for (const auto &[current, level] : {std::pair(0.0, 0),
                                         {0.9, 0},
                                         {100.5, 100},
                                         {254.9, 254},
                                         {255.0, 255},
                                         {255.5, 255},
                                         {400.0, 255}}) {
        const QImage image = bench.frame(Frames::flat(Frames::sampleOf(current)));
        EXPECT_EQ(image.constBits()[5], level) << current;
        EXPECT_EQ(bench.pipeline.grayLevels()[5], level) << current;
    }
}

TEST(Calibration, the_frame_of_a_capture_is_already_mapped_against_it)
{
    Bench bench;
    bench.pipeline.caliEnabled = true;
    bench.pipeline.fullOffFlag = true;
    EXPECT_EQ(bench.frame(Frames::flat(Frames::sampleOf(100))).constBits()[0], 0);
    bench.pipeline.fullOnFlag = true;
    EXPECT_EQ(bench.frame(Frames::flat(Frames::sampleOf(120))).constBits()[0], 255);
    EXPECT_EQ(bench.frame(Frames::flat(Frames::sampleOf(110))).constBits()[0], 127);
}

TEST(Calibration, equal_references_are_black_and_reversed_ones_white)
{
    Bench bench;
    bench.pipeline.caliEnabled = true;
    std::ranges::fill(bench.pipeline.fullOffData, 50.0);
    std::ranges::fill(bench.pipeline.fullOnData, 50.0);
    EXPECT_EQ(bench.frame(Frames::flat(Frames::sampleOf(80))).constBits()[0], 0);
    EXPECT_EQ(bench.pipeline.grayLevels()[0], 0);
    std::ranges::fill(bench.pipeline.fullOnData, 40.0);
    EXPECT_EQ(bench.frame(Frames::flat(Frames::sampleOf(80))).constBits()[0], 255);
    EXPECT_EQ(bench.frame(Frames::flat(Frames::sampleOf(50))).constBits()[0], 255);
    EXPECT_EQ(bench.frame(Frames::flat(Frames::sampleOf(49))).constBits()[0], 0);
}

TEST(Calibration, whole_calibrated_frames_come_out_as_in_plain_words)
{
    Bench bench;
    Straightforward::Pipeline expected;
    bench.pipeline.caliEnabled = expected.caliEnabled = true;
    bench.pipeline.fullOffFlag = expected.fullOffFlag = true;
    EXPECT_EQ(bench.frame(Frames::useful(10)), expected.processImage(Frames::useful(10)));
    bench.pipeline.fullOnFlag = expected.fullOnFlag = true;
    EXPECT_EQ(bench.frame(Frames::useful(11)), expected.processImage(Frames::useful(11)));
    for (const QByteArray &frame : {Frames::useful(12), Frames::noise(13), Frames::useful(14).first(99999)}) {
        EXPECT_EQ(bench.frame(frame), expected.processImage(frame));
        EXPECT_EQ(bench.pipeline.grayLevels(), expected.grayData);
    }
    EXPECT_EQ(bench.pipeline.fullOffData, expected.fullOffData);
    EXPECT_EQ(bench.pipeline.fullOnData, expected.fullOnData);
}

TEST(Calibration, both_captures_at_once_take_the_same_frame)
{
    Bench bench;
    bench.pipeline.fullOffFlag = true;
    bench.pipeline.fullOnFlag = true;
    bench.frame(Frames::useful(15));
    EXPECT_EQ(bench.messages, QList<QVariantList>{{1}});
    EXPECT_EQ(bench.pipeline.fullOffData, bench.pipeline.lastFrame());
    EXPECT_EQ(bench.pipeline.fullOnData, bench.pipeline.lastFrame());
    EXPECT_EQ(bench.dark.size(), 1);
    EXPECT_EQ(bench.bright.size(), 1);
}

TEST(Calibration, a_reference_that_cannot_be_stored_is_in_force_and_leaves_one_line)
{
    const WorkingFolder folder; // without a log folder there is no calibration folder either
    ProcessImage pipeline;
    const QSignalSpy dark(&pipeline, &ProcessImage::setMinSuccess);
    const DebugOutput output;
    pipeline.fullOffFlag = true;
    QByteArray frame = Frames::useful(16);
    (void)pipeline.processImage(frame);
    EXPECT_EQ(pipeline.fullOffData, pipeline.lastFrame());
    EXPECT_EQ(dark.size(), 1);
    ASSERT_EQ(output.messages().size(), 1);
    EXPECT_TRUE(output.contains(folder.path() + "/Logs/calib//data_fulloff.csv"));
    EXPECT_TRUE(output.contains(systemReason(SystemFailure::NoSuchFolder)));
    EXPECT_EQ(pipeline.failedFiles(), 0);
}

TEST(Calibration, a_full_disk_under_a_reference_leaves_one_line)
{
    Bench bench;
    const FullFile full(bench.folder.filePath("Logs/calib/data_fullon.csv"));
    const DebugOutput output;
    bench.pipeline.fullOnFlag = true;
    bench.frame(Frames::useful(17));
    EXPECT_EQ(bench.bright.size(), 1);
    ASSERT_EQ(output.messages().size(), 1);
    EXPECT_TRUE(output.contains("data_fullon.csv"));
    EXPECT_TRUE(output.contains(systemReason(SystemFailure::DiskFull)));
}

TEST(Calibration, a_german_locale_changes_no_byte_of_a_reference)
{
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    Bench bench;
    bench.pipeline.fullOffFlag = true;
    bench.frame(Frames::flat(Frames::sampleOf(12.5)));
    EXPECT_TRUE(bench.folder.read("Logs/calib/data_fulloff.csv") ==
                (QByteArray("12.5,").repeated(1023) + "12.5\n").repeated(1024));
}

TEST(Calibration, a_change_of_the_working_folder_does_not_move_the_files)
{
    Bench bench;
    const WorkingFolder elsewhere;
    bench.pipeline.fullOffFlag = true;
    bench.frame(Frames::flat(4096));
    EXPECT_FALSE(bench.folder.read("Logs/calib/data_fulloff.csv").isEmpty());
}
