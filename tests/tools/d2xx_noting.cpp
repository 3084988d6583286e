// The virtual detector's driver library, which it is linked to, but each write leaves a line of hexadecimal
// digits in the file "written.txt" of the working folder.

#include "d2xx/exports.h"

#include <QByteArray>
#include <QFile>
#include <QLibrary>

d2xx::Status FT_Write(d2xx::Handle handle, void *buffer, std::uint32_t length, std::uint32_t *bytesWritten)
{
    static const auto write =
        reinterpret_cast<d2xx::Write *>(QLibrary::resolve(QStringLiteral(QV1K_VIRTUAL_LIBRARY), "FT_Write"));
    QFile file(QStringLiteral("written.txt"));
    if (file.open(QIODevice::Append))
        file.write(QByteArray(static_cast<const char *>(buffer), static_cast<qsizetype>(length)).toHex() +
                   '\n');
    file.close();
    return write(handle, buffer, length, bytesWritten);
}
