#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QFile>
#include <QJsonObject>
#include <QString>

#include <vector>

/// A recording's raw frames, read back: "NAME.raw" and the index beside it, "NAME.raw.json". One thread at a
/// time; blocks for the disk.
class RawRecording
{
public:
    /// A frame as it was read, or why it was not.
    struct Frame
    {
        int number = 0; ///< in the recording, from 1
        QDateTime time; ///< when it was taken into the pipeline
        QByteArray bytes;
        QString problem; ///< one line with the file's path; empty when the bytes are those that were recorded
    };

    /// Opens "NAME.raw" and reads its index; `path` may name either of them.
    explicit RawRecording(const QString &path);

    /// Why it cannot be read, in one line with the path; empty when it can.
    [[nodiscard]] const QString &problem() const { return m_problem; }

    /// Of the file that holds the frames.
    [[nodiscard]] QString path() const { return m_file.fileName(); }

    [[nodiscard]] int frameCount() const { return static_cast<int>(m_entries.size()); }
    /// The whole index: what is told of detector, settings and program, too.
    [[nodiscard]] const QJsonObject &description() const { return m_description; }

    /// Reads the frame at `position`, 0 to frameCount() - 1, and holds it against its checksum.
    [[nodiscard]] Frame read(int position);

    /// The checksum of a frame as the index has it: CRC-32, as of ZIP and Python's zlib.crc32().
    [[nodiscard]] static quint32 checksum(QByteArrayView bytes);

private:
    struct Entry
    {
        int number = 0;
        QDateTime time;
        qint64 offset = 0;
        qint64 size = 0;
        quint32 checksum = 0;
    };

    void readIndex(const QString &path);

    QFile m_file;
    QJsonObject m_description;
    std::vector<Entry> m_entries;
    QString m_problem;
};
