#pragma once

#include "simulator/firmware/commandparser.h"
#include "simulator/firmware/eeprom.h"
#include "simulator/firmware/registers.h"
#include "simulator/firmware/sendqueue.h"
#include "simulator/settings/settings.h"

#include <QByteArray>
#include <QString>

namespace simulator {

/// The detector's own program: takes the bytes that the host writes, answers commands and sends the blocks of
/// frames. What a detector would not answer is not answered: a frame with a wrong checksum, a payload of a
/// wrong length, an unknown code, a command other than halt while it streams, and a request for a block that
/// is not the next one. Not thread-safe; time is handed in.
class Firmware
{
public:
    /// `settings` must outlive it. Counts of faults run down in `settings`.
    Firmware(const QString &serialNumber, const QString &eepromPath, Settings &settings);

    /// What one write of the host brought.
    void write(QByteArrayView bytes, Nanoseconds now);

    /// The bridge is in synchronous FIFO mode, or not. No block is sent without it.
    void setSynchronous(bool synchronous) { m_synchronous = synchronous; }

    /// The host closed the device or the cable was pulled: the acquisition ends and what is on its way is
    /// lost, unless it is to keep streaming. Parameters stay.
    void hostLost();

    /// What is on its way to the host.
    [[nodiscard]] SendQueue &sendQueue() { return m_queue; }

    /// Between the acknowledged start and the halt.
    [[nodiscard]] bool isStreaming() const { return m_streaming; }

private:
    void execute(const Command &command, Nanoseconds now);
    [[nodiscard]] QByteArray replyTo(const Command &command, Nanoseconds now);
    [[nodiscard]] QByteArray download(const Command &command);
    [[nodiscard]] bool setParameters(quint8 code, QByteArrayView payload);
    [[nodiscard]] QByteArray answerQuery(const Command &command) const;
    [[nodiscard]] QByteArray control(const Command &command, Nanoseconds now);
    [[nodiscard]] QByteArray readiness();

    void start(Nanoseconds now);
    void halt(Nanoseconds now);
    void requestBlock(int number, Nanoseconds now);
    [[nodiscard]] Nanoseconds beginFrame(Nanoseconds now);
    void sendBlock(Nanoseconds leaves);

    Settings &m_settings;
    SendQueue m_queue;
    CommandParser m_parser;
    Registers m_registers;
    Eeprom m_eeprom;
    TestPattern m_pattern = TestPattern::None;
    bool m_synchronous = false;
    bool m_streaming = false;

    FrameRecipe m_frame;    // the frame whose blocks are being sent
    int m_nextBlock = 0;    // within the frame
    quint64 m_frames = 0;   // begun since the start
    qint64 m_bytesSent = 0; // since the start
    Nanoseconds m_nextFrameDue{0};
    Nanoseconds m_blockLeaves{0}; // the last one
};

} // namespace simulator
