#include "tests/soak/actions.h"
#include "tests/soak/logdelay.h"
#include "tests/soak/processfigures.h"
#include "tests/soak/recovery.h"

#include "device/protocol/frameformat.h"

#include <cstdio>

namespace {

constexpr int checkpointEvery = 40; ///< actions
constexpr qint64 logLimitMs = 5000;
constexpr int mostComplaints = 10;
constexpr int warmUp = 2; ///< checkpoints, until everything was used once
constexpr qint64 progressEveryMs = 60000;

qint64 fromEnvironment(const char *name, qint64 usual)
{
    bool isNumber = false;
    const qint64 number = qEnvironmentVariable(name).toLongLong(&isNumber);
    return isNumber ? number : usual;
}

/// What the log repeats on the debug output is in the log.
void keepQuiet(QtMsgType type, const QMessageLogContext & /*context*/, const QString &text)
{
    if (type == QtFatalMsg || type == QtCriticalMsg)
        std::fprintf(stderr, "%s\n", qPrintable(text));
}

} // namespace

/// Random operations of the window while random faults come and go: QV1K_SOAK_SECONDS (30) of seed
/// QV1K_SOAK_SEED (1).
class Soak : public SoakWindow
{
protected:
    Soak() { qInstallMessageHandler(&keepQuiet); }
    ~Soak() override { qInstallMessageHandler(nullptr); }

    void act()
    {
        Chance chance(static_cast<quint64>(seed), ++actions);
        const Action &action = Action::random(chance);
        setContext(QStringLiteral("seed %1, action %2 (%3), %4 s")
                       .arg(seed)
                       .arg(actions)
                       .arg(QLatin1String(action.name))
                       .arg(clock.elapsed() / 1000));
        boxes.startOver(chance.oneIn(2) ? QMessageBox::Yes : QMessageBox::Ok);
        if (!window->isVisible())
            reopen();
        action.take(*this, chance);
        check();
        lookAtLog();
        if (actions % checkpointEvery == 0)
            checkpoint();
    }

    /// The log takes ten lines a second: an operator who is faster than any waits for what the action before
    /// told.
    void lookAtLog()
    {
        if (!QTest::qWaitFor([this] { return log.isWritten(); }, patienceMs))
            complain(QStringLiteral("the log stands still"));
        if (log.delayMs() > logLimitMs)
            complain(QStringLiteral("the log is %1 ms behind: ").arg(log.delayMs()) + log.waited());
        log.mark();
    }

    void checkpoint()
    {
        setContext(QStringLiteral("seed %1, after action %2, %3 s")
                       .arg(seed)
                       .arg(actions)
                       .arg(clock.elapsed() / 1000));
        if (!window->isVisible())
            reopen();
        if (const QString failed = failsToWorkAgain(*this); !failed.isEmpty())
            complain(QStringLiteral("it does not work again: ") + failed);
        check();
        if (!QTest::qWaitFor([this] { return isShown(); }, patienceMs))
            complain(QStringLiteral("a frame was received and not shown"));
        lookAtLog();
        lookAtProcess();
        if (clock.elapsed() / progressEveryMs != lastProgress)
            tell();
        lastProgress = clock.elapsed() / progressEveryMs;
    }

    /// Without a window everything must be given back, but what calls hold that hang for seconds.
    void lookAtProcess()
    {
        endWindow();
        log.forget();
        if (++checkpoints <= warmUp) {
            figures = ProcessFigures::now();
            first = figures.most(first);
            return reopen();
        }
        const auto isGivenBack = [this] {
            figures = ProcessFigures::now();
            return !figures.holdsMoreThan(first);
        };
        if (!QTest::qWaitFor(isGivenBack, patienceMs))
            complain(QStringLiteral("it grows: ") + first.text() + QStringLiteral(" became ") +
                     figures.text());
        reopen();
    }

    void tell() const
    {
        const qint64 blocks = counts().bytesRead / FrameFormat::blockBytes;
        std::printf("soak: %lld s, seed %lld: %d actions, %lld frames shown, %lld blocks, %lld recordings, "
                    "%lld windows, "
                    "%lld connections, %lld faults set, %lld calls failed, %d violations, log %lld ms behind "
                    "at most\n",
                    clock.elapsed() / 1000, seed, actions, framesShown(), blocks, recordings(), windows(),
                    counts().opened.load(), faults(), counts().failed.load(), complaints(), log.longestMs());
        std::printf("soak: without a window at first %s; now %s\n", qPrintable(first.text()),
                    qPrintable(figures.text()));
        std::fflush(stdout);
    }

    const qint64 seconds = fromEnvironment("QV1K_SOAK_SECONDS", 30);
    const qint64 seed = fromEnvironment("QV1K_SOAK_SEED", 1);
    QElapsedTimer clock;
    int actions = 0;
    LogDelay log;
    int checkpoints = 0;
    ProcessFigures first; ///< the most of the first checkpoints
    ProcessFigures figures;
    qint64 lastProgress = 0;
};

TEST_F(Soak, whatever_is_pressed_and_whatever_fails_the_window_stays_usable_and_nothing_is_lost)
{
    clock.start();
    settle("[General]\nPacing=none\n");
    reopen();
    while (clock.elapsed() < seconds * 1000 && complaints() < mostComplaints)
        act();
    checkpoint();
    tell();
}
