#pragma once

#include "tests/matrix/fault.h"
#include "tests/support/limitedwriting.h"

#include <QDir>

#include <optional>

/// What one of the columns of the disk does to a folder while it lives; nothing for any other column.
class BadDisk
{
public:
    BadDisk(Fault fault, const QString &folder)
    {
        constexpr qint64 lessThanAPicture = 20000;
        if (fault == Fault::DiskFull)
            m_full.emplace(lessThanAPicture);
        else if (fault == Fault::DiskReadOnly)
            m_readOnly.emplace(QDir(folder).absolutePath());
        else if (fault == Fault::DiskGone)
            QDir(folder).removeRecursively();
    }

private:
    std::optional<FileSizeLimit> m_full;
    std::optional<ReadOnlyFolder> m_readOnly;
};
