#include "device/protocol/commandframes.h"

#include <QString>

#include <numeric>

namespace {

enum FrameClass : char { BlockHandshake = 0x00, ParameterDownload = 0x01, Query = 0x02, Control = 0x03 };

/// `code` is one byte but for block counts that do not fit one.
QByteArray frame(FrameClass frameClass, const QByteArray &code)
{
    return QByteArrayLiteral("\xFF\xAA") + static_cast<char>(frameClass) + code +
           QByteArrayLiteral("\x0D\xEB");
}

QByteArray frame(FrameClass frameClass, int code)
{
    return frame(frameClass, QByteArray(1, static_cast<char>(code)));
}

} // namespace

namespace CommandFrame {

QByteArray startAcquisition()
{
    return frame(Control, 0xA0);
}

QByteArray haltAcquisition()
{
    return frame(Control, 0xA1);
}

QByteArray readinessQuery()
{
    return frame(Control, 0xAA);
}

QByteArray testPattern(int pattern)
{
    return frame(Control, pattern > 4 ? 0xCF : pattern + 0xBF);
}

QByteArray blockRequest(int blocks)
{
    return frame(BlockHandshake, hexBytes(blocks, 1));
}

QByteArray levelQuery()
{
    return frame(Query, 0x10);
}

QByteArray versionReadback()
{
    return frame(Query, 0xFA);
}

QByteArray parameterReadback()
{
    return frame(Query, 0x00);
}

QByteArray eepromReadback()
{
    return frame(Query, 0xEE);
}

QByteArray eepromWrite()
{
    return frame(Control, 0xE0);
}

QByteArray eepromRead()
{
    return frame(Control, 0xE1);
}

QByteArray eepromInit()
{
    return frame(Control, 0xEF);
}

QByteArray parameters(char code, const QByteArray &payload)
{
    return frame(ParameterDownload, code) + payload + checksum(payload);
}

QByteArray hexBytes(int value, int width)
{
    return QByteArray::fromHex(QString::number(value, 16)
                                   .rightJustified(2 * static_cast<qsizetype>(width), QLatin1Char('0'))
                                   .toUtf8());
}

char checksum(const QByteArray &payload)
{
    return static_cast<char>(
        std::accumulate(payload.begin(), payload.end(), 0u, [](unsigned int sum, char byte) {
            return (sum + static_cast<uchar>(byte)) & 0xFFu;
        }));
}

} // namespace CommandFrame

namespace AckFrame {

QByteArray echoOf(const QByteArray &controlFrame)
{
    QByteArray echo = controlFrame;
    echo[1] = static_cast<char>(0xBB);
    return echo;
}

bool echoes(const QByteArray &reply, const QByteArray &controlFrame)
{
    return reply.startsWith(echoOf(controlFrame).toHex().toUpper());
}

bool answersAnother(const QByteArray &reply, const QByteArray &frame)
{
    const char frameClass = frame.at(2);
    const QByteArray head = QByteArray::fromHex(reply.left(8));
    if (!head.startsWith("\xFF\xBB") || head.size() < 4)
        return frameClass != Query && reply.size() == 2 * commandBytes && reply.endsWith("0DEB");
    switch (head.at(2)) {
    case ParameterDownload:
        return frameClass != ParameterDownload;
    case Control:
        return frameClass != Control || head.at(3) != frame.at(3);
    default:
        return false; // a refusal
    }
}

bool acknowledgesParameters(const QByteArray &reply)
{
    return reply.contains("FFBB01");
}

bool isReady(const QByteArray &reply)
{
    if (reply.size() < 2 * commandBytes)
        return false;
    return (reply.mid(8, 2).toInt(nullptr, 16) & 1) == 1;
}

int level(const QByteArray &reply)
{
    return reply.left(2).toInt(nullptr, 16);
}

} // namespace AckFrame
