#include "imaging/processimage.h"
#include "tests/imaging/frames.h"
#include "tests/imaging/straightforward/straightforward.h"

#include <benchmark/benchmark.h>

#include <QTemporaryDir>

#include <opencv2/videoio.hpp>

// Both store the same frame over and over: data, grey levels, picture, video. After ten frames the files are
// written anew, so that a long run does not fill the disk.

namespace {

constexpr int framesKept = 10;

void recordStraightforward(benchmark::State &state)
{
    const QTemporaryDir folder;
    Straightforward::Pipeline pipeline;
    pipeline.contrastRatio = 1.0;
    const QImage image = pipeline.processImage(Frames::useful(1));
    cv::VideoWriter video(folder.filePath("output_video.mp4").toStdString(),
                          cv::VideoWriter::fourcc('m', 'p', '4', 'v'), 0.5, cv::Size(1024, 1024), true);
    int n = 0;
    for (auto _ : state) {
        const QString number = QString::number(n++ % framesKept + 1);
        Straightforward::writeCsv(folder.filePath("T_data" + number + ".csv"), pipeline.frameData);
        Straightforward::writeCsv(folder.filePath("T_data_gray" + number + ".csv"), pipeline.grayData);
        image.save(folder.filePath("T_pic" + number + ".png"));
        video.write(Straightforward::colourFrame(image));
    }
}

void recordOurs(benchmark::State &state)
{
    const QTemporaryDir folder;
    ProcessImage pipeline;
    pipeline.setContrastRatio(1.0);
    pipeline.setLogPath(folder.path());
    pipeline.setTimeStamp(QStringLiteral("T"));
    pipeline.setSaveFrameTotal(framesKept);
    QByteArray frame = Frames::useful(1);
    const QImage image = pipeline.processImage(frame);
    for (auto _ : state) {
        if (!pipeline.isSaving()) {
            state.PauseTiming();
            pipeline.startSaving(true, true, true);
            state.ResumeTiming();
        }
        pipeline.saveFrame(image);
        if (pipeline.failedFiles() != 0)
            state.SkipWithError("files not written");
    }
    pipeline.stopSaving();
}

BENCHMARK(recordStraightforward)->Name("record/straightforward")->Unit(benchmark::kMillisecond);
BENCHMARK(recordOurs)->Name("record/qv1k")->Unit(benchmark::kMillisecond);

} // namespace
