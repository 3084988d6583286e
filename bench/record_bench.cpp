#include "device/protocol/frameformat.h"
#include "imaging/processimage.h"
#include "imaging/recorder.h"
#include "tests/imaging/frames.h"
#include "tests/imaging/straightforward/straightforward.h"

#include <benchmark/benchmark.h>

#include <QTemporaryDir>

#include <opencv2/videoio.hpp>

#include <array>

// Both store frames in every form: data, grey levels, picture, video. The frames differ from one to the next,
// as a sensor's do, so that the video encoder has something to do. After ten frames the files are written
// anew, so that a long run does not fill the disk.

namespace {

constexpr int framesKept = 10;

struct DecodedFrame
{
    QImage picture;
    std::vector<double> currents;
    std::vector<int> grayLevels;
};

/// Five frames, decoded beforehand.
std::array<DecodedFrame, 5> decodedFrames()
{
    std::array<DecodedFrame, 5> frames;
    ProcessImage pipeline;
    pipeline.setContrastRatio(1.0);
    for (quint32 seed = 1; DecodedFrame & frame : frames) {
        QByteArray bytes = Frames::useful(seed++);
        frame.picture = pipeline.processImage(bytes);
        frame.currents = pipeline.lastFrame();
        frame.grayLevels = pipeline.grayLevels();
    }
    return frames;
}

void recordStraightforward(benchmark::State &state)
{
    const QTemporaryDir folder;
    const RecordingFiles files{folder.path(), QStringLiteral("T")};
    QDir().mkdir(files.folder());
    const auto frames = decodedFrames();
    cv::VideoWriter video(files.video().toStdString(), cv::VideoWriter::fourcc('m', 'p', '4', 'v'), 0.5,
                          cv::Size(FrameFormat::side, FrameFormat::side), true);
    int stored = 0;
    for (auto _ : state) {
        const DecodedFrame &frame = frames[static_cast<std::size_t>(stored) % frames.size()];
        const int number = stored++ % framesKept + 1;
        Straightforward::writeCsv(files.data(number), frame.currents);
        Straightforward::writeCsv(files.grayData(number), frame.grayLevels);
        frame.picture.save(files.picture(number));
        video.write(Straightforward::colourFrame(frame.picture));
    }
}

void recordOurs(benchmark::State &state)
{
    const QTemporaryDir folder;
    Recorder recorder(folder.path(), QStringLiteral("T"));
    recorder.setFrameTotal(framesKept);
    const auto frames = decodedFrames();
    std::size_t stored = 0;
    for (auto _ : state) {
        if (!recorder.isRunning()) {
            state.PauseTiming();
            recorder.start({.data = true, .picture = true, .video = true});
            state.ResumeTiming();
        }
        const DecodedFrame &frame = frames[stored++ % frames.size()];
        recorder.store({frame.picture, frame.currents, frame.grayLevels});
        recorder.endWhenComplete();
        if (recorder.failedFiles() != 0) {
            state.SkipWithError("files not written");
            break;
        }
    }
    recorder.stop();
}

BENCHMARK(recordStraightforward)->Name("record/straightforward")->Unit(benchmark::kMillisecond);
BENCHMARK(recordOurs)->Name("record/qv1k")->Unit(benchmark::kMillisecond);

} // namespace
