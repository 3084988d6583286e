#include "simulator/firmware/registers.h"

#include <QtEndian>

namespace simulator {

namespace {

constexpr std::size_t integrationWord = 15;
constexpr double integrationUnitNs = 12.5;

template <typename Word, std::size_t count>
bool setWords(std::array<Word, count> &words, QByteArrayView payload)
{
    constexpr auto width = static_cast<qsizetype>(sizeof(Word));
    if (payload.size() % width != 0 || payload.size() / width > static_cast<qsizetype>(count))
        return false;
    qFromBigEndian<Word>(payload.data(), payload.size() / width, words.data());
    return true;
}

template <typename Word>
void append(QByteArray &bytes, Word word)
{
    const Word ordered = qToBigEndian(word);
    bytes.append(reinterpret_cast<const char *>(&ordered), sizeof ordered);
}

} // namespace

bool Registers::setMode(QByteArrayView payload)
{
    if (payload.size() != 1)
        return false;
    m_mode = static_cast<quint8>(payload.front());
    return true;
}

bool Registers::setAdcWord(QByteArrayView payload)
{
    if (payload.size() != 2)
        return false;
    m_adcWord = qFromBigEndian<quint16>(payload.data());
    return true;
}

bool Registers::setVoltages(QByteArrayView payload)
{
    return setWords(m_voltages, payload);
}

bool Registers::setTiming(QByteArrayView payload)
{
    return setWords(m_timing, payload);
}

double Registers::integrationNs() const
{
    return m_timing[integrationWord] * integrationUnitNs;
}

double Registers::fullScaleCharge() const
{
    constexpr std::array charges{4.0, 7.0, 10.0, 13.0, 16.0, 19.0, 25.0, 25.0};
    return charges[m_adcWord & 7U];
}

QByteArray Registers::readback() const
{
    QByteArray bytes;
    bytes.append(static_cast<char>(m_mode));
    append(bytes, m_adcWord);
    for (const quint16 voltage : m_voltages)
        append(bytes, voltage);
    for (const quint32 word : m_timing)
        append(bytes, word);
    return bytes.leftJustified(readbackBytes, '\0');
}

} // namespace simulator
