// Exchanges and conversations on a link whose reply comes in pieces, early, late, too much of it or not at
// all, against the bytes that came. Input: a listing; each line is what a look at the queue finds: bytes,
// nothing, bytes that cannot be read ("!") or no status ("?"). What is asked for beyond the last line cannot
// be read.

#include "device/conversations.h"
#include "device/exchange.h"
#include "device/portmanager.h"
#include "device/protocol/readback.h"
#include "log/logmanager.h"
#include "tests/fuzz/scriptedlibrary.h"
#include "tests/fuzz/target.h"

#include <QCoreApplication>
#include <QDir>
#include <QTemporaryDir>

#include <cstring>
#include <utility>

using Fuzz::require;

namespace {

enum class Look { Bytes, Unreadable, NoStatus };

struct Step
{
    Look look = Look::Bytes;
    QByteArray bytes;
};

QList<Step> stepsOf(QByteArrayView input)
{
    QList<Step> steps;
    for (const QByteArray &line : input.toByteArray().split('\n')) {
        if (line.startsWith('!'))
            steps.append({Look::Unreadable, {}});
        else if (line.startsWith('?'))
            steps.append({Look::NoStatus, {}});
        else
            steps.append({Look::Bytes, QByteArray::fromHex(line)});
    }
    return steps;
}

/// One step a look. A read takes what the look found.
class Replies : public ScriptedLibrary
{
public:
    void play(const QList<Step> &steps)
    {
        m_steps = steps;
        written.clear();
    }

    std::optional<quint32> waiting() override
    {
        m_now = m_steps.isEmpty() ? Step{Look::Unreadable, {}} : m_steps.takeFirst();
        if (m_now.look == Look::NoStatus)
            return std::nullopt;
        return m_now.look == Look::Unreadable ? 1 : static_cast<quint32>(m_now.bytes.size());
    }

    std::optional<quint32> read(char *buffer, quint32 length) override
    {
        if (m_now.look != Look::Bytes)
            return std::nullopt;
        require(length == static_cast<quint32>(m_now.bytes.size()), "what waits is read, and no more");
        std::memcpy(buffer, m_now.bytes.constData(), length);
        return length;
    }

    void write(const QByteArray &bytes) override { written.append(bytes); }

    [[nodiscard]] const QList<Step> &left() const { return m_steps; }

    QList<QByteArray> written;

private:
    QList<Step> m_steps;
    Step m_now;
};

/// The log and the link on such a library, made once.
struct Bench
{
    Bench()
    {
        qInstallMessageHandler(
            [](QtMsgType, const QMessageLogContext &, const QString &) {}); // the log's echo
        const QString before = QDir::currentPath();
        QDir::setCurrent(folder.path()); // where the log is written
        LogManager::createInstance();
        QDir::setCurrent(before);
        PortManager::setDriver(library.driver());
        PortManager::createInstance();
    }
    ~Bench()
    {
        PortManager::destroyInstance();
        LogManager::destroyInstance();
    }

    PortManager &begin(const QList<Step> &steps)
    {
        PortManager &link = *PortManager::instance();
        link.openDevice(QStringLiteral("QV1K"));
        library.play(steps);
        return link;
    }

    QTemporaryDir folder;
    Replies library;
};

struct Reply
{
    QByteArray bytes;
    bool isComplete = false;
};

/// What an exchange takes for the reply; takes its steps from the list.
Reply takeReply(QList<Step> &steps, qsizetype expected)
{
    Reply reply;
    while (!steps.isEmpty()) {
        const Step step = steps.takeFirst();
        if (step.look == Look::Unreadable)
            return reply;
        reply.bytes += step.bytes;
        reply.isComplete = !step.bytes.isEmpty() && reply.bytes.size() == expected;
        if (reply.isComplete)
            return reply;
    }
    return reply;
}

/// What came can be told to be another command's, which was left over.
bool isAnothers(const Reply &reply, const QByteArray &command)
{
    return AckFrame::answersAnother(reply.bytes.toHex().toUpper(), command);
}

/// What is dropped before the next command when a reply was not what was waited for.
void takeDropped(QList<Step> &steps)
{
    while (!steps.isEmpty()) {
        const Step step = steps.takeFirst();
        if (step.bytes.isEmpty())
            return;
    }
}

/// Each takes its reply, and a late one is not taken for that of the next.
void exchangeSeveral(Bench &bench, QList<Step> steps)
{
    constexpr int many = 4;
    PortManager &link = bench.begin(steps);
    const QByteArray command = CommandFrame::readinessQuery();
    bool isSettled = true;
    for (int i = 1; i <= many && !steps.isEmpty(); ++i) {
        if (!isSettled)
            takeDropped(steps);
        const Reply expected = takeReply(steps, AckFrame::commandBytes);
        const QByteArray reply = Exchange::run(link, command, {5000});
        isSettled = expected.isComplete && !isAnothers(expected, command);
        require(reply == expected.bytes.toHex().toUpper(), "a reply is what came after the command");
        require(link.isSettled() == isSettled, "a link is settled by exactly the reply that was waited for");
        require(bench.library.written.size() == i, "a command is written once");
        require(bench.library.left().size() == steps.size(), "nothing is read beyond the reply");
    }
}

/// Runs one conversation; `judge` gets the bytes that came and what the conversation made of them.
template <typename Talk, typename Judge>
void converse(Bench &bench, QList<Step> steps, int expectedBytes, const QByteArray &command, Talk talk,
              Judge judge)
{
    PortManager &link = bench.begin(steps);
    const Reply reply = takeReply(steps, expectedBytes);
    const auto outcome = talk(link);
    require(bench.library.written == QList{command}, "a conversation writes its command");
    require(judge(reply.bytes, outcome), "a conversation is judged by the bytes that came");
}

void converseAboutStates(Bench &bench, const QList<Step> &steps)
{
    const auto echoes = [](const QByteArray &command) {
        return [echo = AckFrame::echoOf(command)](const QByteArray &bytes, bool isEchoed) {
            return isEchoed == bytes.startsWith(echo);
        };
    };
    const auto saysReady = [](const QByteArray &bytes, bool isReady) {
        return isReady == (bytes.size() >= 6 && (bytes[4] & 1) != 0);
    };
    const auto saysReadyItself = [&](const QByteArray &bytes, bool isReady) {
        const bool isLeftOver = isAnothers({bytes}, CommandFrame::readinessQuery());
        return isLeftOver ? !isReady : saysReady(bytes, isReady);
    };
    const QByteArray start = CommandFrame::startAcquisition();
    const auto startAndDoubt = [](PortManager &link) {
        const bool isStarted = Conversation::start(link);
        require(link.mayBeStreaming() != isStarted, "a start that is not confirmed leaves a doubt");
        return isStarted;
    };
    converse(bench, steps, 6, start, startAndDoubt, echoes(start));
    const QByteArray pattern = CommandFrame::testPattern(5);
    const auto select = [](PortManager &link) {
        return Conversation::selectTestPattern(link, 5);
    };
    converse(bench, steps, 6, pattern, select, echoes(pattern));
    converse(bench, steps, 6, CommandFrame::readinessQuery(), &Conversation::isReady, saysReady);
    const auto askOnce = [](PortManager &link) {
        return Conversation::waitUntilReady(link, [] { return false; });
    };
    converse(bench, steps, 6, CommandFrame::readinessQuery(), askOnce, saysReadyItself);
}

void converseAboutNumbers(Bench &bench, const QList<Step> &steps)
{
    const auto tellsLevel = [](const QByteArray &bytes, std::optional<int> level) {
        const bool isNone = bytes.isEmpty() || isAnothers({bytes}, CommandFrame::levelQuery());
        return isNone ? !level : level == static_cast<uchar>(bytes[0]);
    };
    converse(bench, steps, 6, CommandFrame::levelQuery(), &Conversation::batteryLevel, tellsLevel);
    const auto isText = [](const QByteArray &bytes, const QByteArray &text) {
        return text == bytes.toHex().toUpper();
    };
    converse(bench, steps, Readback::versionBytes, CommandFrame::versionReadback(),
             &Conversation::readVersion, isText);
    converse(bench, steps, Readback::parameterBytes, CommandFrame::parameterReadback(),
             &Conversation::readParameters, isText);
    converse(bench, steps, Readback::eepromBytes, CommandFrame::eepromReadback(), &Conversation::readEeprom,
             isText);
    const QByteArray frame = CommandFrame::parameters(1, "xy");
    const auto download = [&frame](PortManager &link) {
        return Conversation::download(link, frame);
    };
    const auto isAcknowledged = [](const QByteArray &bytes, bool isTaken) {
        return isTaken == bytes.toHex().contains("ffbb01");
    };
    converse(bench, steps, 6, frame, download, isAcknowledged);
}

} // namespace

void Fuzz::tryInput(QByteArrayView input)
{
    // Its log has a thread of its own, which must not outlive the application.
    static Bench *bench = nullptr;
    if (bench == nullptr) {
        bench = new Bench;
        qAddPostRoutine([] { delete std::exchange(bench, nullptr); });
    }
    const QList<Step> steps = stepsOf(input);
    exchangeSeveral(*bench, steps);
    converseAboutStates(*bench, steps);
    converseAboutNumbers(*bench, steps);
}
