#include "tests/support/limitedwriting.h"
#include "tests/tools/leavingreader.h"
#include "tests/tools/startedrun.h"

#include <cerrno>
#include <cstring>

namespace {

int framesTold(const QString &errors)
{
    return QRegularExpression(QStringLiteral(", (\\d+) of 100000 received\n$"))
        .match(errors)
        .captured(1)
        .toInt();
}

} // namespace

class AcquireSignals : public StartedRun, public testing::WithParamInterface<EndRequest>
{
};

TEST_P(AcquireSignals, end_a_run_in_good_order_and_then_the_process)
{
    detector("");
    start();
    waitForFrames(3);
    GetParam().send(process);
    waitForEnd();
    expectEndBy(GetParam());
    EXPECT_TRUE(errors.startsWith(QStringLiteral("qv1k-acquire: ended by a signal, "))) << qPrintable(errors);
    EXPECT_EQ(wholePictures(), framesTold(errors));
    EXPECT_GE(framesTold(errors), 3);
    EXPECT_EQ(written(haltFrame), 1);
    EXPECT_EQ(log().count(QStringLiteral("下位机停止成功")), 1);
    EXPECT_TRUE(log().contains(QStringLiteral("保存中止")));
    expectTidyLog();
}

INSTANTIATE_TEST_SUITE_P(Each, AcquireSignals, testing::ValuesIn(EndRequest::all()),
                         [](const auto &request) { return request.param.name(); });

TEST_F(StartedRun, a_signal_ends_the_wait_for_a_detector_that_is_not_ready)
{
    detector("[Faults]\nNotReadyQueries=-1\n");
    start({QStringLiteral("--timeout"), QStringLiteral("1000")});
    waitForWritten(readinessQuery);
    EndRequest::common().send(process);
    waitForEnd();
    expectEndBy(EndRequest::common());
    EXPECT_EQ(written(startFrame), 0);
    EXPECT_EQ(written(haltFrame), 0) << "it does not run";
    expectTidyLog();
}

TEST_F(StartedRun, a_signal_while_the_start_is_confirmed_halts_the_detector)
{
    detector("[Faults]\nReplyFaultCommand=03A0\nReplyDelayMs=1500\n");
    start();
    waitForWritten(startFrame);
    EndRequest::common().send(process);
    waitForEnd();
    expectEndBy(EndRequest::common());
    EXPECT_EQ(written(haltFrame), 1);
    expectTidyLog();
}

TEST_F(StartedRun, a_signal_ends_a_run_whose_stream_has_stalled)
{
    detector("[Faults]\nStallAfterBytes=5000000\n");
    start();
    waitForFrames(1);
    EndRequest::common().send(process);
    waitForEnd();
    expectEndBy(EndRequest::common());
    EXPECT_EQ(wholePictures(), 1);
    EXPECT_EQ(written(haltFrame), 1);
    EXPECT_TRUE(log().contains(QStringLiteral("下位机停止成功")));
    EXPECT_FALSE(log().contains(QStringLiteral("停止超时"))) << "so long is not waited";
    expectTidyLog();
}

TEST_F(StartedRun, a_signal_ends_a_calibration_and_leaves_no_reference)
{
    detector("[Faults]\nStallAfterBytes=5000000\n");
    startCommand({QStringLiteral("calibrate"), QStringLiteral("bright"), QStringLiteral("--frames"),
                  QStringLiteral("2"), QStringLiteral("--to"), QStringLiteral("b.csv")});
    waitForWritten(startFrame);
    EndRequest::common().send(process);
    waitForEnd();
    expectEndBy(EndRequest::common());
    EXPECT_TRUE(errors.startsWith(QStringLiteral("qv1k-acquire: ended by a signal, "))) << qPrintable(errors);
    EXPECT_EQ(written(haltFrame), 1);
    EXPECT_FALSE(QFile::exists(folder.filePath(QStringLiteral("b.csv"))));
    expectTidyLog();
}

TEST_F(StartedRun, an_output_that_nobody_reads_any_more_ends_the_run_in_good_order)
{
    detector("");
    LeavingReader reader;
    reader.attachTo(process);
    start();
    reader.readAndLeave(3);
    waitForEnd();
    expectEndWithoutReader();
    EXPECT_TRUE(errors.contains(QStringLiteral("nobody reads the standard output any more, ")));
    EXPECT_EQ(wholePictures(), framesTold(errors));
    EXPECT_GE(framesTold(errors), 2);
    EXPECT_EQ(written(haltFrame), 1);
    expectTidyLog();
}

TEST_F(StartedRun, an_output_that_nobody_ever_read_ends_the_run_before_the_detector_is_opened)
{
    detector("");
    LeavingReader reader;
    reader.attachTo(process);
    reader.leave();
    process.start(program, {"--library", "virtual", "--output", "out"}); // whose first line is that it is
    waitForEnd();
    expectEndWithoutReader();
    EXPECT_TRUE(errors.contains("nobody reads the standard output any more\n")) << qPrintable(errors);
    EXPECT_FALSE(log().contains("串口连接")) << qPrintable(log());
}

TEST_F(StartedRun, a_summary_that_finds_no_room_is_no_success)
{
    detector("");
    environment.insert(QStringLiteral("QV1K_FULL_FILE"), QStringLiteral("output.txt"));
    process.setProcessEnvironment(environment);
    process.setStandardOutputFile(QStringLiteral("output.txt"));
    for (const char *command : {"list", "acquire"}) {
        const FullFile full(QStringLiteral("output.txt"));
        process.start(QStringLiteral(QV1K_ACQUIRE),
                      {QString::fromLatin1(command), QStringLiteral("--library"),
                       QStringLiteral(QV1K_NOTING_LIBRARY), QStringLiteral("--json")});
        waitForEnd();
        expectFailure(QStringLiteral("standard output cannot be written: ") +
                      QString::fromLocal8Bit(std::strerror(ENOSPC)));
    }
}

TEST_F(StartedRun, a_summary_longer_than_what_is_written_at_once_that_finds_no_room_is_no_success)
{
    QStringList numbers;
    for (int n = 0; n < 200; ++n)
        numbers << QString::number(n);
    detector("SerialNumbers=" + numbers.join(u',').toLatin1() + '\n');
    const FullFile full("output.txt");
    environment.insert("QV1K_FULL_FILE", "output.txt");
    process.setStandardOutputFile("output.txt");
    startCommand({"list", "--json"});
    waitForEnd();
    expectFailure(QStringLiteral("standard output cannot be written: ") +
                  QString::fromLocal8Bit(std::strerror(ENOSPC)));
}

TEST_F(StartedRun, an_output_that_is_full_does_not_keep_the_frames_from_being_stored)
{
    detector("");
    const FullFile full(QStringLiteral("output.txt"));
    environment.insert(QStringLiteral("QV1K_FULL_FILE"), QStringLiteral("output.txt"));
    process.setStandardOutputFile(QStringLiteral("output.txt"));
    start({QStringLiteral("--frames"), QStringLiteral("3")});
    waitForEnd();
    expectFailure(QStringLiteral("standard output cannot be written: ") +
                  QString::fromLocal8Bit(std::strerror(ENOSPC)));
    EXPECT_EQ(wholePictures(), 3);
    EXPECT_EQ(written(haltFrame), 1);
}

TEST_F(StartedRun, a_time_out_halts_the_detector_once)
{
    detector("[Faults]\nStallAfterBytes=5000000\n");
    start(frameTimeout);
    waitForEnd();
    expectSilenceAfter(1, 100000);
    EXPECT_EQ(written(haltFrame), 1);
    EXPECT_TRUE(log().contains(QStringLiteral("下位机停止成功")));
    expectTidyLog();
}

TEST_F(StartedRun, reads_that_fail_for_ever_are_a_time_out_and_the_detector_is_halted_once)
{
    detector("[Faults]\nFaultsFromByte=5000000\nFailReads=-1\n");
    start(frameTimeout);
    waitForEnd();
    expectSilenceAfter(1, 100000);
    EXPECT_EQ(written(haltFrame), 1);
    expectTidyLog();
}

TEST_F(StartedRun, after_all_frames_the_detector_is_halted_once)
{
    detector("");
    start({QStringLiteral("--frames"), QStringLiteral("2")});
    waitForEnd();
    EXPECT_EQ(exitCode, 0) << qPrintable(errors);
    EXPECT_EQ(written(haltFrame), 1);
}

TEST_F(StartedRun, a_signal_behind_the_last_frame_ends_the_process_but_costs_nothing)
{
    detector("[Faults]\nStallAfterBytes=4194304\n"); // it does not stop at once
    start({"--frames", "1"});
    waitForFrames(1);
    EndRequest::common().send(process);
    waitForEnd();
    expectEndBy(EndRequest::common());
    EXPECT_EQ(errors, QString());
    EXPECT_TRUE(output.contains("Recorded in ")) << qPrintable(output);
    EXPECT_EQ(wholePictures(), 1);
    EXPECT_EQ(written(haltFrame), 1);
    expectTidyLog();
}

TEST_F(StartedRun, a_detector_unplugged_behind_the_last_frame_is_no_failure)
{
    detector("[Faults]\nStallAfterBytes=4194304\n"); // it does not stop at once
    start({"--frames", "1"});
    waitForFrames(1);
    detector("Unplugged=QV1K\n");
    waitForEnd();
    EXPECT_EQ(exitCode, 0) << qPrintable(errors);
    EXPECT_EQ(wholePictures(), 1);
    EXPECT_TRUE(log().contains("设备连接丢失")) << qPrintable(log());
    expectTidyLog();
}

TEST_F(StartedRun, a_detector_whose_start_is_not_confirmed_may_be_streaming_and_is_told_to_halt)
{
    detector("[Faults]\nReplyFaultCommand=03A0\nMissingReply=true\n");
    start();
    waitForEnd();
    expectFailure(QStringLiteral("time-out: the detector did not confirm the start"));
    EXPECT_EQ(written(haltFrame), 1);
    expectTidyLog();
}

TEST_F(StartedRun, a_detector_unplugged_while_it_is_waited_for_is_told_as_such)
{
    detector("[Faults]\nNotReadyQueries=-1\n");
    start({QStringLiteral("--timeout"), QStringLiteral("1000")});
    waitForWritten(readinessQuery);
    detector("Unplugged=QV1K\n");
    waitForEnd();
    expectFailure(QStringLiteral("the detector was unplugged"));
    EXPECT_EQ(written(startFrame), 0);
    expectTidyLog();
}

TEST_F(StartedRun, a_detector_unplugged_while_it_is_started_is_told_as_such)
{
    detector("[Faults]\nReplyFaultCommand=03A0\nMissingReply=true\n");
    start();
    waitForWritten(startFrame);
    detector("Unplugged=QV1K\n");
    waitForEnd();
    expectFailure(QStringLiteral("the detector was unplugged"));
    expectTidyLog();
}

TEST_F(StartedRun, a_detector_unplugged_while_another_stays_is_told_as_such_and_sent_nothing_more)
{
    detector("SerialNumbers=A,B\n[Faults]\nUnplugAtByte=5000000\nReplugAfterMs=5\n");
    start({QStringLiteral("--serial"), QStringLiteral("B")});
    waitForEnd();
    expectFailure(QStringLiteral("the detector was unplugged, 1 of 100000 received"));
    EXPECT_EQ(wholePictures(), 1);
    EXPECT_EQ(written(haltFrame), 0);
    expectTidyLog();
}
