#include "tests/simulator/bytes.h"
#include "tests/support/workingfolder.h"

#include "simulator/geometry.h"
#include "simulator/scenes/scenes.h"
#include "simulator/sensor/sensor.h"

#include <cmath>

using simulator::Exposure;
using simulator::FrameRecipe;
using simulator::Scene;
using simulator::Sensor;

namespace {

constexpr qsizetype pixels = 1024 * 1024;

FrameRecipe recipeOf(Scene scene, const Exposure &exposure = {1, 166000, 25})
{
    FrameRecipe recipe;
    recipe.scene = scene;
    recipe.exposure = exposure;
    return recipe;
}

QByteArray rawFrame(Sensor &sensor, const FrameRecipe &recipe)
{
    QByteArray raw(simulator::frameBytes, '\x5A');
    sensor.read(recipe, 0, {reinterpret_cast<uchar *>(raw.data()), static_cast<std::size_t>(raw.size())});
    return raw;
}

QByteArray rawFrame(const FrameRecipe &recipe)
{
    Sensor sensor;
    return rawFrame(sensor, recipe);
}

double meanCounts(const QByteArray &raw)
{
    double sum = 0;
    for (qsizetype i = 0; i < pixels; ++i)
        sum += sampleAt(raw, i);
    return sum / pixels - 4096;
}

/// Root mean square of the difference of two frames: the noise of one frame is that over sqrt(2).
double difference(const QByteArray &a, const QByteArray &b)
{
    double sum = 0;
    for (qsizetype i = 0; i < pixels; ++i)
        sum += std::pow(static_cast<double>(sampleAt(a, i)) - sampleAt(b, i), 2);
    return std::sqrt(sum / pixels);
}

/// The current that the program makes of a sample, nA.
double nanoamperes(quint32 sample)
{
    return (static_cast<double>(sample) - 4096) / 1048576 * 25 / 166 * 1000;
}

} // namespace

class SceneBytes : public testing::TestWithParam<Scene>
{
};

TEST_P(SceneBytes, are_the_same_for_the_same_seed_frame_and_settings)
{
    FrameRecipe recipe = recipeOf(GetParam());
    recipe.frame = 3;
    Sensor used;
    rawFrame(used, recipeOf(Scene::Flat));
    EXPECT_TRUE(rawFrame(used, recipe) == rawFrame(recipe));
}

TEST_P(SceneBytes, differ_for_another_seed_and_another_frame)
{
    FrameRecipe recipe = recipeOf(GetParam());
    const QByteArray first = rawFrame(recipe);
    recipe.frame = 1;
    EXPECT_FALSE(rawFrame(recipe) == first);
    recipe.frame = 0;
    recipe.seed = 2;
    EXPECT_FALSE(rawFrame(recipe) == first);
}

TEST_P(SceneBytes, stay_within_the_20_bit_range)
{
    for (const double integration : {166000.0, 500000.0, 4000000.0}) {
        const QByteArray raw = rawFrame(recipeOf(GetParam(), {1, integration, 4}));
        for (qsizetype i = 0; i < pixels; ++i)
            ASSERT_LE(sampleAt(raw, i), 4096U + 1048575U);
    }
}

TEST_P(SceneBytes, are_dark_without_light)
{
    const QByteArray raw = rawFrame(recipeOf(GetParam(), {0, 166000, 25}));
    EXPECT_NEAR(meanCounts(raw), 0.02 * 6962.5 + 12 * 1048575.0 / pixels, 2); // dark current and hot pixels
}

INSTANTIATE_TEST_SUITE_P(Sensor, SceneBytes,
                         testing::Values(Scene::Dark, Scene::Flat, Scene::Chart, Scene::Phantom),
                         [](const auto &test) {
                             return "scene_" + std::to_string(static_cast<int>(test.param));
                         });

TEST(Sensor, counts_are_current_by_integration_time_over_full_scale_charge)
{
    for (const double charge : {25.0, 19.0, 16.0, 13.0, 10.0, 7.0, 4.0}) {
        const double light = 0.2; // 20 nA fit every range
        const double expected = 20.02 * 166e-6 / (charge * 1e-3) * 1048576;
        const double mean = meanCounts(rawFrame(recipeOf(Scene::Flat, {light, 166000, charge})));
        EXPECT_NEAR(mean, expected, expected * 0.002) << charge;
    }
}

TEST(Sensor, three_times_the_integration_time_gives_three_times_the_counts)
{
    const double atOnce = meanCounts(rawFrame(recipeOf(Scene::Flat, {0.3, 166000, 25})));
    const double longer = meanCounts(rawFrame(recipeOf(Scene::Flat, {0.3, 500000, 25})));
    EXPECT_NEAR(longer / atOnce, 500.0 / 166.0, 0.01);
}

TEST(Sensor, light_scales_the_photocurrent)
{
    const double dark = meanCounts(rawFrame(recipeOf(Scene::Flat, {0, 166000, 25})));
    const double half = meanCounts(rawFrame(recipeOf(Scene::Flat, {0.5, 166000, 25})));
    const double full = meanCounts(rawFrame(recipeOf(Scene::Flat, {1, 166000, 25})));
    EXPECT_NEAR((full - dark) / (half - dark), 2, 0.001);
}

TEST(Sensor, too_much_light_fills_the_pixels_to_the_largest_sample)
{
    const QByteArray raw = rawFrame(recipeOf(Scene::Flat, {1, 4000000, 4}));
    qsizetype full = 0;
    for (qsizetype i = 0; i < pixels; ++i)
        full += sampleAt(raw, i) == 4096U + 1048575U ? 1 : 0;
    EXPECT_GE(full, pixels - 12) << "all but the dead ones";
}

TEST(Sensor, the_noise_is_read_noise_in_the_dark_and_shot_noise_in_the_light)
{
    Sensor sensor;
    const auto noise = [&](double light) {
        FrameRecipe recipe = recipeOf(Scene::Flat, {light, 166000, 25});
        const QByteArray first = rawFrame(sensor, recipe);
        recipe.frame = 1;
        return difference(first, rawFrame(sensor, recipe)) / std::sqrt(2.0);
    };
    EXPECT_NEAR(noise(0), 15, 0.5);
    const double electrons = 100e-9 * 166e-6 / 1.602177e-19;
    const double shot = std::sqrt(electrons) / (25e-12 / 1.602177e-19) * 1048576;
    EXPECT_NEAR(noise(1), std::hypot(shot, 15), 2);
}

TEST(Sensor, pixels_differ_by_a_percent_of_gain)
{
    const QByteArray raw = rawFrame(recipeOf(Scene::Flat));
    const double mean = meanCounts(raw);
    double sum = 0;
    for (qsizetype i = 0; i < pixels; ++i) {
        const double counts = sampleAt(raw, i) - 4096.0;
        if (counts > mean / 2 && counts < mean * 1.4) // neither dead nor hot
            sum += std::pow(counts / mean - 1, 2);
    }
    EXPECT_NEAR(std::sqrt(sum / pixels), 0.0108, 0.001);
}

TEST(Sensor, a_few_pixels_are_dead_and_a_few_are_hot)
{
    const QByteArray lit = rawFrame(recipeOf(Scene::Flat));
    const QByteArray dark = rawFrame(recipeOf(Scene::Dark));
    int dead = 0;
    int hot = 0;
    for (qsizetype i = 0; i < pixels; ++i) {
        dead += sampleAt(lit, i) < 4096 + 1000 ? 1 : 0;
        hot += sampleAt(dark, i) == 4096 + 1048575 ? 1 : 0;
    }
    EXPECT_EQ(dead, 12);
    EXPECT_EQ(hot, 12);
}

TEST(Sensor, the_phantom_is_well_exposed_at_the_defaults)
{
    const QByteArray raw = rawFrame(recipeOf(Scene::Phantom));
    std::vector<double> currents;
    for (qsizetype i = 0; i < pixels; ++i)
        currents.push_back(nanoamperes(sampleAt(raw, i)));
    std::sort(currents.begin(), currents.end());
    EXPECT_GT(currents[pixels * 95 / 100], 105);
    EXPECT_LT(currents[pixels * 999 / 1000], 130);
    EXPECT_LT(currents[pixels * 5 / 100], 40);
}

TEST(Sensor, every_part_of_a_frame_is_the_same_read_alone)
{
    for (const Scene scene : {Scene::Phantom, Scene::Chart}) {
        Sensor sensor;
        const FrameRecipe recipe = recipeOf(scene);
        const QByteArray whole = rawFrame(sensor, recipe);
        for (const qsizetype offset : {0, 1, 2, 3, 4, 4095, 4096, 131071, 4194303}) {
            for (const qsizetype length : {1, 2, 3, 4, 5, 7, 8, 4097, 9001}) {
                const qsizetype fits = qMin(length, whole.size() - offset);
                QByteArray part(fits, '\x5A');
                sensor.read(recipe, offset,
                            {reinterpret_cast<uchar *>(part.data()), static_cast<std::size_t>(fits)});
                ASSERT_TRUE(part == whole.mid(offset, fits)) << offset << ' ' << length;
            }
        }
    }
}

TEST(Sensor, the_replay_gives_the_recorded_frames_in_a_loop)
{
    const WorkingFolder folder;
    const QByteArray first(simulator::frameBytes, '\x11');
    const QByteArray second(simulator::frameBytes, '\x22');
    folder.write(QStringLiteral("frames.raw"), first + second + QByteArray(1000, '\x33'));
    FrameRecipe recipe = recipeOf(Scene::Replay);
    recipe.replayFile = folder.filePath(QStringLiteral("frames.raw"));
    Sensor sensor;
    for (recipe.frame = 0; recipe.frame < 5; ++recipe.frame)
        EXPECT_TRUE(rawFrame(sensor, recipe) == (recipe.frame % 2 == 0 ? first : second)) << recipe.frame;
}

TEST(Sensor, a_replay_whose_file_went_away_is_black)
{
    const WorkingFolder folder;
    FrameRecipe recipe = recipeOf(Scene::Replay);
    recipe.replayFile = folder.filePath(QStringLiteral("gone.raw"));
    EXPECT_TRUE(rawFrame(recipe) == QByteArray(simulator::frameBytes, '\0'));
}

TEST(Sensor, a_replay_goes_on_when_its_file_is_there_again)
{
    const WorkingFolder folder;
    FrameRecipe recipe = recipeOf(Scene::Replay);
    recipe.replayFile = folder.filePath(QStringLiteral("late.raw"));
    Sensor sensor;
    EXPECT_TRUE(rawFrame(sensor, recipe) == QByteArray(simulator::frameBytes, '\0'));
    const QByteArray recorded(simulator::frameBytes, '\x11');
    folder.write(QStringLiteral("late.raw"), recorded);
    EXPECT_TRUE(rawFrame(sensor, recipe) == recorded);
}

TEST(Sensor, a_test_pattern_covers_the_replay)
{
    FrameRecipe recipe = recipeOf(Scene::Replay);
    recipe.pattern = simulator::TestPattern::Flat;
    EXPECT_EQ(sampleAt(rawFrame(recipe), 5), 4096U + 524288U);
}
