#include "tests/support/faked2xx.h"

#include <cstring>

using namespace d2xx;

namespace {

FakeD2xx *fake = nullptr;

/// A copy that shares nothing with the list, which the library's threads go on filling.
template <typename Item>
QList<Item> apart(const QList<Item> &list)
{
    return {list.begin(), list.end()};
}

} // namespace

/// The library's functions; free of `this`, as a C interface is.
struct FakeD2xx::Entry
{
    static Status configure(const QString &call)
    {
        const QMutexLocker lock(&fake->m_mutex);
        fake->note(call);
        return fake->configurationStatus;
    }

    static Status createDeviceInfoList(quint32 *count)
    {
        const QMutexLocker lock(&fake->m_mutex);
        fake->note(QStringLiteral("CreateDeviceInfoList"));
        *count = fake->countTold.value_or(static_cast<quint32>(fake->serialNumbers.size()));
        return fake->createListStatus;
    }

    static Status getDeviceInfoList(DeviceRecord *records, quint32 *count)
    {
        const QMutexLocker lock(&fake->m_mutex);
        fake->note(QStringLiteral("GetDeviceInfoList"));
        *count = qMin(*count, static_cast<quint32>(fake->serialNumbers.size()));
        for (quint32 i = 0; i < *count; ++i) {
            records[i] = {};
            const QString serialNumber = fake->serialNumbers.at(static_cast<int>(i));
            setText(records[i].serialNumber, serialNumber.toStdString());
            setText(records[i].description,
                    fake->descriptions.value(serialNumber, QStringLiteral("QV1K detector")).toStdString());
        }
        return fake->getListStatus;
    }

    static Status openEx(void *key, quint32 flags, Handle *handle)
    {
        const QMutexLocker lock(&fake->m_mutex);
        fake->note(
            QStringLiteral("OpenEx %1 %2").arg(QString::fromUtf8(static_cast<char *>(key))).arg(flags));
        if (fake->openStatus == Status::Ok) {
            *handle = fake;
            fake->m_isOpen = true;
        } else if (fake->leftByFailedOpen != nullptr) {
            *handle = fake->leftByFailedOpen;
        }
        return fake->openStatus;
    }

    static Status close(Handle)
    {
        fake->onClose();
        const QMutexLocker lock(&fake->m_mutex);
        fake->note(QStringLiteral("Close"));
        fake->m_isOpen = false;
        return Status::Ok;
    }

    static Status resetDevice(Handle) { return configure(QStringLiteral("ResetDevice")); }

    static Status setBitMode(Handle, quint8 mask, quint8 mode)
    {
        return configure(QStringLiteral("SetBitMode %1 %2").arg(mask).arg(mode));
    }

    static Status setLatencyTimer(Handle, quint8 milliseconds)
    {
        return configure(QStringLiteral("SetLatencyTimer %1").arg(milliseconds));
    }

    static Status setUsbParameters(Handle, quint32 inSize, quint32 outSize)
    {
        return configure(QStringLiteral("SetUSBParameters %1 %2").arg(inSize).arg(outSize));
    }

    static Status setFlowControl(Handle, quint16 flow, quint8 xOn, quint8 xOff)
    {
        return configure(QStringLiteral("SetFlowControl %1 %2 %3").arg(flow).arg(xOn).arg(xOff));
    }

    static Status purge(Handle, quint32 mask) { return configure(QStringLiteral("Purge %1").arg(mask)); }

    static Status setTimeouts(Handle, quint32 readMs, quint32 writeMs)
    {
        return configure(QStringLiteral("SetTimeouts %1 %2").arg(readMs).arg(writeMs));
    }

    static Status getStatus(Handle, quint32 *rxBytes, quint32 *txBytes, quint32 *events)
    {
        const QMutexLocker lock(&fake->m_mutex);
        ++fake->m_statusCalls;
        const QString call = QStringLiteral("GetStatus");
        const bool isRepeated = !fake->m_trace.isEmpty() && fake->m_trace.last() == call;
        if (fake->m_testThread == QThread::currentThread() && !isRepeated)
            fake->m_trace << call;
        *rxBytes = fake->m_waitingTold.value_or(static_cast<quint32>(fake->m_queue.size()));
        *txBytes = 0;
        *events = 0;
        return fake->m_statusResult;
    }

    static Status read(Handle, void *buffer, quint32 length, quint32 *bytesRead)
    {
        const QMutexLocker lock(&fake->m_mutex);
        ++fake->m_reads;
        fake->m_trace << QStringLiteral("Read %1").arg(length);
        const qsizetype count = qMin(static_cast<qsizetype>(length), fake->m_queue.size());
        std::memcpy(buffer, fake->m_queue.constData(), static_cast<std::size_t>(count));
        fake->m_queue.remove(0, count);
        *bytesRead = static_cast<quint32>(count);
        return fake->m_readResult;
    }

    static Status tellProblem(Handle, char *text, quint32 size)
    {
        const QMutexLocker lock(&fake->m_mutex);
        qstrncpy(text, fake->problem.constData(), size);
        return Status::Ok;
    }

    static Status countLosses(Handle, quint32 *count)
    {
        const QMutexLocker lock(&fake->m_mutex);
        *count = fake->m_losses;
        return Status::Ok;
    }

    static int listsAllBridges() { return 1; }

    static Status write(Handle, void *buffer, quint32 length, quint32 *bytesWritten)
    {
        const QByteArray bytes(static_cast<const char *>(buffer), static_cast<qsizetype>(length));
        std::function<void(const QByteArray &)> callback;
        {
            const QMutexLocker lock(&fake->m_mutex);
            fake->m_written << bytes;
            fake->m_trace << QStringLiteral("Write ") + QString::fromLatin1(bytes.toHex().toUpper());
            fake->m_queue += fake->m_answers.value(bytes);
            callback = fake->m_onWrite;
        }
        *bytesWritten = length;
        if (callback)
            callback(bytes);
        return Status::Ok;
    }
};

Functions FakeD2xx::functions()
{
    Functions f;
    f.createDeviceInfoList = &Entry::createDeviceInfoList;
    f.getDeviceInfoList = &Entry::getDeviceInfoList;
    f.openEx = &Entry::openEx;
    f.close = &Entry::close;
    f.resetDevice = &Entry::resetDevice;
    f.setBitMode = &Entry::setBitMode;
    f.setLatencyTimer = &Entry::setLatencyTimer;
    f.setUsbParameters = &Entry::setUsbParameters;
    f.setFlowControl = &Entry::setFlowControl;
    f.purge = &Entry::purge;
    f.setTimeouts = &Entry::setTimeouts;
    f.getStatus = &Entry::getStatus;
    f.read = &Entry::read;
    f.write = &Entry::write;
    f.tellProblem = &Entry::tellProblem;
    f.countLosses = &Entry::countLosses;
    f.listsAllBridges = &Entry::listsAllBridges;
    return f;
}

FakeD2xx::FakeD2xx() : m_driver(std::make_shared<D2xx>(functions()))
{
    fake = this;
}

FakeD2xx::~FakeD2xx()
{
    fake = nullptr;
}

void FakeD2xx::note(const QString &call)
{
    m_calls << call;
    m_trace << call;
}

void FakeD2xx::push(const QByteArray &bytes)
{
    const QMutexLocker lock(&m_mutex);
    m_queue += bytes;
}

void FakeD2xx::answer(const QByteArray &command, const QByteArray &reply)
{
    const QMutexLocker lock(&m_mutex);
    m_answers.insert(command, reply);
}

void FakeD2xx::setOnWrite(std::function<void(const QByteArray &)> callback)
{
    const QMutexLocker lock(&m_mutex);
    m_onWrite = std::move(callback);
}

void FakeD2xx::setStatusResult(Status status)
{
    const QMutexLocker lock(&m_mutex);
    m_statusResult = status;
}

void FakeD2xx::setWaitingTold(quint32 bytes)
{
    const QMutexLocker lock(&m_mutex);
    m_waitingTold = bytes;
}

void FakeD2xx::setLosses(quint32 times)
{
    const QMutexLocker lock(&m_mutex);
    m_losses = times;
}

void FakeD2xx::setReadResult(Status status)
{
    const QMutexLocker lock(&m_mutex);
    m_readResult = status;
}

QList<QByteArray> FakeD2xx::written() const
{
    const QMutexLocker lock(&m_mutex);
    return apart(m_written);
}

QByteArray FakeD2xx::writtenHex() const
{
    return written().join().toHex().toUpper();
}

qsizetype FakeD2xx::writes() const
{
    const QMutexLocker lock(&m_mutex);
    return m_written.size();
}

void FakeD2xx::clearWritten()
{
    const QMutexLocker lock(&m_mutex);
    m_written.clear();
}

QStringList FakeD2xx::calls() const
{
    const QMutexLocker lock(&m_mutex);
    return apart(m_calls);
}

QStringList FakeD2xx::trace() const
{
    const QMutexLocker lock(&m_mutex);
    return apart(m_trace);
}

int FakeD2xx::reads() const
{
    const QMutexLocker lock(&m_mutex);
    return m_reads;
}

int FakeD2xx::statusCalls() const
{
    const QMutexLocker lock(&m_mutex);
    return m_statusCalls;
}

qsizetype FakeD2xx::waiting() const
{
    const QMutexLocker lock(&m_mutex);
    return m_queue.size();
}

bool FakeD2xx::isOpen() const
{
    const QMutexLocker lock(&m_mutex);
    return m_isOpen;
}
