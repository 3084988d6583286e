#include "simulator/firmware/firmware.h"

#include "simulator/firmware/replyfaults.h"
#include "simulator/geometry.h"

#include <algorithm>
#include <numeric>

namespace simulator {

namespace {

enum ParameterCode : quint8 {
    SetMode = 0x00,
    SetAdc = 0x01,
    SetVoltages = 0x02,
    SetTiming = 0x10,
    SendEeprom = 0xEE
};

enum QueryCode : quint8 { ReadParameters = 0x00, ReadLevel = 0x10, ReadEeprom = 0xEE, ReadVersion = 0xFA };

enum ControlCode : quint8 {
    Start = 0xA0,
    Halt = 0xA1,
    Readiness = 0xAA,
    Pattern1 = 0xC0,
    Pattern2 = 0xC1,
    Pattern3 = 0xC2,
    Pattern4 = 0xC3,
    Pattern5 = 0xCF,
    EepromWrite = 0xE0,
    EepromRead = 0xE1,
    EepromInit = 0xEF
};

QByteArray bytes(std::initializer_list<int> values)
{
    QByteArray result;
    for (const int value : values)
        result.append(static_cast<char>(value));
    return result;
}

QByteArray echo(const Command &command)
{
    return bytes({0xFF, 0xBB, command.frameClass, command.code, 0x0D, 0xEB});
}

bool isHalt(const Command &command)
{
    return command.frameClass == controlClass && command.code == Halt;
}

} // namespace

Firmware::Firmware(const QString &serialNumber, const QString &eepromPath, Settings &settings)
    : m_settings(settings), m_eeprom(eepromPath, serialNumber)
{
}

void Firmware::write(QByteArrayView bytes, Nanoseconds now)
{
    m_parser.write(bytes, [this, now](const Command &command) { execute(command, now); });
}

void Firmware::hostLost()
{
    m_synchronous = false;
    if (m_streaming && m_settings.faults.keepsStreaming) {
        m_queue.setLatency(SendQueue::usualLatency);
        m_queue.restartImageCount();
        return;
    }
    m_streaming = false;
    m_pattern = TestPattern::None;
    m_parser.clear();
    m_queue = {};
}

void Firmware::execute(const Command &command, Nanoseconds now)
{
    if (command.frameClass == blockRequestClass)
        return requestBlock(command.code, now);
    if (m_streaming && !isHalt(command))
        return;
    const QByteArray answer = replyTo(command, now);
    if (answer.isEmpty())
        return;
    if (const auto reply = withFaults(answer, command, m_settings.faults))
        m_queue.appendReply(reply->bytes, now + reply->delay);
}

QByteArray Firmware::replyTo(const Command &command, Nanoseconds now)
{
    switch (command.frameClass) {
    case parameterClass:
        return download(command);
    case queryClass:
        return answerQuery(command);
    case controlClass:
        return control(command, now);
    default:
        return {};
    }
}

QByteArray Firmware::download(const Command &command)
{
    if (command.payload.isEmpty())
        return {};
    const QByteArrayView payload = command.payload.chopped(1);
    const auto sum = static_cast<char>(std::accumulate(payload.begin(), payload.end(), 0));
    if (sum != command.payload.back() || !setParameters(command.code, payload))
        return {};
    return echo(command);
}

bool Firmware::setParameters(quint8 code, QByteArrayView payload)
{
    switch (code) {
    case SetMode:
        return m_registers.setMode(payload);
    case SetAdc:
        return m_registers.setAdcWord(payload);
    case SetVoltages:
        return m_registers.setVoltages(payload);
    case SetTiming:
        return m_registers.setTiming(payload);
    case SendEeprom:
        return m_eeprom.download(payload);
    default:
        return false;
    }
}

QByteArray Firmware::answerQuery(const Command &command) const
{
    switch (command.code) {
    case ReadParameters:
        return m_registers.readback();
    case ReadLevel:
        return bytes({m_settings.batteryLevel, queryClass, ReadLevel, 0x00, 0x0D, 0xEB});
    case ReadEeprom:
        return m_eeprom.readback();
    case ReadVersion:
        return bytes({0x01, 0x02, 0x03, 0x45, 0x00});
    default:
        return {};
    }
}

QByteArray Firmware::control(const Command &command, Nanoseconds now)
{
    switch (command.code) {
    case Start:
        start(now);
        break;
    case Halt:
        halt(now);
        break;
    case Readiness:
        return readiness();
    case Pattern1:
    case Pattern2:
    case Pattern3:
    case Pattern4:
        m_pattern = static_cast<TestPattern>(command.code - Pattern1 + 1);
        break;
    case Pattern5:
        m_pattern = TestPattern::Counter;
        break;
    case EepromWrite:
        m_eeprom.commit();
        break;
    case EepromRead:
        m_eeprom.load();
        break;
    case EepromInit:
        m_eeprom.initialise();
        break;
    default:
        return {};
    }
    return echo(command);
}

QByteArray Firmware::readiness()
{
    const bool ready = !happens(m_settings.faults.notReadyQueries);
    return bytes({0xFF, 0xBB, controlClass, Readiness, ready ? 1 : 0, 0xEB});
}

void Firmware::start(Nanoseconds now)
{
    m_streaming = true;
    m_nextBlock = 0;
    m_frames = 0;
    m_bytesSent = 0;
    m_nextFrameDue = now + m_registers.framePeriod(); // the first image has to be integrated and read out too
    m_blockLeaves = now;
    m_queue.restartImageCount();
}

void Firmware::halt(Nanoseconds now)
{
    m_streaming = false;
    m_pattern = TestPattern::None;
    m_queue.dropUnsentImage(now);
}

void Firmware::requestBlock(int number, Nanoseconds now)
{
    if (!m_streaming || !m_synchronous || m_blockLeaves > now || number != m_nextBlock)
        return;
    sendBlock(m_nextBlock == 0 ? beginFrame(now) : now);
    m_nextBlock = (m_nextBlock + 1) % blocksPerFrame;
}

Nanoseconds Firmware::beginFrame(Nanoseconds now)
{
    m_frame.frame = m_frames++;
    m_frame.pattern = m_pattern;
    m_frame.scene = m_settings.scene;
    m_frame.exposure = {m_settings.light, m_registers.integrationNs(), m_registers.fullScaleCharge()};
    m_frame.seed = m_settings.seed;
    m_frame.replayFile = m_settings.replayFile;
    if (m_settings.pacing == Pacing::None)
        return now;
    const Nanoseconds due = std::max(now, m_nextFrameDue);
    m_nextFrameDue = due + m_registers.framePeriod();
    return due;
}

void Firmware::sendBlock(Nanoseconds leaves)
{
    Faults &faults = m_settings.faults;
    const auto block = static_cast<qint64>(m_frame.frame) * blocksPerFrame + m_nextBlock;
    qint64 length = blockBytes;
    if (faults.tornBlock == block) {
        faults.tornBlock.reset();
        length -= faults.tornBytes;
    }
    int copies = 1;
    if (faults.doubledBlock == block) {
        faults.doubledBlock.reset();
        copies = 2;
    }
    for (int copy = 0; copy < copies; ++copy) {
        if (faults.stallAfterBytes)
            length = std::clamp<qint64>(*faults.stallAfterBytes - m_bytesSent, 0, length);
        if (length > 0)
            m_queue.appendImage(m_frame, m_nextBlock * blockBytes, static_cast<qsizetype>(length), leaves);
        m_bytesSent += length;
    }
    m_blockLeaves = leaves;
}

} // namespace simulator
