#pragma once

#include "simulator/scenes/scene.h"
#include "simulator/sensor/pixelresponse.h"
#include "simulator/sensor/testpatterns.h"

#include <QFile>
#include <QString>

#include <memory>
#include <mutex>
#include <optional>
#include <span>

namespace simulator {

/// All that the bytes of one frame depend on.
struct FrameRecipe
{
    quint64 frame = 0; ///< counted from 0 at each start of acquisition
    TestPattern pattern = TestPattern::None;
    Scene scene = Scene::Phantom;
    Exposure exposure;
    quint64 seed = 1;
    QString replayFile; ///< raw frames one after the other; shown in a loop
};

/// The photodiode array and its converter: makes the bytes of frames. The same recipe always gives the same
/// bytes. Thread-safe; one call at a time does its work, the first of a scene some 100 ms longer.
class Sensor
{
public:
    /// Writes the bytes of the frame from `offset` on.
    void read(const FrameRecipe &recipe, qsizetype offset, std::span<uchar> out);

private:
    void writePixels(const FrameRecipe &recipe, qsizetype firstPixel, std::span<uchar> samples);
    void writeScene(const FrameRecipe &recipe, qsizetype firstPixel, std::span<uchar> samples);
    void readReplay(const FrameRecipe &recipe, qsizetype offset, std::span<uchar> out);
    void prepare(const FrameRecipe &recipe);

    /// What was made for the last recipe, and for which.
    struct Seeded
    {
        explicit Seeded(quint64 value) : seed(value), noise(value), response(value, noise) {}

        quint64 seed;
        NoiseTable noise;
        PixelResponse response;
    };
    struct Lit
    {
        Scene scene;
        std::vector<float> currents;
    };
    struct Exposed
    {
        Exposure exposure;
        ExposedPixels pixels;
    };

    std::mutex m_mutex;
    std::unique_ptr<Seeded> m_seeded;
    std::optional<Lit> m_lit;
    std::optional<Exposed> m_exposed;
    QFile m_replay;
};

} // namespace simulator
