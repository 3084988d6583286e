#include "tests/tools/acquirerun.h"

#include <QRegularExpression>

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdlib>

namespace {

/// A terminal that nobody sits at.
class Terminal
{
public:
    Terminal() : m_screen(posix_openpt(O_RDWR | O_NOCTTY))
    {
        if (m_screen < 0 || grantpt(m_screen) != 0 || unlockpt(m_screen) != 0)
            return;
        m_side = open(ptsname(m_screen), O_RDWR | O_NOCTTY);
    }
    ~Terminal()
    {
        close(m_side);
        close(m_screen);
    }
    Q_DISABLE_COPY_MOVE(Terminal)

    [[nodiscard]] int side() const { return m_side; }

    /// What was written to it so far.
    [[nodiscard]] QString text() const
    {
        int waiting = 0;
        ioctl(m_screen, FIONREAD, &waiting);
        QByteArray bytes(waiting, Qt::Uninitialized);
        bytes.truncate(
            static_cast<qsizetype>(read(m_screen, bytes.data(), static_cast<std::size_t>(waiting))));
        return QString::fromUtf8(bytes);
    }

private:
    int m_screen = -1;
    int m_side = -1;
};

/// qv1k-acquire at a terminal.
class AtTerminal : public Acquire
{
protected:
    /// What the terminal shows of a run.
    [[nodiscard]] QString shownOf(const QStringList &arguments)
    {
        detector("");
        const Terminal terminal;
        EXPECT_GE(terminal.side(), 0);
        QProcess process;
        process.setChildProcessModifier([&terminal] { dup2(terminal.side(), STDERR_FILENO); });
        process.start(program, QStringList{"--library", "virtual"} + arguments);
        EXPECT_TRUE(process.waitForFinished(60000 * patience));
        EXPECT_EQ(process.exitCode(), 0);
        return terminal.text();
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
