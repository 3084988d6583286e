#include "tests/support/faked2xx.h"

#include <cstring>

using namespace ftdi;

namespace {

FakeD2xx *fake = nullptr;

} // namespace

/// The library's functions; free of `this`, as a C interface is.
struct FakeD2xx::Entry
{
    static FT_STATUS configure(const QString &call)
    {
        const QMutexLocker lock(&fake->m_mutex);
        fake->m_calls << call;
        return fake->configurationStatus;
    }

    static FT_STATUS createDeviceInfoList(DWORD *count)
    {
        const QMutexLocker lock(&fake->m_mutex);
        fake->m_calls << QStringLiteral("CreateDeviceInfoList");
        *count = DWORD(fake->serialNumbers.size());
        return fake->createListStatus;
    }

    static FT_STATUS getDeviceInfoList(DeviceRecord *records, DWORD *count)
    {
        const QMutexLocker lock(&fake->m_mutex);
        fake->m_calls << QStringLiteral("GetDeviceInfoList");
        for (DWORD i = 0; i < *count; ++i) {
            records[i] = {};
            std::strncpy(records[i].serialNumber, qPrintable(fake->serialNumbers.at(int(i))),
                         sizeof records[i].serialNumber - 1);
        }
        return fake->getListStatus;
    }

    static FT_STATUS openEx(void *key, DWORD flags, FT_HANDLE *handle)
    {
        const QMutexLocker lock(&fake->m_mutex);
        fake->m_calls
            << QStringLiteral("OpenEx %1 %2").arg(QString::fromUtf8(static_cast<char *>(key))).arg(flags);
        if (fake->openStatus == FT_OK) {
            *handle = fake;
            fake->m_isOpen = true;
        }
        return fake->openStatus;
    }

    static FT_STATUS close(FT_HANDLE)
    {
        const QMutexLocker lock(&fake->m_mutex);
        fake->m_calls << QStringLiteral("Close");
        fake->m_isOpen = false;
        return FT_OK;
    }

    static FT_STATUS resetDevice(FT_HANDLE) { return configure(QStringLiteral("ResetDevice")); }

    static FT_STATUS setBitMode(FT_HANDLE, UCHAR mask, UCHAR mode)
    {
        return configure(QStringLiteral("SetBitMode %1 %2").arg(mask).arg(mode));
    }

    static FT_STATUS setLatencyTimer(FT_HANDLE, UCHAR milliseconds)
    {
        return configure(QStringLiteral("SetLatencyTimer %1").arg(milliseconds));
    }

    static FT_STATUS setUsbParameters(FT_HANDLE, DWORD inSize, DWORD outSize)
    {
        return configure(QStringLiteral("SetUSBParameters %1 %2").arg(inSize).arg(outSize));
    }

    static FT_STATUS setFlowControl(FT_HANDLE, USHORT flow, UCHAR xOn, UCHAR xOff)
    {
        return configure(QStringLiteral("SetFlowControl %1 %2 %3").arg(flow).arg(xOn).arg(xOff));
    }

    static FT_STATUS purge(FT_HANDLE, DWORD mask) { return configure(QStringLiteral("Purge %1").arg(mask)); }

    static FT_STATUS setTimeouts(FT_HANDLE, DWORD readMs, DWORD writeMs)
    {
        return configure(QStringLiteral("SetTimeouts %1 %2").arg(readMs).arg(writeMs));
    }

    static FT_STATUS getStatus(FT_HANDLE, DWORD *rxBytes, DWORD *txBytes, DWORD *events)
    {
        const QMutexLocker lock(&fake->m_mutex);
        ++fake->m_statusCalls;
        *rxBytes = DWORD(fake->m_queue.size());
        *txBytes = 0;
        *events = 0;
        return fake->m_statusResult;
    }

    static FT_STATUS read(FT_HANDLE, void *buffer, DWORD length, DWORD *bytesRead)
    {
        const QMutexLocker lock(&fake->m_mutex);
        ++fake->m_reads;
        const qsizetype count = qMin(qsizetype(length), fake->m_queue.size());
        std::memcpy(buffer, fake->m_queue.constData(), std::size_t(count));
        fake->m_queue.remove(0, count);
        *bytesRead = DWORD(count);
        return fake->m_readResult;
    }

    static FT_STATUS write(FT_HANDLE, void *buffer, DWORD length, DWORD *bytesWritten)
    {
        const QByteArray bytes(static_cast<const char *>(buffer), qsizetype(length));
        std::function<void(const QByteArray &)> callback;
        {
            const QMutexLocker lock(&fake->m_mutex);
            fake->m_written << bytes;
            fake->m_queue += fake->m_answers.value(bytes);
            callback = fake->m_onWrite;
        }
        *bytesWritten = length;
        if (callback)
            callback(bytes);
        return FT_OK;
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

void FakeD2xx::setStatusResult(FT_STATUS status)
{
    const QMutexLocker lock(&m_mutex);
    m_statusResult = status;
}

void FakeD2xx::setReadResult(FT_STATUS status)
{
    const QMutexLocker lock(&m_mutex);
    m_readResult = status;
}

QList<QByteArray> FakeD2xx::written() const
{
    const QMutexLocker lock(&m_mutex);
    return m_written;
}

QByteArray FakeD2xx::writtenHex() const
{
    return written().join().toHex().toUpper();
}

void FakeD2xx::clearWritten()
{
    const QMutexLocker lock(&m_mutex);
    m_written.clear();
}

QStringList FakeD2xx::calls() const
{
    const QMutexLocker lock(&m_mutex);
    return m_calls;
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
