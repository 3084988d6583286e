// What a host may write to the virtual detector, in any pieces, against a detector in the plainest words.
// Input: a listing; each line is one write.

#include "simulator/firmware/firmware.h"
#include "simulator/geometry.h"
#include "tests/fuzz/target.h"

#include <QFile>
#include <QTemporaryDir>

#include <numeric>

using Fuzz::require;

namespace {

constexpr std::chrono::milliseconds replyTime = simulator::SendQueue::usualLatency;
constexpr qsizetype headBytes = 6;
constexpr int blockBytes = 0x20000;

struct Command
{
    int frameClass = 0;
    int code = 0;
    QByteArray payload;
};

/// Takes the complete command frames out of what was written. `text` is what came before and belongs to none
/// yet.
QList<Command> takeCommands(QByteArray &text)
{
    QList<Command> commands;
    for (qsizetype at = 0; at + headBytes <= text.size();) {
        const QByteArray head = text.sliced(at, headBytes);
        if (!head.startsWith("\xFF\xAA") || !head.endsWith("\x0D\xEB")) {
            ++at;
            continue;
        }
        text.remove(0, at + headBytes);
        at = 0;
        Command command{static_cast<uchar>(head[2]), static_cast<uchar>(head[3]), {}};
        if (command.frameClass == 1)
            command.payload = std::exchange(text, {});
        commands.append(command);
    }
    return commands;
}

char sumOf(const QByteArray &bytes)
{
    return static_cast<char>(std::accumulate(bytes.begin(), bytes.end(), 0));
}

/// A detector whose parameters are the bytes of its read-back.
class Plain
{
public:
    /// `parameters` are those after power-up.
    explicit Plain(const QByteArray &parameters) : m_parameters(parameters) {}

    qint64 imageBytes = 0;

    /// The replies to what one write brought.
    QByteArray write(const QByteArray &bytes)
    {
        m_unread += bytes;
        QByteArray replies;
        for (const Command &command : takeCommands(m_unread))
            replies += replyTo(command);
        return replies;
    }

private:
    QByteArray replyTo(const Command &command)
    {
        if (command.frameClass == 0)
            requestBlock(command.code);
        if (m_isStreaming && !(command.frameClass == 3 && command.code == 0xA1))
            return {};
        const QByteArray echo = QByteArray("\xFF\xBB", 2) + static_cast<char>(command.frameClass) +
                                static_cast<char>(command.code) + "\x0D\xEB";
        switch (command.frameClass) {
        case 1:
            return download(command) ? echo : QByteArray();
        case 2:
            return answer(command.code);
        case 3:
            return command.code == 0xAA    ? QByteArray("\xFF\xBB\x03\xAA\x01\xEB", 6)
                   : control(command.code) ? echo
                                           : QByteArray();
        default:
            return {};
        }
    }

    void requestBlock(int number)
    {
        if (!m_isStreaming || number != m_block)
            return;
        imageBytes += blockBytes;
        m_block = (m_block + 1) % 32;
    }

    bool download(const Command &command)
    {
        if (command.payload.isEmpty())
            return false;
        const QByteArray payload = command.payload.chopped(1);
        if (sumOf(payload) != command.payload.back())
            return false;
        switch (command.code) {
        case 0x00:
            return replace(m_parameters, 0, payload, 1, 1, 1);
        case 0x01:
            return replace(m_parameters, 1, payload, 2, 1, 1);
        case 0x02:
            return replace(m_parameters, 3, payload, 2, 0, 16);
        case 0x10:
            return replace(m_parameters, 35, payload, 4, 0, 18);
        case 0xEE:
            return replace(m_eeprom, 0, payload, 4, 0, 32);
        default:
            return false;
        }
    }

    /// So many words of a width, no fewer and no more, take the place of those that stand there.
    static bool replace(QByteArray &bytes, qsizetype at, const QByteArray &payload, int width, int fewest,
                        int most)
    {
        if (payload.size() % width != 0 || payload.size() < fewest * width || payload.size() > most * width)
            return false;
        bytes.replace(at, payload.size(), payload);
        return true;
    }

    [[nodiscard]] QByteArray answer(int code) const
    {
        switch (code) {
        case 0x00:
            return m_parameters;
        case 0x10:
            return QByteArray("\x57\x02\x10\x00\x0D\xEB", 6);
        case 0xEE:
            return m_eeprom + sumOf(m_eeprom);
        case 0xFA:
            return QByteArray("\x01\x02\x03\x45\x00", 5);
        default:
            return {};
        }
    }

    bool control(int code)
    {
        switch (code) {
        case 0xA0:
        case 0xA1:
            m_isStreaming = code == 0xA0;
            m_block = 0;
            return true;
        case 0xE0:
            m_stored = m_eeprom;
            return true;
        case 0xE1:
            m_eeprom = m_stored;
            return true;
        case 0xEF:
            m_eeprom.fill('\0');
            return true;
        default:
            return (code >= 0xC0 && code <= 0xC3) || code == 0xCF;
        }
    }

    QByteArray m_unread;
    QByteArray m_parameters;
    QByteArray m_eeprom{128, '\0'};
    QByteArray m_stored{128, '\0'};
    bool m_isStreaming = false;
    int m_block = 0;
};

/// A firmware with a file for its EEPROM that nobody had before.
class Detector
{
public:
    Detector() { m_firmware.setSynchronous(true); }
    ~Detector() { QFile::remove(m_eepromPath); }
    Q_DISABLE_COPY_MOVE(Detector)

    qint64 imageBytes = 0;

    /// What comes back of one write, the image left out.
    QByteArray write(const QByteArray &bytes)
    {
        m_firmware.write(bytes, m_now);
        m_now += replyTime;
        simulator::SendQueue &queue = m_firmware.sendQueue();
        QByteArray replies;
        while (const qsizetype available = queue.available(m_now)) {
            const auto chunk = queue.take(available, available, m_now);
            require(chunk.length > 0, "what is available can be taken");
            replies += chunk.bytes;
            imageBytes += chunk.isImage ? chunk.length : 0;
        }
        return replies;
    }

private:
    static QString newPath()
    {
        static const QTemporaryDir folder;
        static int number = 0;
        return folder.filePath(QString::number(++number));
    }

    static simulator::Settings unpaced()
    {
        simulator::Settings settings;
        settings.pacing = simulator::Pacing::None;
        return settings;
    }

    const QString m_eepromPath = newPath();
    simulator::Settings m_settings = unpaced();
    simulator::Nanoseconds m_now = std::chrono::seconds(100);
    simulator::Firmware m_firmware{QStringLiteral("QV1K"), m_eepromPath, m_settings};
};

} // namespace

void Fuzz::tryInput(QByteArrayView input)
{
    static const QByteArray atPowerUp = Detector().write(QByteArray::fromHex("FFAA02000DEB"));
    require(atPowerUp.size() == 256, "parameters can be read back");
    Detector detector;
    Plain plain(atPowerUp);
    for (const QByteArray &bytes : listing(input)) {
        const QByteArray replies = plain.write(bytes);
        require(detector.write(bytes) == replies, "replies are those of the plain detector");
        require(detector.imageBytes == plain.imageBytes, "blocks are those of the plain detector");
    }
}
