#pragma once

#include <QByteArrayView>
#include <QFile>
#include <QString>

/// A file that is replaced by what is written, and that knows whether all of it got there.
/// What fails first is kept; what is written after a failure is dropped. Blocks for the disk.
class OutputFile
{
public:
    explicit OutputFile(const QString &path);

    void write(QByteArrayView bytes);

    /// Closes the file. Empty when it is whole, otherwise a line with its path and the system's reason.
    [[nodiscard]] QString finish();

private:
    void fail(const QString &what);

    QFile m_file;
    QString m_failure;
};
