#include "imaging/diskflush.h"

#include "imaging/failurelog.h"

#include <QDir>
#include <QFile>

#ifdef Q_OS_WIN
#include <qt_windows.h>
#else
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>
#endif

namespace {

/// Empty when the file or folder is on the disk, or not there at all; otherwise the system's reason.
QString flushingProblem(const QString &path)
{
#ifdef Q_OS_WIN
    const QString native = QDir::toNativeSeparators(path);
    const HANDLE file = CreateFileW(reinterpret_cast<LPCWSTR>(native.utf16()), GENERIC_WRITE,
                                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                    OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return {};
    const DWORD error = FlushFileBuffers(file) != 0 ? NO_ERROR : GetLastError();
    CloseHandle(file);
    return error == NO_ERROR ? QString() : qt_error_string(static_cast<int>(error));
#else
    const int file = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (file < 0)
        return {};
    const int error = ::fsync(file) == 0 ? 0 : errno;
    ::close(file);
    // A device or a network share may have nothing to flush.
    return error == 0 || error == EINVAL ? QString() : qt_error_string(error);
#endif
}

void flushOne(const QString &path)
{
    if (const QString reason = flushingProblem(path); !reason.isEmpty())
        reportFailure(failureLine(QStringLiteral("文件落盘失败"), path, reason));
}

} // namespace

void DiskFlush::flush(const RecordingFiles &files, const RecordingForms &forms, int frames)
{
    for (int frame = 1; frame <= frames; ++frame) {
        if (forms.data) {
            flushOne(files.data(frame));
            flushOne(files.grayData(frame));
        }
        if (forms.picture)
            flushOne(files.picture(frame));
    }
    if (forms.video)
        flushOne(files.video());
    for (const QString &stack : files.stacks(forms)) {
        flushOne(stack);
        flushOne(RecordingFiles::description(stack));
    }
    if (forms.data)
        flushOne(files.parameters());
    flushOne(files.folder());
    flushOne(files.root);
}
