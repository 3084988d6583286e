#include "imaging/stackdescription.h"
#include "imaging/tifffile.h"
#include "tests/imaging/recording.h"
#include "tests/support/debugoutput.h"
#include "tests/support/limitedwriting.h"
#include "tests/support/systemreason.h"

#include <gtest/gtest.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <opencv2/imgcodecs.hpp>

#include <algorithm>
#include <cstring>
#include <optional>

namespace {

constexpr RecordingForms allStacks{.tiff = true, .npy = true, .raw = true};

using Floats = std::vector<float>;

/// A recording in these forms, and the currents of each of its frames rounded to 32 bits.
struct StackRecording : Recording
{
    explicit StackRecording(int frames) : Recording(frames)
    {
        QObject::connect(&pipeline, &ProcessImage::saveMessage, [this] {
            const std::vector<double> &frame = pipeline.lastFrame();
            Floats rounded(frame.size());
            std::transform(frame.begin(), frame.end(), rounded.begin(),
                           [](double value) { return static_cast<float>(value); });
            currents.push_back(std::move(rounded));
        });
    }

    void record(int frames, const RecordingForms &forms = allStacks, const RecordingFacts &facts = {})
    {
        pipeline.startSaving(forms, facts);
        feed(frames);
    }

    [[nodiscard]] QJsonObject description(const QString &stack) const
    {
        return QJsonDocument::fromJson(content(RecordingFiles::description(stack))).object();
    }

    [[nodiscard]] QByteArray content(const QString &file) const { return folder.read("save/T/" + file); }

    std::vector<Floats> currents;
};

/// All pages of a TIFF file, as OpenCV reads them.
std::vector<Floats> pages(const QString &path)
{
    std::vector<cv::Mat> images;
    EXPECT_TRUE(cv::imreadmulti(path.toStdString(), images, cv::IMREAD_UNCHANGED));
    std::vector<Floats> values;
    for (const cv::Mat &image : images) {
        EXPECT_EQ(image.type(), CV_32FC1);
        EXPECT_EQ(image.size(), cv::Size(1024, 1024));
        values.emplace_back(image.begin<float>(), image.end<float>());
    }
    return values;
}

/// The frames of an array file whose header is 128 bytes long.
std::vector<Floats> arrays(const QByteArray &file)
{
    std::vector<Floats> values;
    for (qsizetype at = 128; at < file.size(); at += FrameFormat::frameBytes) {
        Floats frame(FrameFormat::pixels);
        std::memcpy(frame.data(), file.sliced(at, FrameFormat::frameBytes).constData(),
                    FrameFormat::frameBytes);
        values.push_back(std::move(frame));
    }
    return values;
}

} // namespace

TEST(RecordingStacks, every_file_holds_all_frames_and_has_its_description_beside_it)
{
    StackRecording recording(2);
    recording.record(2);
    EXPECT_EQ(recording.files(),
              QStringList({"T.npy", "T.npy.json", "T.raw", "T.raw.json", "T.tif", "T.tif.json"}));
    EXPECT_EQ(recording.pipeline.failedFiles(), 0);
    ASSERT_EQ(recording.currents.size(), 2U);
    EXPECT_TRUE(pages(recording.stored.tiff()) == recording.currents);
    EXPECT_TRUE(arrays(recording.content("T.npy")) == recording.currents);
    EXPECT_TRUE(recording.content("T.raw") == Frames::useful(1) + Frames::useful(2));
}

TEST(RecordingStacks, the_header_of_the_array_says_how_many_frames_came)
{
    StackRecording recording(5);
    recording.record(2, {.npy = true});
    EXPECT_TRUE(recording.pipeline.stopSaving());
    const QByteArray header = recording.content("T.npy").first(128);
    EXPECT_EQ(header.first(10), QByteArray("\x93NUMPY\x01\x00\x76\x00", 10));
    EXPECT_TRUE(header.endsWith('\n'));
    EXPECT_EQ(header.sliced(10).trimmed(),
              "{'descr': '<f4', 'fortran_order': False, 'shape': (2, 1024, 1024), }");
    EXPECT_EQ(recording.description("T.npy")["shape"], QJsonArray({2, 1024, 1024}));
}

TEST(RecordingStacks, until_the_recording_ends_nothing_has_its_name)
{
    StackRecording recording(2);
    recording.record(1);
    EXPECT_EQ(recording.files(), QStringList({"T.npy.part", "T.raw.part", "T.tif.part"}));
    recording.feed(1);
    EXPECT_TRUE(recording.files().filter("part").isEmpty());
}

TEST(RecordingStacks, one_that_is_stopped_before_its_first_frame_leaves_nothing)
{
    StackRecording recording(2);
    recording.record(0);
    EXPECT_TRUE(recording.pipeline.stopSaving());
    EXPECT_EQ(recording.files(), QStringList());
    EXPECT_EQ(recording.pipeline.failedFiles(), 0);
}

TEST(RecordingStacks, the_description_tells_what_is_known_and_null_for_the_rest)
{
    StackRecording recording(1);
    RecordingFacts facts{.serial = "QV1K-7", .library = "/lib/d2xx.so", .isSimulated = true};
    facts.currentRange = 50;
    facts.voltages = {.vss = 0.5, .vcom = -10, .von = 15, .voff = -15};
    facts.timing = Timing::ofRange(1000);
    recording.pipeline.caliEnabled = true;
    const QDateTime before = QDateTime::currentDateTimeUtc();
    recording.record(1, {.tiff = true}, facts);
    const QJsonObject told = recording.description("T.tif");
    EXPECT_EQ(told["file"], "T.tif");
    EXPECT_EQ(told["format"], "TIFF");
    EXPECT_EQ(told["unit"], "nA");
    EXPECT_EQ(told["detector"]["serial_number"], "QV1K-7");
    EXPECT_EQ(told["detector"]["simulated"], true);
    EXPECT_TRUE(told["detector"]["test_pattern"].isNull());
    EXPECT_EQ(told["settings"]["current_range_nA"], 50);
    EXPECT_EQ(told["settings"]["voltages_V"]["vcom"], -10);
    EXPECT_EQ(told["settings"]["timing_ns"]["adcIntA"], 1000);
    EXPECT_EQ(told["settings"]["timing_ns"]["framePeriod"], Timing::ofRange(1000).framePeriod);
    EXPECT_EQ(told["settings"]["grey_levels_calibrated"], true);
    ASSERT_EQ(told["frames"].toArray().size(), 1);
    const QJsonValue frame = told["frames"][0];
    EXPECT_EQ(frame["number"], 1);
    const QDateTime time = QDateTime::fromString(frame["time"].toString(), Qt::ISODateWithMs);
    EXPECT_EQ(time.timeSpec(), Qt::UTC);
    EXPECT_GE(time, before);
    EXPECT_LE(time, QDateTime::currentDateTimeUtc());
}

TEST(RecordingStacks, a_tiff_file_that_may_pass_4_gib_is_a_big_one_from_its_first_byte)
{
    EXPECT_FALSE(TiffFile::needsBigTiff(1000));
    EXPECT_TRUE(TiffFile::needsBigTiff(1024));
    EXPECT_TRUE(TiffFile::needsBigTiff(2'000'000'000));
    for (const int total : {2, 1024, 0}) {
        StackRecording recording(total);
        recording.record(2, {.tiff = true});
        recording.pipeline.stopSaving();
        const QByteArray begin = recording.content("T.tif").first(4);
        EXPECT_EQ(begin, total == 2 ? QByteArray("II*\0", 4) : QByteArray("II+\0", 4)) << total;
        EXPECT_EQ(recording.description("T.tif")["format"], total == 2 ? "TIFF" : "BigTIFF");
        EXPECT_TRUE(pages(recording.stored.tiff()) == recording.currents) << total;
    }
}

TEST(RecordingStacks, a_disk_that_fills_up_leaves_the_frames_that_were_whole_and_one_line_a_file)
{
    for (const int total : {4, 5000}) {
        StackRecording recording(total);
        const DebugOutput output;
        {
            const FileSizeLimit limit(10'000'000);
            recording.record(4);
            recording.pipeline.stopSaving();
        }
        EXPECT_EQ(recording.progress(), (QList<int>{1, 2, 3, 4}));
        EXPECT_EQ(recording.pipeline.failedFiles(), 3);
        EXPECT_EQ(output.messages().filter(systemReason(SystemFailure::FileTooLarge)).size(), 3);
        EXPECT_EQ(output.messages().size(), 3);
        recording.currents.resize(2);
        EXPECT_TRUE(pages(recording.stored.tiff()) == recording.currents);
        EXPECT_TRUE(arrays(recording.content("T.npy")) == recording.currents);
        EXPECT_TRUE(recording.content("T.raw") == Frames::useful(1) + Frames::useful(2));
        EXPECT_EQ(recording.description("T.raw")["frames"].toArray().size(), 2);
        EXPECT_TRUE(recording.files().filter("part").isEmpty());
    }
}

TEST(RecordingStacks, a_page_whose_values_find_room_and_its_directory_does_not_leaves_no_trace)
{
    const WorkingFolder folder;
    const Floats values(FrameFormat::pixels, 1.5F);
    const auto write = [&](int frames) {
        TiffFile file("a.tif", {}, 3);
        bool isWhole = true;
        for (int n = 0; n < frames; ++n)
            isWhole = file.append({.currents = values, .raw = {}, .time = 0}).isEmpty() && isWhole;
        EXPECT_EQ(file.finish(), QString());
        return isWhole;
    };
    EXPECT_TRUE(write(2));
    const QByteArray twoPages = folder.read("a.tif");
    for (const qint64 room : {0, 10, 100, 200}) {
        const FileSizeLimit limit(twoPages.size() + FrameFormat::frameBytes + room);
        EXPECT_FALSE(write(3)) << room;
        EXPECT_TRUE(folder.read("a.tif") == twoPages) << room;
    }
}

TEST(RecordingStacks, without_room_for_a_frame_nothing_stays_and_the_recording_goes_on)
{
    StackRecording recording(2);
    const DebugOutput output;
    const FileSizeLimit limit(1'000'000);
    recording.record(2);
    EXPECT_EQ(recording.progress(), (QList<int>{1, 2}));
    EXPECT_EQ(recording.pipeline.failedFiles(), 3);
    EXPECT_EQ(output.messages().size(), 3);
    EXPECT_EQ(recording.files(), QStringList());
}

TEST(RecordingStacks, a_missing_or_read_only_folder_loses_each_file_with_a_line_and_goes_on_counting)
{
    for (const bool isMissing : {true, false}) {
        StackRecording recording(2);
        QDir(recording.folder.path()).mkdir("save/T");
        std::optional<ReadOnlyFolder> readOnly;
        if (isMissing)
            recording.pipeline.setLogPath(recording.folder.filePath("missing"));
        else
            readOnly.emplace(recording.folder.filePath("save/T"));
        const DebugOutput output;
        recording.record(2);
        EXPECT_EQ(recording.progress(), (QList<int>{1, 2}));
        EXPECT_EQ(recording.pipeline.failedFiles(), 3);
        const auto reason = isMissing ? SystemFailure::NoSuchFolder : SystemFailure::NoAccess;
        EXPECT_EQ(output.messages().filter(systemReason(reason)).size(), 3);
        EXPECT_EQ(output.messages().size(), 3);
    }
}

TEST(RecordingStacks, a_description_that_cannot_be_written_counts_alone)
{
    StackRecording recording(1);
    QDir(recording.folder.path()).mkpath("save/T/T.npy.json");
    const DebugOutput output;
    recording.record(1);
    EXPECT_EQ(recording.pipeline.failedFiles(), 1);
    ASSERT_EQ(output.messages().size(), 1);
    EXPECT_TRUE(output.contains("T.npy.json"));
    EXPECT_TRUE(arrays(recording.content("T.npy")) == recording.currents);
}

TEST(RecordingStacks, a_stack_that_does_not_get_its_name_has_no_description)
{
    StackRecording recording(2);
    recording.record(1);
    QDir(recording.folder.path()).mkpath("save/T/T.npy"); // came meanwhile
    const DebugOutput output;
    recording.feed(1);
    EXPECT_EQ(recording.pipeline.failedFiles(), 1);
    ASSERT_EQ(output.messages().size(), 1);
    EXPECT_TRUE(output.contains("文件改名失败"));
    EXPECT_EQ(recording.files(), QStringList({"T.raw", "T.raw.json", "T.tif", "T.tif.json"}));
}

TEST(StackDescription, what_it_tells_of_a_recording_can_be_read_back)
{
    RecordingFacts facts{.serial = "QV1K",
                         .library = "library",
                         .isSimulated = true,
                         .currentRange = 50,
                         .voltages =
                             RecordingFacts::Voltages{.vss = 0.5, .vcom = -10, .von = 15, .voff = -15},
                         .timing = Timing::ofRange(16600),
                         .testPattern = 3,
                         .isCalibrated = true};
    const QJsonObject told = StackDescription::ofRecording(facts);
    RecordingFacts read = StackDescription::factsOf(told);
    EXPECT_FALSE(read.isCalibrated) << "holds for that recording alone";
    read.isCalibrated = true;
    EXPECT_EQ(StackDescription::ofRecording(read), told);
    EXPECT_EQ(StackDescription::ofRecording(StackDescription::factsOf({})),
              StackDescription::ofRecording({}));
}
