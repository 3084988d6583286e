#include "tests/support/systemreason.h"
#include "tests/tools/acquirerun.h"

#include <QDir>
#include <QRegularExpression>

namespace {

const QStringList shortTimeout{QStringLiteral("--timeout"), QStringLiteral("1")};

} // namespace

TEST_F(Acquire, without_a_driver_library_the_reason_is_told)
{
    run({QStringLiteral("--library"), QStringLiteral("/nowhere/none.so")});
    expectFailure(QStringLiteral("no driver library: "));
    EXPECT_TRUE(errors.contains(QStringLiteral("/nowhere/none.so")));
}

TEST_F(Acquire, without_a_detector_that_is_told)
{
    detector("Attached=false\n");
    runVirtual({});
    expectFailure(QStringLiteral("no detector found"));
}

TEST_F(Acquire, a_detector_held_by_another_program_is_told_by_its_number)
{
    detector("SerialNumbers=QV77\n[Faults]\nFailOpens=1\n");
    runVirtual({});
    expectFailure(QStringLiteral("the detector QV77 cannot be opened; another program may hold it"));
}

TEST_F(Acquire, a_busy_detector_is_a_time_out)
{
    detector("[Faults]\nNotReadyQueries=1000\n");
    runVirtual(shortTimeout);
    expectFailure(QStringLiteral("time-out: the detector is busy, not ready after 1 s"));
}

TEST_F(Acquire, a_detector_that_becomes_ready_in_time_is_waited_for)
{
    detector("[Faults]\nNotReadyQueries=2\n");
    runVirtual({});
    EXPECT_EQ(exitCode, 0) << qPrintable(errors);
}

TEST_F(Acquire, a_stream_that_stalls_is_a_time_out_and_the_frames_so_far_are_kept)
{
    detector("[Faults]\nStallAfterBytes=10000000\n"); // in the third frame
    runVirtual(QStringList{QStringLiteral("--frames"), QStringLiteral("5")} + frameTimeout);
    expectSilenceAfter(2, 5);
    EXPECT_EQ(QDir(QStringLiteral("out/T")).entryList(QDir::Files).size(), 2);
}

TEST_F(Acquire, a_detector_pulled_out_while_sampling_is_told_as_such)
{
    detector("[Faults]\nUnplugAtByte=5000000\n");
    runVirtual({QStringLiteral("--frames"), QStringLiteral("5")});
    expectFailure(QStringLiteral("the detector was unplugged, 1 of 5 received"));
}

TEST_F(Acquire, one_of_several_detectors_has_to_be_chosen_and_they_are_told)
{
    detector("SerialNumbers=A,B\n");
    runVirtual({});
    EXPECT_EQ(exitCode, 2);
    EXPECT_EQ(errors, QStringLiteral(
                          "qv1k-acquire: several detectors are attached, choose one with --serial: A, B\n"));
    runVirtual({QStringLiteral("--serial"), QStringLiteral("B")});
    EXPECT_EQ(exitCode, 0) << qPrintable(errors);
}

TEST_F(Acquire, the_detector_that_was_chosen_is_the_one_that_is_opened)
{
    detector("SerialNumbers=A,B\n[Faults]\nFailOpens=1\n");
    runVirtual({QStringLiteral("--serial"), QStringLiteral("B")});
    expectFailure(QStringLiteral("the detector B cannot be opened"));
}

TEST_F(Acquire, a_detector_that_is_not_there_is_told_with_those_that_are)
{
    detector("SerialNumbers=A,B\n");
    runVirtual({QStringLiteral("--serial"), QStringLiteral("C")});
    expectFailure(QStringLiteral("no detector C found; attached: A, B"));
}

TEST_F(Acquire, the_frame_rate_does_not_count_the_stop)
{
    detector("[Faults]\nReplyFaultCommand=03A1\nMissingReply=true\n"); // 3.5 s of waiting
    runVirtual({QStringLiteral("--test-pattern"), QStringLiteral("1")});
    EXPECT_EQ(exitCode, 0) << qPrintable(errors);
    const auto rate = QRegularExpression(QStringLiteral("1 frames in ([0-9.]+) s")).match(output);
    const auto frame = QRegularExpression(QStringLiteral("frame    1 +([0-9.]+) s")).match(output);
    EXPECT_TRUE(rate.hasMatch()) << qPrintable(output);
    EXPECT_EQ(rate.captured(1), frame.captured(1)) << "up to the last frame that was stored";
}

TEST_F(Acquire, percent_signs_in_names_are_told_as_they_are)
{
    detector("");
    const QString path = folder.filePath(QStringLiteral("o%1%2/n%1%3/n%1%3_pic1.png"));
    QDir().mkpath(path);
    const QStringList names{QStringLiteral("--library"), QStringLiteral("virtual"),
                            QStringLiteral("--output"),  QStringLiteral("o%1%2"),
                            QStringLiteral("--name"),    QStringLiteral("n%1%3")};
    run(names);
    expectFailure(QStringLiteral("1 file could not be written; the log tells which"));
    EXPECT_TRUE(output.contains(QStringLiteral("o%1%2/n%1%3\n"))) << qPrintable(output);
    EXPECT_TRUE(log().contains(QStringLiteral("o%1%2/n%1%3/n%1%3_pic1.png")));
    folder.write(QStringLiteral("f%1"), "a file");
    run({QStringLiteral("--library"), QStringLiteral("virtual"), QStringLiteral("--output"),
         QStringLiteral("f%1")});
    expectFailure(QStringLiteral("the folder f%1 cannot be created"));
}

TEST_F(Acquire, a_folder_that_cannot_be_made_is_told)
{
    detector("");
    folder.write(QStringLiteral("out"), "a file stands where the folder should be");
    runVirtual({});
    expectFailure(QStringLiteral("the folder out cannot be created"));
}

TEST_F(Acquire, a_file_that_cannot_be_written_ends_the_run_with_an_error_after_all_frames)
{
    detector("");
    QDir().mkpath(QStringLiteral("out/T/T_pic2.png"));
    runVirtual({QStringLiteral("--frames"), QStringLiteral("3")});
    expectFailure(QStringLiteral("1 file could not be written; the log tells which"));
    EXPECT_TRUE(output.contains(QStringLiteral("frame    3")));
}

TEST_F(Acquire, a_file_that_was_written_and_is_not_there_in_the_end_is_an_error)
{
    detector("");
    environment.insert("QV1K_LOST_FILE", "out/T/T_pic1.png");
    run({"--library", QV1K_NOTING_LIBRARY, "--output", "out", "--name", "T", "--frames", "2"});
    expectFailure("out/T/T_pic1.png is missing or incomplete");
    EXPECT_TRUE(output.contains("Recorded in ")) << "nothing failed before";
}

TEST_F(Acquire, a_disk_that_fills_up_is_an_error_after_all_frames_and_the_log_names_each_file)
{
    detector("");
    environment.insert(QStringLiteral("QV1K_FILE_SIZE_LIMIT"), QStringLiteral("20000"));
    run({QStringLiteral("--library"), QStringLiteral(QV1K_NOTING_LIBRARY), QStringLiteral("--output"),
         QStringLiteral("out"), QStringLiteral("--name"), QStringLiteral("T"), QStringLiteral("--frames"),
         QStringLiteral("2"), QStringLiteral("--data"), QStringLiteral("--picture")});
    expectFailure(QStringLiteral("6 files could not be written; the log tells which"));
    EXPECT_TRUE(output.contains(QStringLiteral("frame    2")));
    const QString written = log();
    EXPECT_EQ(written.count(systemReason(SystemFailure::FileTooLarge)), 6);
    EXPECT_EQ(written.count(QStringLiteral("out/T/T_")), 6);
}
