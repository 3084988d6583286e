#include "simulator/sensor/sensor.h"

#include "simulator/geometry.h"
#include "simulator/random.h"
#include "simulator/scenes/scenes.h"

#include <QDebug>

#include <algorithm>
#include <array>

namespace simulator {

void Sensor::read(const FrameRecipe &recipe, qsizetype offset, std::span<uchar> out)
{
    const std::lock_guard lock(m_mutex);
    if (recipe.pattern == TestPattern::None && recipe.scene == Scene::Replay)
        return readReplay(recipe, offset, out);
    while (!out.empty()) {
        const qsizetype pixel = offset / sampleBytes;
        const auto inside = static_cast<std::size_t>(offset % sampleBytes);
        std::size_t taken = out.size() / sampleBytes * sampleBytes;
        if (inside == 0 && taken > 0) {
            writePixels(recipe, pixel, out.first(taken));
        } else { // a part of one sample
            std::array<uchar, sampleBytes> sample{};
            writePixels(recipe, pixel, sample);
            taken = std::min(out.size(), sample.size() - inside);
            std::copy_n(sample.begin() + inside, taken, out.begin());
        }
        out = out.subspan(taken);
        offset += static_cast<qsizetype>(taken);
    }
}

void Sensor::writePixels(const FrameRecipe &recipe, qsizetype firstPixel, std::span<uchar> samples)
{
    if (recipe.pattern == TestPattern::None)
        writeScene(recipe, firstPixel, samples);
    else
        writeTestPattern(recipe.pattern, recipe.frame, firstPixel, samples);
}

void Sensor::writeScene(const FrameRecipe &recipe, qsizetype firstPixel, std::span<uchar> samples)
{
    prepare(recipe);
    const quint64 frameRandom = mixed(recipe.seed, recipe.frame);
    while (!samples.empty()) {
        const qsizetype row = firstPixel / sensorWidth;
        const qsizetype column = firstPixel % sensorWidth;
        const qsizetype count = std::min<qsizetype>(sensorWidth - column, std::ssize(samples) / sampleBytes);
        const auto bytes = static_cast<std::size_t>(count * sampleBytes);
        const auto noise = m_seeded->noise.row(mixed(frameRandom, static_cast<quint64>(row)));
        m_exposed->pixels.write(firstPixel, noise.subspan(static_cast<std::size_t>(column)),
                                samples.first(bytes));
        samples = samples.subspan(bytes);
        firstPixel += count;
    }
}

void Sensor::prepare(const FrameRecipe &recipe)
{
    if (!m_seeded || m_seeded->seed != recipe.seed) {
        m_seeded = std::make_unique<Seeded>(recipe.seed);
        m_exposed.reset();
    }
    if (!m_lit || m_lit->scene != recipe.scene) {
        m_lit = Lit{recipe.scene, sceneCurrents(recipe.scene)};
        m_exposed.reset();
    }
    if (!m_exposed || m_exposed->exposure != recipe.exposure)
        m_exposed =
            Exposed{recipe.exposure, ExposedPixels(m_lit->currents, m_seeded->response, recipe.exposure)};
}

void Sensor::readReplay(const FrameRecipe &recipe, qsizetype offset, std::span<uchar> out)
{
    if (m_replay.fileName() != recipe.replayFile || !m_replay.isOpen()) {
        m_replay.close();
        m_replay.setFileName(recipe.replayFile);
        if (!m_replay.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
            qWarning().noquote() << QStringLiteral("%1: %2").arg(recipe.replayFile, m_replay.errorString());
    }
    const qint64 frames = m_replay.isOpen() ? m_replay.size() / frameBytes : 0;
    const qint64 frame = frames > 0 ? static_cast<qint64>(recipe.frame % static_cast<quint64>(frames)) : 0;
    const auto length = static_cast<qint64>(out.size());
    qint64 got = 0;
    if (frames > 0 && m_replay.seek(frame * frameBytes + offset))
        got = qMax<qint64>(0, m_replay.read(reinterpret_cast<char *>(out.data()), length));
    std::fill(out.begin() + got, out.end(), uchar{0}); // of a file that went away or was cut short
}

} // namespace simulator
