#include "imaging/rawrecording.h"

#include "imaging/recordingfiles.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <zlib.h>

#include <optional>

namespace {

QString withoutIndexEnding(const QString &path)
{
    const QString ending = RecordingFiles::description({});
    return path.endsWith(ending) ? path.chopped(ending.size()) : path;
}

/// A whole number from 0 to what a double holds exactly; nothing when it is none.
std::optional<qint64> wholeNumber(const QJsonValue &value)
{
    const qint64 number = value.toInteger(-1);
    constexpr qint64 exact = qint64{1} << 53;
    if (number < 0 || number > exact)
        return std::nullopt;
    return number;
}

} // namespace

RawRecording::RawRecording(const QString &path) : m_file(withoutIndexEnding(path))
{
    readIndex(RecordingFiles::description(m_file.fileName()));
    if (m_problem.isEmpty() && !m_file.open(QIODevice::ReadOnly))
        m_problem = QStringLiteral("%1 cannot be read: %2").arg(m_file.fileName(), m_file.errorString());
}

void RawRecording::readIndex(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        m_problem = QStringLiteral("%1 cannot be read: %2").arg(path, file.errorString());
        return;
    }
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &error);
    m_description = document.object();
    const QJsonValue frames = m_description[QStringLiteral("frames")];
    if (!frames.isArray()) {
        const bool isJson = error.error == QJsonParseError::NoError;
        m_problem = QStringLiteral("%1 is no index of raw frames: %2")
                        .arg(path, isJson ? QStringLiteral("no frames") : error.errorString());
        return;
    }
    for (const QJsonValue &value : frames.toArray()) {
        const std::optional<qint64> number = wholeNumber(value[QStringLiteral("number")]);
        const std::optional<qint64> offset = wholeNumber(value[QStringLiteral("offset")]);
        const std::optional<qint64> size = wholeNumber(value[QStringLiteral("bytes")]);
        bool isHex = false;
        const quint32 sum = value[QStringLiteral("crc32")].toString().toUInt(&isHex, 16);
        if (!number || !offset || !size || !isHex) {
            m_problem = QStringLiteral("%1: the entry of frame %2 is damaged")
                            .arg(path, QString::number(m_entries.size() + 1));
            return;
        }
        const QDateTime time =
            QDateTime::fromString(value[QStringLiteral("time")].toString(), Qt::ISODateWithMs);
        m_entries.push_back({static_cast<int>(*number), time, *offset, *size, sum});
    }
}

RawRecording::Frame RawRecording::read(int position)
{
    const Entry &entry = m_entries.at(static_cast<std::size_t>(position));
    Frame frame{.number = entry.number, .time = entry.time, .bytes = {}, .problem = {}};
    const auto fault = [&](const QString &what) {
        frame.problem =
            QStringLiteral("%1: frame %2 %3").arg(m_file.fileName(), QString::number(entry.number), what);
    };
    // What lies beyond the file is not even asked for: no room is made for what a damaged index says.
    if (entry.offset + entry.size > m_file.size()) {
        fault(QStringLiteral("is cut off"));
        return frame;
    }
    if (m_file.seek(entry.offset))
        frame.bytes = m_file.read(entry.size);
    if (frame.bytes.size() != entry.size)
        fault(QStringLiteral("cannot be read: ") + m_file.errorString());
    else if (checksum(frame.bytes) != entry.checksum)
        fault(QStringLiteral("is damaged: its checksum differs"));
    return frame;
}

quint32 RawRecording::checksum(QByteArrayView bytes)
{
    return static_cast<quint32>(
        crc32_z(0, reinterpret_cast<const Bytef *>(bytes.data()), static_cast<z_size_t>(bytes.size())));
}
