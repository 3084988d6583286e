#include "imaging/rawfile.h"

#include "device/protocol/frameformat.h"
#include "imaging/rawrecording.h"

void RawFile::write(const StackFrame &frame)
{
    m_places.push_back({m_next, frame.raw.size(), RawRecording::checksum(frame.raw)});
    m_next += frame.raw.size();
    file().write(frame.raw);
}

QJsonObject RawFile::format() const
{
    return {{QStringLiteral("format"), QStringLiteral("frames as they came over the cable")},
            {QStringLiteral("axes"), QStringLiteral("row, column; each frame at its offset")},
            {QStringLiteral("rows"), FrameFormat::side},
            {QStringLiteral("columns"), FrameFormat::side},
            {QStringLiteral("type"), QStringLiteral("uint32, most significant byte first")},
            {QStringLiteral("unit"), QStringLiteral("counts of the converter")}};
}

QJsonObject RawFile::entry(int frame) const
{
    const Place &place = m_places.at(static_cast<std::size_t>(frame));
    return {{QStringLiteral("offset"), place.offset},
            {QStringLiteral("bytes"), place.size},
            {QStringLiteral("crc32"), QString::number(place.checksum, 16).rightJustified(8, u'0')}};
}
