#include "tests/support/filehandle_windows.h"
#include "tests/support/importedcall_windows.h"
#include "tests/support/limitedwriting.h"

#include <QDir>

#include <utility>

#include <qt_windows.h>

// Windows has neither a limit of the size of files nor a device that is always full, and under Wine the
// administrator may write everywhere. So the calls that write are intercepted, and fail as the system would.

namespace {

/// The name by which a path can be compared with others.
QString plainName(const QString &path)
{
    const QString plain = QDir::fromNativeSeparators(path).remove(QStringLiteral("//?/"));
    return QDir::cleanPath(QDir(plain).absolutePath()).toCaseFolded();
}

qint64 positionOf(HANDLE file, const OVERLAPPED *overlapped)
{
    if (overlapped != nullptr)
        return static_cast<qint64>(overlapped->OffsetHigh) << 32 | overlapped->Offset;
    LARGE_INTEGER position{};
    SetFilePointerEx(file, {}, &position, FILE_CURRENT);
    return position.QuadPart;
}

BOOL refuse(DWORD error)
{
    SetLastError(error);
    return FALSE;
}

decltype(WriteFile) *systemsWriteFile = nullptr;

/// Writes unless `finds no room` says otherwise.
template <typename FindsNoRoom>
BOOL writeUnless(FindsNoRoom findsNoRoom, HANDLE file, LPCVOID bytes, DWORD count, LPDWORD written,
                 LPOVERLAPPED overlapped)
{
    if (count > 0 && GetFileType(file) == FILE_TYPE_DISK && findsNoRoom()) {
        if (written != nullptr)
            *written = 0;
        return refuse(ERROR_DISK_FULL);
    }
    return systemsWriteFile(file, bytes, count, written, overlapped);
}

qint64 sizeLimit = 0;

BOOL WINAPI writeWithinLimit(HANDLE file, LPCVOID bytes, DWORD count, LPDWORD written,
                             LPOVERLAPPED overlapped)
{
    return writeUnless([&] { return positionOf(file, overlapped) + count > sizeLimit; }, file, bytes, count,
                       written, overlapped);
}

QString fullFile;

BOOL WINAPI writeElsewhere(HANDLE file, LPCVOID bytes, DWORD count, LPDWORD written, LPOVERLAPPED overlapped)
{
    // Also beside it, where a file stands until it is whole.
    return writeUnless([&] { return plainName(pathOf(file)).startsWith(fullFile); }, file, bytes, count,
                       written, overlapped);
}

QString lockedFolder;
decltype(CreateFileW) *systemsCreateFile = nullptr;
decltype(CreateDirectoryW) *systemsCreateDirectory = nullptr;

bool isMadeInLockedFolder(const wchar_t *path)
{
    const QString name = plainName(QString::fromWCharArray(path));
    return name.left(name.lastIndexOf(u'/')) == lockedFolder &&
           GetFileAttributesW(path) == INVALID_FILE_ATTRIBUTES;
}

bool isMarkedReadOnly(const wchar_t *path)
{
    const DWORD attributes = GetFileAttributesW(path);
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0 &&
           (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

HANDLE WINAPI createFileElsewhere(LPCWSTR path, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES security,
                                  DWORD disposition, DWORD flags, HANDLE pattern)
{
    const bool creates = disposition != OPEN_EXISTING && disposition != TRUNCATE_EXISTING;
    const bool writes = (access & (GENERIC_WRITE | GENERIC_ALL | FILE_WRITE_DATA | FILE_APPEND_DATA)) != 0;
    if ((creates && isMadeInLockedFolder(path)) || (writes && isMarkedReadOnly(path))) {
        SetLastError(ERROR_ACCESS_DENIED);
        return INVALID_HANDLE_VALUE;
    }
    return systemsCreateFile(path, access, share, security, disposition, flags, pattern);
}

BOOL WINAPI createDirectoryElsewhere(LPCWSTR path, LPSECURITY_ATTRIBUTES security)
{
    return isMadeInLockedFolder(path) ? refuse(ERROR_ACCESS_DENIED) : systemsCreateDirectory(path, security);
}

} // namespace

struct ReadOnlyFolder::Means
{
    ImportedCall files{"CreateFileW", &createFileElsewhere, systemsCreateFile};
    ImportedCall folders{"CreateDirectoryW", &createDirectoryElsewhere, systemsCreateDirectory};
};

ReadOnlyFolder::ReadOnlyFolder(const QString &folder)
{
    lockedFolder = plainName(folder);
    m_means = std::make_unique<Means>();
}

ReadOnlyFolder::~ReadOnlyFolder() = default;

struct FileSizeLimit::Means
{
    ImportedCall writing{"WriteFile", &writeWithinLimit, systemsWriteFile};
};

FileSizeLimit::FileSizeLimit(qint64 bytes)
{
    sizeLimit = bytes;
    m_means = std::make_unique<Means>();
}

FileSizeLimit::~FileSizeLimit() = default;

struct FullFile::Means
{
    ImportedCall writing{"WriteFile", &writeElsewhere, systemsWriteFile};
};

FullFile::FullFile(const QString &path)
{
    fullFile = plainName(path);
    m_means = std::make_unique<Means>();
}

FullFile::~FullFile() = default;
