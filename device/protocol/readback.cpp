#include "device/protocol/readback.h"

#include "device/protocol/parameterpackets.h"
#include "device/protocol/timing.h"

#include <QStringList>

namespace {

using ParameterPacket::voltageBytes;
using ParameterPacket::wordBytes;

static_assert(Readback::eepromBytes == ParameterPacket::eepromCount * wordBytes + 1);

/// Reads numbers one after the other from hexadecimal text.
class HexReader
{
public:
    explicit HexReader(const QByteArray &text) : m_text(text) {}

    /// The next `bytes` bytes as a signed 32-bit integer; 0 when they do not fit one.
    int next(int bytes)
    {
        const int value = m_text.mid(m_position, 2 * bytes).toInt(nullptr, 16);
        m_position += 2 * bytes;
        return value;
    }

    QList<int> next(int bytes, int count)
    {
        QList<int> values;
        for (int i = 0; i < count; ++i)
            values.append(next(bytes));
        return values;
    }

private:
    const QByteArray &m_text;
    qsizetype m_position = 0;
};

} // namespace

namespace Readback {

std::optional<Parameters> parameters(const QByteArray &reply)
{
    if (reply.size() < 2 * parameterBytes)
        return std::nullopt;
    HexReader reader(reply);
    Parameters p;
    p.mode = reader.next(1);
    p.adcWord = reader.next(ParameterPacket::adcBytes);
    p.adc = AdcSelection::ofWord(p.adcWord);
    p.voltageCodes = reader.next(voltageBytes, ParameterPacket::voltageCount);
    p.timingWords = reader.next(wordBytes, Timing::count);
    return p;
}

std::optional<QList<int>> eeprom(const QByteArray &reply)
{
    if (reply.size() < 2 * eepromBytes)
        return std::nullopt;
    return HexReader(reply).next(wordBytes, ParameterPacket::eepromCount);
}

std::optional<QString> version(const QByteArray &reply)
{
    if (reply.size() != 2 * versionBytes)
        return std::nullopt;
    HexReader reader(reply);
    QStringList numbers;
    for (int i = 0; i < 3; ++i)
        numbers << QString::number(reader.next(1));
    const int nibbles = reader.next(1);
    numbers << QString::number(nibbles >> 4) << QString::number(nibbles & 0xF);
    return numbers.join(QLatin1Char('.'));
}

} // namespace Readback
