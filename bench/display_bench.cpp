#include "imaging/processimage.h"
#include "tests/imaging/frames.h"
#include "ui/keepratiowidget.h"

#include <benchmark/benchmark.h>

#include <QApplication>

#include <array>

namespace {

/// What the main window's own parts take of a screen's height, in pixels of the desktop.
constexpr int besidePicture = 106;

/// One frame on its way through the image view to the window's pixels, on a screen as high as told that the
/// main window fills.
void displayFrame(benchmark::State &state)
{
    const qreal ratio = qApp->devicePixelRatio();
    const int side = static_cast<int>(static_cast<qreal>(state.range(0)) / ratio) - besidePicture;
    KeepRatioWidget view;
    view.resize(side, side);
    view.show();
    QApplication::processEvents();

    ProcessImage pipeline;
    std::array<QImage, 2> frames;
    for (std::size_t i = 0; i < frames.size(); ++i) {
        QByteArray bytes = Frames::useful(static_cast<quint32>(i + 1));
        frames.at(i) = pipeline.processImage(bytes).copy();
    }
    std::size_t next = 0;
    for (auto _ : state) {
        QImage picture = frames.at(next);
        next = 1 - next;
        view.setImage(picture);
        view.repaint();
    }
    state.counters["ratio"] = ratio;
}

BENCHMARK(displayFrame)
    ->Name("display/frame")
    ->Arg(1080)
    ->Arg(2160)
    ->MeasureProcessCPUTime()
    ->Unit(benchmark::kMillisecond);

} // namespace
