#pragma once

#include "tests/support/debugoutput.h"
#include "tests/support/linkfixture.h"
#include "tests/ui/develop/dialog.h"

#include <QThread>

#include <memory>

/// The open dialog on a link to the hand-driven driver library, whose device acknowledges whatever it is
/// sent.
class LinkedDialog : public LinkFixture
{
protected:
    LinkedDialog()
    {
        link().openDevice(QStringLiteral("QV1K"));
        replyWith(hex("FFBB01000DEB"));
        dialog.open();
    }
    ~LinkedDialog() override
    {
        fake.setOnWrite({});
        if (m_device)
            m_device->wait();
    }

    /// Every frame is answered at once with these bytes.
    void replyWith(const QByteArray &reply)
    {
        fake.setOnWrite([this, reply](const QByteArray &) { fake.push(reply); });
    }

    /// The reply is taken off the link whole, then the link fails: the wait ends without its time-out, with
    /// a reply that is not of the expected length.
    void replyWithWrongLength(const QByteArray &reply)
    {
        fake.setOnWrite([this, reply](const QByteArray &) {
            fake.push(reply);
            m_device.reset(QThread::create([this] {
                while (fake.waiting() > 0)
                    QThread::yieldCurrentThread();
                fake.setReadResult(d2xx::Status::IoError);
                fake.push("x");
            }));
            m_device->start();
        });
    }

    /// The reply comes in two pieces, the second only after the first was taken and the wait went on.
    void replyInPieces(const QByteArray &first, const QByteArray &second)
    {
        fake.setOnWrite([this, first, second](const QByteArray &) {
            fake.push(first);
            m_device.reset(QThread::create([this, second] {
                while (fake.waiting() > 0)
                    QThread::yieldCurrentThread();
                const int polls = fake.statusCalls();
                while (fake.statusCalls() < polls + 100)
                    QThread::yieldCurrentThread();
                fake.push(second);
            }));
            m_device->start();
        });
    }

    /// What a click on the button wrote, as hexadecimal text.
    QByteArray sentBy(const char *button)
    {
        fake.clearWritten();
        dialog.click(button);
        EXPECT_EQ(fake.written().size(), 1) << "each button sends exactly one frame";
        return fake.writtenHex();
    }

    Dialog dialog;

private:
    std::unique_ptr<QThread> m_device;
};
