#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <functional>

namespace simulator {

inline constexpr quint8 blockRequestClass = 0x00;
inline constexpr quint8 parameterClass = 0x01;
inline constexpr quint8 queryClass = 0x02;
inline constexpr quint8 controlClass = 0x03;

/// One frame from the host.
struct Command
{
    quint8 frameClass = 0;
    quint8 code = 0;
    QByteArrayView payload; ///< of a parameter frame: all that followed in the same write, checksum included
};

/// Finds the command frames in what the host writes: FF AA, class, code, 0D EB. Frames may be glued together
/// and split over writes. A parameter frame has no length field: it goes on to the end of the write in which
/// its six-byte head is complete. Bytes that belong to no frame are passed over.
class CommandParser
{
public:
    using Handler = std::function<void(const Command &)>;

    /// Takes the bytes of one write and hands over the frames that are now complete.
    void write(QByteArrayView bytes, const Handler &handler);

    /// Forgets a frame that is not complete.
    void clear() { m_rest.resize(0); }

private:
    QByteArray m_rest;
};

} // namespace simulator
