#pragma once

#include "imaging/partfile.h"

#include <QByteArrayView>
#include <QFile>
#include <QString>

#include <span>

/// A file that is replaced by what is written, as a whole and when it is whole, and that knows whether all of
/// it got there. What fails first is kept; what is written after a failure is dropped, and nothing of it
/// stays. Blocks for the disk.
class OutputFile
{
public:
    enum class Access { Write, WriteAndRead };

    explicit OutputFile(const QString &path, Access access = Access::Write);

    /// At the end of what was written last.
    void write(QByteArrayView bytes);
    /// At any place, over what is there.
    void writeAt(qint64 offset, QByteArrayView bytes);
    /// Reads back what was written, for Access::WriteAndRead; the number of bytes that there were.
    qint64 readAt(qint64 offset, std::span<char> bytes);
    [[nodiscard]] qint64 size() const { return m_file.size(); }

    /// The line of what failed first, see finish(); empty so far.
    [[nodiscard]] const QString &failure() const { return m_failure; }
    /// Whoever writes has a reason of its own not to go on.
    void giveUp(const QString &reason);
    /// Takes back what is behind the first `size` bytes, and the failure with it. False, and nothing has
    /// changed, when the file is not open or cannot be cut.
    [[nodiscard]] bool cutTo(qint64 size);

    /// Closes the file and gives it its name. Empty when it is whole, otherwise a line with its path and the
    /// system's reason.
    [[nodiscard]] QString finish();

private:
    void fail(const QString &what, const QString &reason);

    PartFile m_place; // outlives the open file: it may remove it
    QFile m_file;
    QString m_failure;
};
