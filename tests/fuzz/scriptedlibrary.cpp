#include "tests/fuzz/scriptedlibrary.h"

using namespace d2xx;

namespace {

ScriptedLibrary *library = nullptr;

} // namespace

struct ScriptedLibrary::Entry
{
    static Status openEx(void *, quint32, Handle *handle)
    {
        *handle = library;
        return Status::Ok;
    }

    static Status getStatus(Handle, quint32 *rxBytes, quint32 *txBytes, quint32 *events)
    {
        const std::optional<quint32> waiting = library->waiting();
        *rxBytes = waiting.value_or(0);
        *txBytes = 0;
        *events = 0;
        return waiting ? Status::Ok : Status::IoError;
    }

    static Status read(Handle, void *buffer, quint32 length, quint32 *bytesRead)
    {
        const std::optional<quint32> read = library->read(static_cast<char *>(buffer), length);
        *bytesRead = read.value_or(0);
        return read ? Status::Ok : Status::IoError;
    }

    static Status write(Handle, void *buffer, quint32 length, quint32 *bytesWritten)
    {
        library->write(QByteArray(static_cast<const char *>(buffer), static_cast<qsizetype>(length)));
        *bytesWritten = length;
        return Status::Ok;
    }

    static Status countLosses(Handle, quint32 *count)
    {
        *count = library->losses();
        return Status::Ok;
    }

    static Functions functions()
    {
        Functions f;
        f.createDeviceInfoList = [](quint32 *count) {
            *count = 0;
            return Status::Ok;
        };
        f.getDeviceInfoList = [](DeviceRecord *, quint32 *) {
            return Status::Ok;
        };
        f.openEx = &openEx;
        f.close = [](Handle) {
            return Status::Ok;
        };
        f.resetDevice = [](Handle) {
            return Status::Ok;
        };
        f.setBitMode = [](Handle, quint8, quint8) {
            return Status::Ok;
        };
        f.setLatencyTimer = [](Handle, quint8) {
            return Status::Ok;
        };
        f.setUsbParameters = [](Handle, quint32, quint32) {
            return Status::Ok;
        };
        f.setFlowControl = [](Handle, quint16, quint8, quint8) {
            return Status::Ok;
        };
        f.purge = [](Handle, quint32) {
            return Status::Ok;
        };
        f.setTimeouts = [](Handle, quint32, quint32) {
            return Status::Ok;
        };
        f.getStatus = &getStatus;
        f.read = &read;
        f.write = &write;
        f.countLosses = &countLosses;
        return f;
    }
};

ScriptedLibrary::ScriptedLibrary() : m_driver(std::make_shared<D2xx>(Entry::functions()))
{
    library = this;
}

ScriptedLibrary::~ScriptedLibrary()
{
    library = nullptr;
}
