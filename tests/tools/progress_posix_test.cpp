#include "tests/tools/acquirerun.h"

#include <QRegularExpression>

namespace {

/// qv1k-acquire at a terminal that nobody sits at.
class AtTerminal : public Acquire
{
protected:
    /// What the terminal shows of a run.
    [[nodiscard]] QString shownOf(const QStringList &arguments)
    {
        detector("");
        environment.insert("LD_LIBRARY_PATH", QV1K_ALL_TERMINALS_FOLDER);
        environment.insert("LD_PRELOAD", QV1K_ALL_TERMINALS);
        QProcess process;
        process.setProcessEnvironment(environment);
        process.start(program, QStringList{"--library", "virtual"} + arguments);
        EXPECT_TRUE(process.waitForFinished(60000 * patience));
        EXPECT_EQ(process.exitCode(), 0);
        return QString::fromUtf8(process.readAllStandardError());
    }
};

} // namespace

TEST_F(AtTerminal, a_run_shows_how_far_it_is_and_keeps_nothing_of_it)
{
    const QString shown = shownOf({"--frames", "2"});
    const QRegularExpression progress(
        "\r1 of 2 frames  \\d+\\.\\d\\d frames/s  \\d+\\.\\d MB/s  \\d+ waiting  \\d+ s left");
    EXPECT_TRUE(shown.contains(progress)) << qPrintable(shown);
    EXPECT_TRUE(shown.contains("\r2 of 2 frames  ")) << qPrintable(shown);
    EXPECT_TRUE(shown.contains(QRegularExpression("\r +\r$"))) << qPrintable(shown);
}

TEST_F(AtTerminal, a_run_of_so_many_seconds_shows_how_many_are_left)
{
    const QString shown = shownOf({"--seconds", "1"});
    const QRegularExpression progress(
        "\\r1 frames  [0-9.]+ frames/s  [0-9.]+ MB/s  \\d+ waiting  [01] s left");
    EXPECT_TRUE(shown.contains(progress)) << qPrintable(shown);
}

TEST_F(AtTerminal, a_run_that_shows_the_log_shows_nothing_between_its_lines)
{
    const QString shown = shownOf({"--seconds", "2", "--verbose"});
    EXPECT_TRUE(shown.contains("驱动库：")) << qPrintable(shown);
    EXPECT_FALSE(shown.contains("frames/s")) << qPrintable(shown);
}
