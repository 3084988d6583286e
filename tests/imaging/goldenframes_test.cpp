#include "imaging/processimage.h"
#include "tests/imaging/frames.h"
#include "tests/imaging/straightforward/straightforward.h"
#include "tests/support/workingfolder.h"

#include <gtest/gtest.h>

#include <QCryptographicHash>

#include <algorithm>
#include <iterator>
#include <ostream>
#include <string>
#include <vector>

// What the pipeline made of fixed frames once and for all, as one checksum for each kind of output:
// data/goldenframes.txt. A line is "<mapping> <frame> <output> <SHA-256>".

namespace {

QByteArray sum(QByteArrayView bytes)
{
    return QCryptographicHash::hash(bytes.toByteArray(), QCryptographicHash::Sha256).toHex();
}

struct NamedFrame
{
    const char *name;
    QByteArray bytes;
};

/// What a detector sends, what it never should, and frames of the wrong length.
std::vector<NamedFrame> frames()
{
    return {{"useful", Frames::useful(1)},
            {"edges", Frames::edges()},
            {"noise", Frames::noise(2)},
            {"ramp", Frames::of([](int i) { return 4096U + static_cast<quint32>(i); })},
            {"cut", Frames::useful(3).first(3'000'001)},
            {"long", Frames::useful(4) + "more"}};
}

/// A way to map currents to grey levels, set up by what the window does too.
struct Mapping
{
    const char *name;
    double contrast;
    bool calibrated;
    bool captured; ///< against references taken from frames, otherwise against the initial ones
};

/// Names it where a test is listed.
void PrintTo(const Mapping &mapping, std::ostream *out)
{
    *out << mapping.name;
}

constexpr Mapping mappings[] = {{"plain", 1.0, false, false},
                                {"contrast", 2.5, false, false},
                                {"initial", 1048576.0, false, false},
                                {"uncaptured", 1.0, true, false},
                                {"calibrated", 1.0, true, true}};

QByteArray darkFrame()
{
    return Frames::of([](int i) { return 4096U + static_cast<quint32>(i % 977) * 8U; });
}

/// Some pixels are not brighter than in the dark frame, and some are darker.
QByteArray brightFrame()
{
    return Frames::of([](int i) { return 4096U + static_cast<quint32>(i % 1009) * 900U; });
}

/// The pipeline and the files that it records, in an empty folder.
class Recorded
{
public:
    explicit Recorded(const Mapping &mapping)
    {
        m_pipeline.setContrastRatio(mapping.contrast);
        m_pipeline.caliEnabled = mapping.calibrated;
        m_pipeline.setLogPath(m_folder.path());
        m_pipeline.setTimeStamp("T");
        m_pipeline.setSaveFrameTotal(1);
        if (!mapping.captured)
            return;
        m_pipeline.fullOffFlag = true;
        m_pipeline.onReadReady(darkFrame());
        m_pipeline.fullOnFlag = true;
        m_pipeline.onReadReady(brightFrame());
    }

    /// Lines without the mapping's name.
    QByteArrayList take(const NamedFrame &frame)
    {
        m_pipeline.startSaving(true, true, false);
        m_pipeline.onReadReady(frame.bytes);
        const QByteArray stem = QByteArray(frame.name) + ' ';
        const QImage picture(m_folder.filePath("T/T_pic1.png"));
        return {stem + "data " + sum(m_folder.read("T/T_data1.csv")),
                stem + "grey " + sum(m_folder.read("T/T_data_gray1.csv")),
                stem + "picture " + sum(QByteArrayView(picture.constBits(), picture.sizeInBytes()))};
    }

private:
    WorkingFolder m_folder;
    bool m_hasLogs = QDir().mkdir("Logs"); ///< where the references are stored
    ProcessImage m_pipeline;
};

/// The same by the pipeline in the plainest words.
class Plain
{
public:
    explicit Plain(const Mapping &mapping)
    {
        m_pipeline.contrastRatio = mapping.contrast;
        m_pipeline.caliEnabled = mapping.calibrated;
        if (!mapping.captured)
            return;
        m_pipeline.fullOffFlag = true;
        (void)m_pipeline.processImage(darkFrame());
        m_pipeline.fullOnFlag = true;
        (void)m_pipeline.processImage(brightFrame());
    }

    QByteArrayList take(const NamedFrame &frame)
    {
        const QImage picture = m_pipeline.processImage(frame.bytes);
        Straightforward::writeCsv("data.csv", m_pipeline.frameData);
        Straightforward::writeCsv("grey.csv", m_pipeline.grayData);
        const QByteArray stem = QByteArray(frame.name) + ' ';
        return {stem + "data " + sum(m_folder.read("data.csv")),
                stem + "grey " + sum(m_folder.read("grey.csv")),
                stem + "picture " + sum(QByteArrayView(picture.constBits(), picture.sizeInBytes()))};
    }

private:
    WorkingFolder m_folder;
    Straightforward::Pipeline m_pipeline;
};

template <typename Source>
std::string linesOf(const Mapping &mapping)
{
    std::string lines;
    Source source(mapping);
    for (const NamedFrame &frame : frames()) {
        for (const QByteArray &line : source.take(frame))
            lines += mapping.name + (' ' + line.toStdString()) + '\n';
    }
    return lines;
}

/// The lines of the file that begin so.
std::string goldenLines(const QByteArray &mapping)
{
    QFile file(QV1K_TEST_DATA "/goldenframes.txt");
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(file.errorString());
    std::string lines;
    while (!file.atEnd()) {
        const QByteArray line = file.readLine();
        if (line.startsWith(mapping))
            lines += line.toStdString();
    }
    return lines;
}

class GoldenFrames : public testing::TestWithParam<Mapping>
{
};

} // namespace

TEST_P(GoldenFrames, recorded_frames_are_what_they_always_were)
{
    EXPECT_EQ(linesOf<Recorded>(GetParam()), goldenLines(GetParam().name + QByteArray(" ")));
}

TEST_P(GoldenFrames, the_pipeline_in_the_plainest_words_makes_the_same)
{
    EXPECT_EQ(linesOf<Plain>(GetParam()), goldenLines(GetParam().name + QByteArray(" ")));
}

TEST(GoldenFramesFile, it_holds_a_line_for_each_output_and_no_others)
{
    EXPECT_EQ(std::ranges::count(goldenLines(""), '\n'), std::ssize(mappings) * std::ssize(frames()) * 3);
}

INSTANTIATE_TEST_SUITE_P(Mappings, GoldenFrames, testing::ValuesIn(mappings),
                         [](const auto &test) { return std::string(test.param.name); });
