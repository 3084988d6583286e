#include "tests/tools/startedrun.h"

/// Frames that nobody receives: qv1k-acquire waits.
class WaitingPublisher : public StartedRun
{
protected:
    void publish(const QStringList &arguments)
    {
        startCommand(QStringList{"acquire", "--publish", "0", "--timeout", "1000"} + arguments);
    }
};

TEST_F(WaitingPublisher, a_signal_ends_the_wait_for_receivers_and_no_detector_is_opened)
{
    publish({"--receivers", "1"});
    ASSERT_TRUE(QTest::qWaitFor([&] { return QDir("Logs").exists(); }, 60000 * patience));
    EndRequest::common().send(process);
    waitForEnd();
    expectEndBy(EndRequest::common());
    EXPECT_EQ(errors, "qv1k-acquire: ended by a signal\n");
    EXPECT_FALSE(QFile::exists("written.txt"));
}

TEST_F(WaitingPublisher, a_signal_ends_the_wait_for_somebody_who_takes_a_frame_and_the_detector_is_halted)
{
    detector("");
    publish({"--must-arrive", "--frames", "3"});
    waitForFrames(1);
    EndRequest::common().send(process);
    waitForEnd();
    expectEndBy(EndRequest::common());
    EXPECT_EQ(errors, "qv1k-acquire: ended by a signal, 1 of 3 received\n");
    EXPECT_EQ(written(haltFrame), 1);
    expectTidyLog();
}

TEST_F(WaitingPublisher, a_detector_unplugged_meanwhile_ends_the_wait_and_is_told_as_such)
{
    detector("");
    publish({"--must-arrive", "--frames", "3"});
    waitForFrames(1);
    detector("Unplugged=QV1K\n");
    waitForEnd();
    expectFailure("the detector was unplugged, 1 of 3 received");
    EXPECT_EQ(written(haltFrame), 0);
    expectTidyLog();
}
