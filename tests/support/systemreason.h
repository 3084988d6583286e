#pragma once

#include <QString>

#include <cerrno>

#ifdef Q_OS_WIN
#include <qt_windows.h>
#endif

/// Why the system refuses something, in the cases that tests bring about.
enum class SystemFailure {
    NoSuchFile,   ///< and none is made
    NoSuchFolder, ///< of a file that is opened in it
    NotAFolder,   ///< a file is there, and something is looked for in it
    IsAFolder,    ///< and is opened as a file
    NoAccess,
    DiskFull,
    FileTooLarge, ///< for a FileSizeLimit
    DeviceFault
};

/// The system's number of it.
constexpr int systemNumber(SystemFailure failure)
{
    switch (failure) {
#ifdef Q_OS_WIN
    case SystemFailure::NoSuchFile:
        return ERROR_FILE_NOT_FOUND;
    case SystemFailure::NoSuchFolder:
    case SystemFailure::NotAFolder:
        return ERROR_PATH_NOT_FOUND;
    case SystemFailure::IsAFolder:
    case SystemFailure::NoAccess:
        return ERROR_ACCESS_DENIED;
    case SystemFailure::DiskFull:
    case SystemFailure::FileTooLarge:
        return ERROR_DISK_FULL;
    case SystemFailure::DeviceFault:
        return ERROR_IO_DEVICE;
#else
    case SystemFailure::NoSuchFile:
    case SystemFailure::NoSuchFolder:
        return ENOENT;
    case SystemFailure::NotAFolder:
        return ENOTDIR;
    case SystemFailure::IsAFolder:
        return EISDIR;
    case SystemFailure::NoAccess:
        return EACCES;
    case SystemFailure::DiskFull:
        return ENOSPC;
    case SystemFailure::FileTooLarge:
        return EFBIG;
    case SystemFailure::DeviceFault:
        return EIO;
#endif
    }
    return 0;
}

/// The system's words for it, which stand in the texts of the program.
inline QString systemReason(SystemFailure failure)
{
    return qt_error_string(systemNumber(failure));
}
