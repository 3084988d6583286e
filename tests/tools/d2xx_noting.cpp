// The virtual detector in a driver library that stands in its way: each write leaves a line of hexadecimal
// digits in the file "written.txt" of the working folder. Its environment says what else goes wrong in the
// program that uses it:
//   QV1K_FILE_SIZE_LIMIT   no file can grow beyond so many bytes
//   QV1K_FULL_FILE         what is written under this name finds no room
//   QV1K_NO_LIST           what is attached cannot be listed

#include "tests/support/limitedwriting.h"
#include "tests/support/providercalls.h"
#include "tests/support/virtualcalls.h"

#include <QByteArray>
#include <QFile>

#include <optional>

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

struct NotingLibrary
{
    NotingLibrary()
    {
        calls.write = &noteAndWrite;
        if (qEnvironmentVariableIsSet("QV1K_NO_LIST"))
            calls.createDeviceInfoList = &listNothing;
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

} // namespace

d2xx::Functions &providerCalls()
{
    return library().calls;
}
