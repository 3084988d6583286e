#include "tests/ui/inspector/inspectedframes.h"
#include "ui/inspector/inspectionrunner.h"

#include <gtest/gtest.h>

#include <QSignalSpy>
#include <QTest>

using namespace InspectedFrames;

/// A runner whose clock the test turns.
class InspectionRunning : public testing::Test
{
protected:
    InspectionRunning()
    {
        QObject::connect(&runner, &InspectionRunner::inspected, &runner,
                         [this](const Inspection &inspection) { told.push_back(inspection); });
        // A small region: what is waited for is not the arithmetic.
        runner.ask(inquiry);
    }

    void bring(double current)
    {
        at(frame, 0, 0) = current;
        runner.frameArrived();
    }

    void waitFor(std::size_t inspections)
    {
        ASSERT_TRUE(QTest::qWaitFor([&] { return told.size() >= inspections; }, 20000)) << told.size();
    }

    /// Lets the runner look at its clock that often.
    void letLook(int times)
    {
        const int before = looks;
        ASSERT_TRUE(QTest::qWaitFor([&] { return looks >= before + times; }, 20000));
    }

    std::vector<double> frame = flat(1);
    qint64 now = 1000;
    int looks = 0;
    int copies = 0;
    std::vector<Inspection> told;
    Inquiry inquiry{{0, 0, 4, 4}, 0, 0};
    InspectionRunner runner{[this] {
                                ++copies;
                                return std::span<const double>(frame);
                            },
                            [this] {
                                ++looks;
                                return now;
                            }};
};

TEST_F(InspectionRunning, of_the_frames_that_come_too_soon_the_newest_is_inspected_when_its_time_has_come)
{
    bring(10);
    waitFor(1);
    for (const double current : {11, 12, 13})
        bring(current);
    letLook(3);
    EXPECT_EQ(runner.begun(), 1) << "the clock stood still";
    EXPECT_EQ(copies, 1) << "no frame is copied before";
    now += InspectionRunner::intervalMs - 1;
    letLook(1);
    EXPECT_EQ(runner.begun(), 1);
    now += 1;
    waitFor(2);
    EXPECT_EQ(runner.begun(), 2);
    EXPECT_EQ(copies, 2);
    EXPECT_EQ(told.at(0).current, 10);
    EXPECT_EQ(told.at(1).current, 13);
}

TEST_F(InspectionRunning, ten_inspections_a_second_are_the_most)
{
    for (int frames = 0; frames < 100; ++frames) { // 1 s of a hundred
        bring(frames);
        if (runner.begun() > static_cast<int>(told.size()))
            waitFor(told.size() + 1);
        now += 10;
    }
    EXPECT_EQ(runner.begun(), 10);
}

TEST_F(InspectionRunning, a_frame_that_comes_while_one_is_inspected_waits_for_its_end)
{
    bring(10);
    now += 1000;
    bring(11);
    EXPECT_EQ(runner.begun(), 1);
    waitFor(2);
    EXPECT_EQ(told.at(1).current, 11);
}

TEST_F(InspectionRunning, noise_is_that_of_the_last_two_frames_also_when_another_question_comes_between)
{
    bring(10);
    waitFor(1);
    EXPECT_FALSE(told.at(0).noise);
    now += 1000;
    bring(12);
    waitFor(2);
    const double temporal = told.at(1).noise.value().temporal;
    EXPECT_GT(temporal, 0);
    now += 1000;
    inquiry.row = 7;
    runner.ask(inquiry);
    waitFor(3);
    EXPECT_EQ(told.at(2).inquiry.row, 7);
    EXPECT_EQ(told.at(2).noise.value().temporal, temporal);
    EXPECT_EQ(copies, 2) << "the frames are those that were there";
}

TEST_F(InspectionRunning, nothing_is_inspected_before_a_frame_or_for_the_same_question)
{
    inquiry.row = 3;
    runner.ask(inquiry);
    EXPECT_EQ(runner.begun(), 0);
    frame.clear();
    runner.frameArrived();
    EXPECT_EQ(runner.begun(), 0);
    frame = flat(1);
    bring(10);
    waitFor(1);
    now += 1000;
    runner.ask(inquiry);
    EXPECT_EQ(runner.begun(), 1);
}

TEST(InspectionRunnerEnd, waits_for_the_inspection_under_way_and_tells_nothing_afterwards)
{
    const std::vector<double> frame = flat(3);
    bool isTold = false;
    {
        InspectionRunner runner([&] { return std::span<const double>(frame); }, [] { return 0; });
        QObject::connect(&runner, &InspectionRunner::inspected, [&] { isTold = true; });
        runner.ask({Inspections::wholeFrame(), 0, 0});
        runner.frameArrived();
        EXPECT_EQ(runner.begun(), 1);
    }
    QCoreApplication::processEvents();
    EXPECT_FALSE(isTold);
}
