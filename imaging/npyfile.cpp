#include "imaging/npyfile.h"

#include "device/protocol/frameformat.h"
#include "imaging/stackdescription.h"

#include <QtEndian>

namespace {

constexpr qsizetype headerBytes = 128; // a multiple of 64, which NumPy aligns the values to
constexpr qsizetype prefixBytes = 10;

QByteArray header(int frames)
{
    const QByteArray order = Q_BYTE_ORDER == Q_LITTLE_ENDIAN ? "<f4" : ">f4";
    const QByteArray side = QByteArray::number(FrameFormat::side);
    QByteArray text = "{'descr': '" + order + "', 'fortran_order': False, 'shape': (" +
                      QByteArray::number(frames) + ", " + side + ", " + side + "), }";
    text = text.leftJustified(headerBytes - prefixBytes - 1) + '\n';
    QByteArray length(2, '\0');
    qToLittleEndian(static_cast<quint16>(text.size()), length.data());
    return QByteArrayLiteral("\x93NUMPY\x01") + '\0' + length + text;
}

} // namespace

NpyFile::NpyFile(const QString &path) : StackFile(path) {}

void NpyFile::write(const StackFrame &frame)
{
    if (frames() == 0)
        file().write(header(0));
    const auto bytes = std::as_bytes(frame.currents);
    file().write(QByteArrayView(bytes.data(), static_cast<qsizetype>(bytes.size())));
}

void NpyFile::complete()
{
    file().writeAt(0, header(frames()));
}

QJsonObject NpyFile::format() const
{
    return StackDescription::ofCurrents(QStringLiteral("NPY 1.0"), frames());
}
