// The virtual detector in a driver library that stands in its way: each write leaves a line of hexadecimal
// digits in the file "written.txt" of the working folder. Its environment says what else goes wrong in the
// program that uses it:
//   QV1K_FILE_SIZE_LIMIT   no file can grow beyond so many bytes
//   QV1K_FULL_FILE         what is written under this name finds no room
//   QV1K_NO_LIST           what is attached cannot be listed
//   QV1K_LISTED_OPEN       of what is attached the list says that it is open
//   QV1K_FIRST_FRAME       what the detector was sent by whoever had it before, in hexadecimal digits
//   QV1K_LOST_FILE         this file is gone when the detector is closed

#include "tests/support/limitedwriting.h"
#include "tests/support/providercalls.h"
#include "tests/support/virtualcalls.h"

#include <QByteArray>
#include <QFile>

#include <optional>
#include <span>

namespace {

struct Obstacles
{
    std::optional<FileSizeLimit> sizeLimit;
    std::optional<FullFile> fullFile;

    Obstacles()
    {
        if (const QByteArray bytes = qgetenv("QV1K_FILE_SIZE_LIMIT"); !bytes.isEmpty())
            sizeLimit.emplace(bytes.toLongLong());
        if (const QString path = qEnvironmentVariable("QV1K_FULL_FILE"); !path.isEmpty())
            fullFile.emplace(path);
    }
};

d2xx::Status QV1K_D2XX_CALL noteAndWrite(d2xx::Handle handle, void *buffer, std::uint32_t length,
                                         std::uint32_t *bytesWritten);

d2xx::Status QV1K_D2XX_CALL listNothing(std::uint32_t *)
{
    return d2xx::Status::IoError;
}

d2xx::Status QV1K_D2XX_CALL listAsOpen(d2xx::DeviceRecord *records, std::uint32_t *count);
d2xx::Status QV1K_D2XX_CALL openAfterAnother(void *key, std::uint32_t flags, d2xx::Handle *handle);
d2xx::Status QV1K_D2XX_CALL closeAndLose(d2xx::Handle handle);

struct NotingLibrary
{
    NotingLibrary()
    {
        calls.write = &noteAndWrite;
        if (qEnvironmentVariableIsSet("QV1K_NO_LIST"))
            calls.createDeviceInfoList = &listNothing;
        if (qEnvironmentVariableIsSet("QV1K_LISTED_OPEN"))
            calls.getDeviceInfoList = &listAsOpen;
        if (qEnvironmentVariableIsSet("QV1K_FIRST_FRAME"))
            calls.openEx = &openAfterAnother;
        if (qEnvironmentVariableIsSet("QV1K_LOST_FILE"))
            calls.close = &closeAndLose;
    }

    Obstacles obstacles;
    const d2xx::Functions detector = callsOfVirtualDetector(QStringLiteral(QV1K_VIRTUAL_LIBRARY));
    d2xx::Functions calls = detector;
};

NotingLibrary &library()
{
    static NotingLibrary instance;
    return instance;
}

d2xx::Status QV1K_D2XX_CALL noteAndWrite(d2xx::Handle handle, void *buffer, std::uint32_t length,
                                         std::uint32_t *bytesWritten)
{
    QFile file(QStringLiteral("written.txt"));
    if (file.open(QIODevice::Append))
        file.write(QByteArray(static_cast<const char *>(buffer), static_cast<qsizetype>(length)).toHex() +
                   '\n');
    file.close();
    return library().detector.write(handle, buffer, length, bytesWritten);
}

d2xx::Status QV1K_D2XX_CALL listAsOpen(d2xx::DeviceRecord *records, std::uint32_t *count)
{
    const d2xx::Status status = library().detector.getDeviceInfoList(records, count);
    for (d2xx::DeviceRecord &record : std::span(records, *count))
        record.flags |= d2xx::flagOpened;
    return status;
}

d2xx::Status QV1K_D2XX_CALL openAfterAnother(void *key, std::uint32_t flags, d2xx::Handle *handle)
{
    const d2xx::Functions &detector = library().detector;
    const d2xx::Status status = detector.openEx(key, flags, handle);
    if (status != d2xx::Status::Ok)
        return status;
    QByteArray frame = QByteArray::fromHex(qgetenv("QV1K_FIRST_FRAME"));
    QByteArray echo(6, '\0');
    std::uint32_t count = 0;
    detector.write(*handle, frame.data(), static_cast<std::uint32_t>(frame.size()), &count);
    detector.read(*handle, echo.data(), static_cast<std::uint32_t>(echo.size()), &count);
    return status;
}

d2xx::Status QV1K_D2XX_CALL closeAndLose(d2xx::Handle handle)
{
    QFile::remove(qEnvironmentVariable("QV1K_LOST_FILE"));
    return library().detector.close(handle);
}

} // namespace

d2xx::Functions &providerCalls()
{
    return library().calls;
}
