#pragma once

#include "device/d2xx.h"

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QMutex>
#include <QString>
#include <QStringList>
#include <QThread>

#include <functional>
#include <memory>
#include <optional>

/// A driver library that a test drives by hand: it says which devices there are, what each call returns and
/// which bytes wait, and keeps everything that was called and written. One at a time; thread-safe.
class FakeD2xx
{
public:
    FakeD2xx();
    ~FakeD2xx();
    Q_DISABLE_COPY_MOVE(FakeD2xx)

    /// The calls as the program sees them. Valid while this object lives.
    [[nodiscard]] std::shared_ptr<D2xx> driver() const { return m_driver; }
    [[nodiscard]] static d2xx::Functions functions();

    // What the library says; set before the call that asks.
    QStringList serialNumbers{QStringLiteral("QV1K")};
    QMap<QString, QString> descriptions; ///< by serial number; where there is none it is a detector's
    d2xx::Status createListStatus = d2xx::Status::Ok;
    d2xx::Status getListStatus = d2xx::Status::Ok;
    d2xx::Status openStatus = d2xx::Status::Ok;
    d2xx::Status configurationStatus = d2xx::Status::Ok;
    std::optional<quint32> countTold;        ///< in place of the number of devices
    d2xx::Handle leftByFailedOpen = nullptr; ///< null: the caller's handle is left as it is
    std::function<void()> onClose = [] {
    }; ///< called by Close before it closes

    /// Makes bytes wait in the receive queue.
    void push(const QByteArray &bytes);
    /// Answers each write of exactly these bytes with the reply; an empty reply is silence.
    void answer(const QByteArray &command, const QByteArray &reply);
    /// Called after each write, on the writing thread, without the lock held.
    void setOnWrite(std::function<void(const QByteArray &)> callback);
    void setStatusResult(d2xx::Status status);
    /// What the status says waits, in place of what does.
    void setWaitingTold(quint32 bytes);
    void setReadResult(d2xx::Status status);
    /// How often the bridge is said to have lost bytes.
    void setLosses(quint32 times);
    /// What is told when something went wrong.
    QByteArray problem;

    /// All writes so far, all of them in one piece as upper-case hexadecimal text, and their number.
    [[nodiscard]] QList<QByteArray> written() const;
    [[nodiscard]] QByteArray writtenHex() const;
    [[nodiscard]] qsizetype writes() const;
    void clearWritten();
    /// Every call but status, read and write, with its arguments, e.g. "SetBitMode 255 64".
    [[nodiscard]] QStringList calls() const;
    /// Every call with its arguments in the order in which they came, e.g. "Write FFAA02100DEB", "Read 6".
    /// How often the status is asked for depends on time, so a run of such calls is one "GetStatus", and
    /// those of other threads than the test's are left out.
    [[nodiscard]] QStringList trace() const;
    [[nodiscard]] int reads() const;
    [[nodiscard]] int statusCalls() const;
    [[nodiscard]] qsizetype waiting() const;
    [[nodiscard]] bool isOpen() const;

private:
    struct Entry; // the C functions

    void note(const QString &call); // m_mutex is held

    std::shared_ptr<D2xx> m_driver;
    const QThread *const m_testThread = QThread::currentThread();
    mutable QMutex m_mutex;
    QByteArray m_queue;
    QMap<QByteArray, QByteArray> m_answers;
    std::function<void(const QByteArray &)> m_onWrite;
    std::optional<quint32> m_waitingTold;
    d2xx::Status m_statusResult = d2xx::Status::Ok;
    d2xx::Status m_readResult = d2xx::Status::Ok;
    quint32 m_losses = 0;
    QList<QByteArray> m_written;
    QStringList m_calls;
    QStringList m_trace;
    int m_reads = 0;
    int m_statusCalls = 0;
    bool m_isOpen = false;
};
