#pragma once

#include <QDir>
#include <QString>

#include <array>

#include <qt_windows.h>

/// The path of an open file or folder; empty for what is neither.
inline QString pathOf(HANDLE file)
{
    std::array<wchar_t, 32768> path{}; // the longest that there is
    const DWORD length = GetFinalPathNameByHandleW(file, path.data(), static_cast<DWORD>(path.size()), 0);
    if (length == 0 || length >= path.size())
        return {};
    return QDir::fromNativeSeparators(QString::fromWCharArray(path.data()).remove(QStringLiteral("\\\\?\\")));
}
