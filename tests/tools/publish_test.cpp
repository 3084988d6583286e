#include "tests/support/systemreason.h"
#include "tests/tools/commandrun.h"

// What receivers get of it: tests/streaming, and the examples of tests/docs.

class Publishing : public Commands
{
protected:
    void acquire(const QStringList &arguments) { command(QStringLiteral("acquire"), arguments); }

    const QStringList briefly{QStringLiteral("--timeout"),
                              QStringLiteral("1")}; ///< where no frame is to come
};

TEST_F(Publishing, options_of_what_is_not_asked_for_are_refused)
{
    const QList<QStringList> options{
        {"--must-arrive"}, {"--publish-raw"}, {"--receivers", "1"}, {"--publish-key", "key"}};
    for (const QStringList &option : options) {
        acquire(option);
        expectRefusal("--must-arrive, --receivers, --publish-raw and --publish-key go with --publish");
    }
}

TEST_F(Publishing, a_key_that_cannot_be_used_is_refused)
{
    acquire({"--publish", "0", "--publish-key", "missing"});
    expectRefusal("the key missing cannot be read: " + systemReason(SystemFailure::NoSuchFile));
    folder.write("key", "too short\n");
    acquire({"--publish", "0", "--publish-key", "key"});
    expectRefusal("key holds no key of 40 characters");
}

TEST_F(Publishing, an_endpoint_that_makes_no_sense_is_told_before_the_detector_is_opened)
{
    acquire({"--publish", "nowhere"});
    expectFailure("frames cannot be published at nowhere: ");
    EXPECT_FALSE(QDir(folder.path()).exists("written.txt"));
}

TEST_F(Publishing, receivers_that_do_not_come_end_it_before_the_detector_is_opened)
{
    acquire(briefly + QStringList{"--publish", "0", "--receivers", "1"});
    expectFailure("fewer than 1 receivers came within 1 s");
    EXPECT_FALSE(QDir(folder.path()).exists("written.txt"));
}

TEST_F(Publishing, a_frame_that_nobody_takes_ends_it_and_the_detector_is_halted)
{
    detector("");
    acquire(frameTimeout + QStringList{"--publish", "0", "--must-arrive", "--frames", "3"});
    expectFailure(
        QStringLiteral("no receiver took a frame within %1 s, 1 of 3 received").arg(silenceSeconds));
    ASSERT_FALSE(written().isEmpty());
    EXPECT_EQ(written().constLast(), haltFrame);
}

TEST_F(Publishing, frames_that_may_be_lost_go_nowhere_where_nobody_is_and_are_counted)
{
    detector("");
    acquire({"--publish", "0", "--frames", "2", json});
    EXPECT_EQ(exitCode, 0) << qPrintable(errors);
    EXPECT_EQ(summary()["published"].toInt(), 2);
    EXPECT_FALSE(summary().contains("folder")) << "nothing is recorded unasked";
}

TEST_F(Publishing, what_is_recorded_besides_is_what_was_asked_for)
{
    detector("");
    acquire({"--publish", "0", "--frames", "1", "--picture", "--name", "T"});
    EXPECT_EQ(exitCode, 0) << qPrintable(errors);
    EXPECT_EQ(QDir(folder.filePath("T")).entryList(QDir::Files), QStringList("T_pic1.png"));
}
