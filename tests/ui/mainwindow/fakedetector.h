#pragma once

#include "device/protocol/commandframes.h"
#include "device/protocol/frameformat.h"
#include "tests/support/faked2xx.h"
#include "tests/support/hex.h"

#include <QMutexLocker>
#include <QtEndian>

/// The replies of a healthy detector behind the driver library that the test drives. A test takes back or
/// changes single replies with answer().
class FakeDetector
{
public:
    FakeDetector()
    {
        link.answer(CommandFrame::levelQuery(), hex("500000000000")); // 80 %
        link.answer(CommandFrame::readinessQuery(), hex("FFBB03AA01EB"));
        for (const QByteArray &command : {CommandFrame::startAcquisition(), CommandFrame::haltAcquisition()})
            link.answer(command, QByteArray(command).replace(1, 1, "\xBB"));
        for (int pattern = 1; pattern <= 5; ++pattern) {
            const QByteArray command = CommandFrame::testPattern(pattern);
            link.answer(command, QByteArray(command).replace(1, 1, "\xBB"));
        }
        link.setOnWrite([this](const QByteArray &bytes) { onWrite(bytes); });
    }

    /// The reply to each parameter packet from now on; empty for none.
    void answerParameters(char code, const QByteArray &reply)
    {
        const QMutexLocker lock(&m_mutex);
        m_parameterReplies.insert(code, reply);
    }

    /// Streams this many more frames, all pixels of the same sample, then falls silent.
    void stream(int frames, quint32 sample = 4096)
    {
        const QMutexLocker lock(&m_mutex);
        m_block = QByteArray(FrameFormat::blockBytes, '\0');
        for (qsizetype i = 0; i < FrameFormat::blockBytes; i += 4)
            qToBigEndian(sample, m_block.data() + i);
        m_blocksLeft += frames * FrameFormat::blocksPerFrame;
        if (m_owesBlock)
            pushNext();
    }

    /// It was asked for a block that it does not have.
    [[nodiscard]] bool owesBlock() const
    {
        const QMutexLocker lock(&m_mutex);
        return m_owesBlock;
    }

    /// One block out of its turn: it brings the receive loop to the next block boundary.
    void pushBlock()
    {
        const QMutexLocker lock(&m_mutex);
        m_owesBlock = false;
        link.push(QByteArray(FrameFormat::blockBytes, '\0'));
    }

    /// Everything written so far as hexadecimal text, one entry a write.
    [[nodiscard]] QByteArrayList writtenTexts() const
    {
        QByteArrayList texts;
        for (const QByteArray &bytes : link.written())
            texts << hexText(bytes);
        return texts;
    }

    /// How often a frame was written.
    [[nodiscard]] qsizetype count(const QByteArray &frame) const { return link.written().count(frame); }

    FakeD2xx link;

private:
    void onWrite(const QByteArray &bytes)
    {
        const QMutexLocker lock(&m_mutex);
        if (bytes.startsWith(hex("FFAA01")))
            link.push(m_parameterReplies.value(bytes.at(3), hex("FFBB01000DEB")));
        else if (bytes.startsWith(hex("FFAA00")))
            requestBlock();
    }

    void requestBlock()
    {
        if (m_blocksLeft > 0)
            pushNext();
        else
            m_owesBlock = true;
    }

    void pushNext()
    {
        --m_blocksLeft;
        m_owesBlock = false;
        link.push(m_block);
    }

    mutable QMutex m_mutex; ///< frames are written by the receive thread too
    QMap<char, QByteArray> m_parameterReplies;
    QByteArray m_block;
    int m_blocksLeft = 0;
    bool m_owesBlock = false;
};
