#pragma once

#include "imaging/partfile.h"

#include <QByteArrayView>
#include <QFile>
#include <QString>

/// A file that is replaced by what is written, as a whole and when it is whole, and that knows whether all of
/// it got there. What fails first is kept; what is written after a failure is dropped, and nothing of it
/// stays. Blocks for the disk.
class OutputFile
{
public:
    explicit OutputFile(const QString &path);

    void write(QByteArrayView bytes);

    /// Closes the file and gives it its name. Empty when it is whole, otherwise a line with its path and the
    /// system's reason.
    [[nodiscard]] QString finish();

private:
    void fail(const QString &what, const QString &reason);

    PartFile m_place; // outlives the open file: it may remove it
    QFile m_file;
    QString m_failure;
};
