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

} // namespace

TEST_F(Acquire, a_terminal_shows_how_far_the_run_is_and_keeps_nothing_of_it)
{
    detector("");
    const Terminal terminal;
    ASSERT_GE(terminal.side(), 0);
    QProcess process;
    process.setChildProcessModifier([&terminal] { dup2(terminal.side(), STDERR_FILENO); });
    process.start(program, {QStringLiteral("--library"), QStringLiteral("virtual"),
                            QStringLiteral("--frames"), QStringLiteral("2")});
    ASSERT_TRUE(process.waitForFinished(60000 * patience));
    EXPECT_EQ(process.exitCode(), 0);
    const QString shown = terminal.text();
    const QRegularExpression progress(QStringLiteral(
        "\r1 of 2 frames  \\d+\\.\\d\\d frames/s  \\d+\\.\\d MB/s  \\d+ waiting  \\d+ s left"));
    EXPECT_TRUE(shown.contains(progress)) << qPrintable(shown);
    EXPECT_TRUE(shown.contains(QStringLiteral("\r2 of 2 frames  "))) << qPrintable(shown);
    EXPECT_TRUE(QRegularExpression(QStringLiteral("\r +\r$")).match(shown).hasMatch()) << qPrintable(shown);
}
