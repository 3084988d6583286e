// The receive loop on a library that delivers bytes in any pieces and fails as it likes, against the
// straightforward way. Input: steps, each a letter and where it takes one a decimal number; each look at the
// queue plays the next one:
//   a<n>  n bytes more wait           k    they wait, and the read fails
//   c<n>  a read brings n bytes       t    the read fails, and they are gone
//   o<n>  it says n bytes more        e    there is no status
//   s     a stop is requested         b    a start comes
//   h     it is halted                x    it is closed, opened and started
//   d<n>  n frames more are through   l<n> the bridge lost bytes n times more

#include "device/protocol/commandframes.h"
#include "device/receiveloop.h"
#include "device/shortrest.h"
#include "tests/fuzz/scriptedlibrary.h"
#include "tests/fuzz/target.h"

#include <QElapsedTimer>
#include <QThread>

#include <algorithm>
#include <thread>
#include <vector>

using Fuzz::require;

// Rests that take no time, so that a pass in which nothing comes takes none.
struct ShortRest::System
{
};
ShortRest::ShortRest() = default;
ShortRest::~ShortRest() = default;
void ShortRest::oneMillisecond() {}

namespace {

constexpr qint64 mostBytes = 5 * FrameFormat::frameBytes; ///< of one input
constexpr int heldBackFrom = 64;
constexpr int resumedAt = 32;
constexpr int framesThrough = 2 - heldBackFrom; ///< at the beginning: the second frame is one too many
constexpr int mostFailures = 8;                 ///< in a row; the loop rests 100 ms when there are more

struct Step
{
    char what = 0;
    qint64 number = 0;
};

std::vector<Step> stepsOf(QByteArrayView input)
{
    std::vector<Step> steps;
    for (const char letter : input) {
        if (letter >= '0' && letter <= '9' && !steps.empty())
            steps.back().number = qMin(steps.back().number * 10 + (letter - '0'), mostBytes);
        else if (letter >= 'a' && letter <= 'z')
            steps.push_back({letter});
    }
    return steps;
}

/// What arrives, from the first byte to the last; nothing in it comes again soon.
const QByteArray &stream()
{
    static const QByteArray bytes = [] {
        QByteArray all(mostBytes, Qt::Uninitialized);
        quint32 state = 1;
        for (char &byte : all) {
            state = state * 1664525 + 1013904223;
            byte = static_cast<char>(state >> 24);
        }
        return all;
    }();
    return bytes;
}

/// A loop in the plainest words: told of each pass what happens in it, it says what is to come of it.
class Plain
{
public:
    QList<QByteArray> frames;
    QList<QByteArray> written;
    QList<quint32> losses;
    int halts = 0;
    qint64 through = framesThrough;
    bool isHalted = false;
    bool isStopping = false;

    void start(bool isNew)
    {
        isHalted = false;
        isStopping = false;
        m_isStarting = true;
        if (isNew) {
            beginFrame(1);
            m_isHeldBack = false;
        }
    }

    /// False when this pass reads nothing.
    bool look(quint32 lost)
    {
        if (isHalted)
            return false;
        if (m_isStarting) {
            m_isStarting = false;
            m_lostAtStart = lost;
            m_hasToldLosses = false;
        }
        if (!m_isHeldBack || !(isStopping || framesWaiting() <= resumedAt))
            return true;
        m_isHeldBack = false;
        request();
        return false;
    }

    void read(QByteArrayView bytes, quint32 lost)
    {
        m_frame += bytes;
        if (!bytes.isEmpty() && lost != m_lostAtStart && !m_hasToldLosses) {
            m_hasToldLosses = true;
            losses.append(lost - m_lostAtStart);
        }
        if (m_frame.size() < m_blocks * FrameFormat::blockBytes)
            return;
        if (m_blocks == FrameFormat::blocksPerFrame) {
            frames.append(m_frame);
            beginFrame(0);
            m_isHeldBack = framesWaiting() >= heldBackFrom && !isStopping;
        }
        if (!m_isHeldBack)
            request();
    }

private:
    [[nodiscard]] qint64 framesWaiting() const { return frames.size() - through; }

    void beginFrame(int blocks)
    {
        m_frame.clear();
        m_blocks = blocks;
    }

    void request()
    {
        if (!isStopping) {
            written.append(CommandFrame::blockRequest(m_blocks++));
            return;
        }
        written.append(CommandFrame::haltAcquisition());
        halts += 1;
        isHalted = true;
        beginFrame(1);
    }

    QByteArray m_frame;
    int m_blocks = 1; ///< whole blocks that make the next boundary
    bool m_isHeldBack = false;
    bool m_isStarting = true;
    quint32 m_lostAtStart = 0;
    bool m_hasToldLosses = false;
};

/// Plays the steps to a real loop, and tells the plain one what happens.
class Play : public ScriptedLibrary
{
public:
    explicit Play(QByteArrayView input) : m_steps(stepsOf(input)), m_state(driver())
    {
        m_state.m_framesDone = framesThrough;
        d2xx::Handle handle = nullptr;
        m_state.m_driver->open("QV1K", &handle);
        m_state.m_handle = handle;
        m_state.begin();
    }

    /// On a thread that ends with it.
    void run()
    {
        QElapsedTimer timer;
        timer.start();
        const auto onFrame = [this](const QByteArray &frame) {
            take(frame);
        };
        const auto onHalted = [this] {
            ++m_halts;
        };
        const auto onBytesLost = [this](quint32 times) {
            m_toldLosses.append(times);
        };
        ReceiveLoop(m_state, {onFrame, onHalted, [](bool) {}, onBytesLost,
                              [](d2xx::Handle) {
                              }})
            .run();
        if (timer.elapsed() < StreamWatch::lossMs) // later, time has a say too
            compare();
    }

    std::optional<quint32> waiting() override
    {
        require(m_next <= m_steps.size(), "a loop ends when it is told to");
        m_step = m_next < m_steps.size() ? m_steps[m_next] : Step{};
        if (m_next++ == m_steps.size())
            QThread::currentThread()->requestInterruption();
        act();
        m_mayRead = m_plain.look(m_losses);
        return m_step.what == 'e' ? std::nullopt : std::optional(bytesWaiting());
    }

    std::optional<quint32> read(char *buffer, quint32 length) override
    {
        require(m_mayRead, "a pass reads once, and not while it is halted or holds back");
        require(length == bytesWaiting() && length > 0, "what waits is read, and no more");
        m_mayRead = false;
        if ((m_step.what == 'k' || m_step.what == 't') && ++m_failures <= mostFailures) {
            if (m_step.what == 't')
                m_read = m_arrived;
            m_plain.read({}, m_losses);
            return std::nullopt;
        }
        m_failures = 0;
        const qint64 count =
            m_step.what == 'c' ? qMin(m_step.number, m_arrived - m_read) : m_arrived - m_read;
        const QByteArrayView taken = QByteArrayView(stream()).sliced(m_read, count);
        std::copy(taken.begin(), taken.end(), buffer);
        m_read += count;
        m_plain.read(taken, m_losses);
        return static_cast<quint32>(count + (m_step.what == 'o' ? m_step.number : 0));
    }

    void write(const QByteArray &bytes) override { m_written.append(bytes); }
    quint32 losses() override { return m_losses; }

private:
    [[nodiscard]] quint32 bytesWaiting() const { return static_cast<quint32>(m_arrived - m_read); }

    /// What the detector and the other thread do before a look.
    void act()
    {
        switch (m_step.what) {
        case 'a':
            m_arrived = qMin(m_arrived + m_step.number, mostBytes);
            break;
        case 's':
            m_state.m_stopRequested = true;
            m_plain.isStopping = true;
            break;
        case 'h':
            (void)m_state.takeHalt();
            m_plain.isHalted = true;
            break;
        case 'x':
            m_state.m_handle = m_state.close();
            [[fallthrough]];
        case 'b':
            m_state.begin();
            m_plain.start(m_step.what == 'x');
            break;
        case 'd':
            m_plain.through = qMin(m_plain.through + m_step.number, qint64{m_plain.frames.size()});
            m_state.m_framesDone = m_plain.through;
            break;
        case 'l':
            m_losses += static_cast<quint32>(m_step.number);
            break;
        default:
            break;
        }
    }

    /// Every other frame is kept: its buffer must not be used again.
    void take(const QByteArray &frame)
    {
        require(m_taken < m_plain.frames.size() && frame == m_plain.frames[m_taken],
                "a frame is the bytes that were read since the one before");
        m_kept.append(m_taken % 2 == 0 ? QByteArray() : frame);
        ++m_taken;
    }

    void compare() const
    {
        require(m_taken == m_plain.frames.size(), "every frame is handed on");
        for (qsizetype i = 1; i < m_taken; i += 2)
            require(m_kept[i] == m_plain.frames[i], "a frame that is kept stays as it was");
        require(m_written == m_plain.written, "each block is acknowledged, and a stop told once");
        require(m_halts == m_plain.halts, "each stop is told once");
        require(m_toldLosses == m_plain.losses, "losses are told");
    }

    const std::vector<Step> m_steps;
    std::size_t m_next = 0;
    Step m_step; ///< of this pass
    qint64 m_arrived = 0;
    qint64 m_read = 0; ///< of those that arrived
    bool m_mayRead = false;
    int m_failures = 0;
    quint32 m_losses = 0;

    LinkState m_state;
    Plain m_plain;
    qsizetype m_taken = 0;
    QList<QByteArray> m_kept;
    QList<QByteArray> m_written;
    QList<quint32> m_toldLosses;
    int m_halts = 0;
};

} // namespace

void Fuzz::tryInput(QByteArrayView input)
{
    Play play(input);
    std::thread([&play] { play.run(); }).join();
}
