#include "tests/tools/leavingreader.h"
#include "tests/tools/startedrun.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

constexpr const char *versionQuery = "ffaa02fa0deb";
constexpr const char *batteryQuery = "ffaa02100deb";

} // namespace

/// Commands that are asked to end while they run.
class StartedCommand : public StartedRun
{
protected:
    /// How many frames the detector was sent.
    [[nodiscard]] qsizetype sent() const { return folder.read("written.txt").count('\n'); }

    /// A signal when the detector was sent the first of what is set.
    void signalBehindFirstFrameOfSet()
    {
        startCommand({"set", "--range", "50"});
        ASSERT_TRUE(QTest::qWaitFor([&] { return sent() == 1; }, 60000 * patience));
        EndRequest::common().send(process);
        waitForEnd();
        expectEndBy(EndRequest::common());
    }

    /// Replays one frame so often that it would take minutes.
    void startReplay()
    {
        detector("");
        run({"--library", "virtual", "--raw", "--output", "raw", "--name", "T"});
        ASSERT_EQ(exitCode, 0) << qPrintable(errors);
        QJsonObject index = QJsonDocument::fromJson(folder.read("raw/T/T.raw.json")).object();
        QJsonArray frames;
        for (int n = 0; n < 5000; ++n)
            frames.append(index["frames"][0]);
        index["frames"] = frames;
        folder.write("raw/T/T.raw.json", QJsonDocument(index).toJson());
        ASSERT_TRUE(QDir("Logs").removeRecursively());
        output.clear();
        process.start(program, {"replay", "raw/T/T.raw", "--output", "out", "--name", "T"});
        ASSERT_TRUE(process.waitForStarted()) << qPrintable(process.errorString());
    }

    /// The frames that came before the replay ended are told and are whole.
    void expectCutReplay(const QString &why) const
    {
        const QRegularExpression line("^qv1k-acquire: (.*), (\\d+) of 5000 replayed\n$");
        const QRegularExpressionMatch told = line.match(errors);
        EXPECT_EQ(told.captured(1), why) << qPrintable(errors);
        EXPECT_EQ(wholePictures(), told.captured(2).toInt());
        EXPECT_GE(wholePictures(), 2);
        EXPECT_TRUE(log().contains("保存中止")) << qPrintable(log());
    }
};

TEST_F(StartedCommand, a_signal_ends_info_behind_the_question_that_is_answered)
{
    detector("[Faults]\nReplyFaultCommand=02FA\nReplyDelayMs=1500\n");
    startCommand({"info"});
    waitForWritten(versionQuery);
    EndRequest::common().send(process);
    waitForEnd();
    expectEndBy(EndRequest::common());
    EXPECT_EQ(errors, "qv1k-acquire: ended by a signal\n");
    EXPECT_TRUE(output.contains("version ")) << qPrintable(output);
    EXPECT_EQ(written(batteryQuery), 0);
    expectTidyLog();
}

TEST_F(StartedCommand, a_signal_ends_set_behind_the_frame_that_is_acknowledged)
{
    detector("[Faults]\nReplyFaultCommand=0110\nReplyDelayMs=1000\n");
    signalBehindFirstFrameOfSet();
    EXPECT_EQ(errors, "qv1k-acquire: ended by a signal\n");
    EXPECT_EQ(sent(), 1);
    expectTidyLog();
}

TEST_F(StartedCommand, after_a_signal_a_silent_detector_is_not_asked_again)
{
    detector("[Faults]\nMissingReply=true\n");
    signalBehindFirstFrameOfSet();
    EXPECT_EQ(sent(), 1);
    expectTidyLog();
}

TEST_F(StartedCommand, a_detector_that_is_unplugged_before_it_answers_is_told_as_such_and_not_asked_again)
{
    detector("[Faults]\nMissingReply=true\n");
    startCommand({"info"});
    waitForWritten(versionQuery);
    detector("Unplugged=QV1K\n");
    waitForEnd();
    expectFailure("the detector was unplugged");
    EXPECT_EQ(sent(), 1);
    expectTidyLog();
}

TEST_F(StartedCommand, a_signal_ends_a_replay_and_the_frames_before_are_kept)
{
    startReplay();
    waitForFrames(3);
    EndRequest::common().send(process);
    waitForEnd();
    expectEndBy(EndRequest::common());
    expectCutReplay("ended by a signal");
}

TEST_F(StartedCommand, an_output_that_nobody_reads_any_more_ends_a_replay_too)
{
    LeavingReader reader;
    reader.attachTo(process);
    startReplay();
    reader.readAndLeave(3);
    waitForEnd();
    expectEndWithoutReader();
    expectCutReplay("nobody reads the standard output any more");
}
