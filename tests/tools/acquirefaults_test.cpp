#include "tests/support/limitedwriting.h"
#include "tests/tools/acquirerun.h"

#include <QDir>

namespace {

const QStringList shortTimeout{QStringLiteral("--timeout"), QStringLiteral("1")};
/// Long enough for the first frames also on a busy machine; what is waited for comes after them.
const QStringList frameTimeout{QStringLiteral("--timeout"), QStringLiteral("5")};

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
    expectFailure(QStringLiteral("time-out: no frame for 5 s, 2 of 5 received"));
    EXPECT_EQ(QDir(QStringLiteral("out/T")).entryList(QDir::Files).size(), 2);
}

TEST_F(Acquire, a_detector_pulled_out_while_sampling_is_a_time_out)
{
    detector("[Faults]\nUnplugAtByte=5000000\n");
    runVirtual(QStringList{QStringLiteral("--frames"), QStringLiteral("5")} + frameTimeout);
    expectFailure(QStringLiteral("time-out: no frame for 5 s, 1 of 5 received"));
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

TEST_F(Acquire, a_disk_that_fills_up_is_an_error_after_all_frames_and_the_log_names_each_file)
{
    detector("");
    {
        const FileSizeLimit limit(20'000); // the process that is started has it too
        runVirtual({QStringLiteral("--frames"), QStringLiteral("2"), QStringLiteral("--data"),
                    QStringLiteral("--picture")});
    }
    expectFailure(QStringLiteral("6 files could not be written; the log tells which"));
    EXPECT_TRUE(output.contains(QStringLiteral("frame    2")));
    const QString written = log();
    EXPECT_EQ(written.count(QStringLiteral("File too large")), 6);
    EXPECT_EQ(written.count(QStringLiteral("out/T/T_")), 6);
}
