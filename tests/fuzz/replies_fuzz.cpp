// How replies are judged and read-backs decoded, on the text of their bytes, against the bytes themselves;
// and what was read back, sent again. Input: a listing of the reply.

#include "device/protocol/commandframes.h"
#include "device/protocol/parameterpackets.h"
#include "device/protocol/readback.h"
#include "device/protocol/timing.h"
#include "tests/fuzz/target.h"

#include <algorithm>
#include <limits>
#include <numeric>
#include <vector>

using Fuzz::require;

namespace {

quint32 wordOf(const QByteArray &bytes, qsizetype place)
{
    return qFromBigEndian<quint32>(bytes.constData() + place);
}

/// What a signed number cannot hold reads as 0.
qint32 signedWordOf(const QByteArray &bytes, qsizetype place)
{
    const quint32 word = wordOf(bytes, place);
    return word > 0x7FFFFFFFU ? 0 : static_cast<qint32>(word);
}

/// Anywhere among the hexadecimal digits of the bytes.
bool hasDigits(const QByteArray &bytes, std::initializer_list<int> wanted)
{
    std::vector<int> digits;
    for (const char byte : bytes) {
        digits.push_back(static_cast<uchar>(byte) >> 4);
        digits.push_back(byte & 0xF);
    }
    return std::search(digits.begin(), digits.end(), wanted.begin(), wanted.end()) != digits.end();
}

void judge(const QByteArray &bytes, const QByteArray &text)
{
    for (const QByteArray &command :
         {CommandFrame::startAcquisition(), CommandFrame::haltAcquisition(), CommandFrame::testPattern(1),
          CommandFrame::testPattern(5), CommandFrame::eepromWrite(), CommandFrame::eepromRead()}) {
        QByteArray echo = command;
        echo[1] = '\xBB';
        require(AckFrame::echoes(text, command) == bytes.startsWith(echo), "an echo begins with the command");
    }
    require(AckFrame::acknowledgesParameters(text) == hasDigits(bytes, {0xF, 0xF, 0xB, 0xB, 0x0, 0x1}),
            "FFBB01 anywhere acknowledges parameters");
    require(AckFrame::isReady(text) == (bytes.size() >= 6 && (bytes[4] & 1) != 0),
            "bit 0 of the fifth byte says that the detector is ready");
    const int level = bytes.isEmpty() ? 0 : static_cast<uchar>(bytes[0]);
    require(AckFrame::level(text) == level, "the first byte is the battery's level");
}

void sendAgain(const Readback::Parameters &read, const QByteArray &bytes)
{
    require(AdcSelection::ofWord(read.adc.word()) == read.adc, "an ADC word says what it was made of");
    const QByteArray voltages = ParameterPacket::setVoltages(read.voltageCodes);
    require(voltages.sliced(6, 32) == bytes.sliced(3, 32), "voltages go out as they were read back");
    const QByteArray timing = ParameterPacket::setTiming(read.timingWords);
    require(timing.size() == 6 + 4 * Timing::count + 1, "timing words go out with four bytes each");
    for (int i = 0; i < Timing::count; ++i)
        require(wordOf(timing, 6 + 4 * i) == static_cast<quint32>(read.timingWords[i]),
                "timing words go out as they were read back");
    const QByteArray payload = timing.sliced(6).chopped(1);
    const int sum = std::accumulate(payload.begin(), payload.end(), 0,
                                    [](int all, char byte) { return all + static_cast<uchar>(byte); });
    require(static_cast<uchar>(timing.back()) == sum % 256, "a checksum is the sum of the bytes");
}

void calculate(const Readback::Parameters &read)
{
    Timing timing;
    for (std::size_t i = 0; i < Timing::fields.size(); ++i) {
        const Timing::Field field = Timing::fields[i];
        const qint32 word = read.timingWords[static_cast<qsizetype>(i)];
        timing.*field = Timing::fromWire(field, word);
        const qint32 back = Timing::toWire(field, timing.*field);
        const bool isSaturated = timing.*field == std::numeric_limits<qint32>::max();
        require(isSaturated || back == word || back == word - 1, "a timing value goes out as it came in");
    }
    const Timing calculated = timing.calculated();
    require(calculated.calculated() == calculated, "what is calculated stays when it is calculated again");
    require(Timing::ofRange(timing.adcIntA).adcIntA == timing.adcIntA, "a range keeps its integration time");
}

void readParameters(const QByteArray &bytes, const QByteArray &text)
{
    const auto read = Readback::parameters(text);
    require(read.has_value() == (bytes.size() >= Readback::parameterBytes),
            "256 bytes are a parameter read-back");
    if (!read)
        return;
    require(read->mode == static_cast<uchar>(bytes[0]), "the first byte is the mode");
    require(read->adcWord == qFromBigEndian<quint16>(bytes.constData() + 1), "the ADC word follows");
    require(read->adc == AdcSelection::ofWord(read->adcWord), "and means what it says");
    for (int i = 0; i < ParameterPacket::voltageCount; ++i)
        require(read->voltageCodes[i] == qFromBigEndian<quint16>(bytes.constData() + 3 + 2 * i),
                "sixteen voltages follow");
    for (int i = 0; i < Timing::count; ++i)
        require(read->timingWords[i] == signedWordOf(bytes, 35 + 4 * i), "eighteen timing words follow");
    sendAgain(*read, bytes);
    calculate(*read);
}

void readEeprom(const QByteArray &bytes, const QByteArray &text)
{
    const auto words = Readback::eeprom(text);
    require(words.has_value() == (bytes.size() >= Readback::eepromBytes),
            "129 bytes are an EEPROM read-back");
    for (int i = 0; words && i < ParameterPacket::eepromCount; ++i)
        require(words->at(i) == signedWordOf(bytes, 4 * i), "EEPROM words are those of the bytes");
}

void readVersion(const QByteArray &bytes, const QByteArray &text)
{
    const auto version = Readback::version(text);
    require(version.has_value() == (bytes.size() == Readback::versionBytes), "5 bytes are a version");
    if (!version)
        return;
    const auto number = [&bytes](qsizetype i) {
        return static_cast<uchar>(bytes[i]);
    };
    require(*version == QString::asprintf("%d.%d.%d.%d.%d", number(0), number(1), number(2), number(3) / 16,
                                          number(3) % 16),
            "a version is three bytes and two halves");
}

} // namespace

void Fuzz::tryInput(QByteArrayView input)
{
    const QByteArray bytes = listing(input).join();
    const QByteArray text = bytes.toHex().toUpper();
    judge(bytes, text);
    readParameters(bytes, text);
    readEeprom(bytes, text);
    readVersion(bytes, text);
}
