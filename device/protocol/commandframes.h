#pragma once

#include <QByteArray>

/// The frames that the host sends: FF AA, class, code, 0D EB; parameter frames go on with a payload and the
/// sum of its bytes. Pure functions, any thread.
namespace CommandFrame {

[[nodiscard]] QByteArray startAcquisition();
/// Sent by the receive thread only, at a block boundary.
[[nodiscard]] QByteArray haltAcquisition();
[[nodiscard]] QByteArray readinessQuery();
/// Pattern 1 to 5; anything above 4 is the fifth, whose code is CF.
[[nodiscard]] QByteArray testPattern(int pattern);
/// `blocks`: whole blocks of the current image received so far, 1 to 31, 0 after a finished image.
[[nodiscard]] QByteArray blockRequest(int blocks);
[[nodiscard]] QByteArray levelQuery();
[[nodiscard]] QByteArray versionReadback();
[[nodiscard]] QByteArray parameterReadback();
[[nodiscard]] QByteArray eepromReadback();
[[nodiscard]] QByteArray eepromWrite();
[[nodiscard]] QByteArray eepromRead();
[[nodiscard]] QByteArray eepromInit();

/// A parameter frame (class 01): head, payload, checksum.
[[nodiscard]] QByteArray parameters(char code, const QByteArray &payload);

/// `value` as hexadecimal digits padded to `width` bytes, most significant byte first. Not truncated: a
/// value that needs more digits yields more bytes. The sign of a negative value is lost.
[[nodiscard]] QByteArray hexBytes(int value, int width);

/// Sum of the bytes modulo 256.
[[nodiscard]] char checksum(const QByteArray &payload);

} // namespace CommandFrame

/// How replies are judged. A reply is the upper-case hexadecimal text of the bytes that came.
namespace AckFrame {

inline constexpr int commandBytes = 6;

/// The echo of a control frame: BB in place of AA.
[[nodiscard]] QByteArray echoOf(const QByteArray &controlFrame);
/// The reply begins with the echo of `controlFrame`.
[[nodiscard]] bool echoes(const QByteArray &reply, const QByteArray &controlFrame);
/// The reply can be told to be another command's: its head is the echo of one, or `frame` gets an echo and it
/// is the charge, six bytes with the end of a frame. It was left over from an earlier exchange, and the
/// answer to `frame` is still to come. Whatever cannot be told so is taken for the answer.
[[nodiscard]] bool answersAnother(const QByteArray &reply, const QByteArray &frame);
/// "FFBB01" stands anywhere in the reply, on a byte boundary or not.
[[nodiscard]] bool acknowledgesParameters(const QByteArray &reply);
/// Bit 0 of the fifth byte. A reply of fewer than six bytes is not ready.
[[nodiscard]] bool isReady(const QByteArray &reply);
/// The first byte: battery charge in percent. 0 for a reply that holds no number.
[[nodiscard]] int level(const QByteArray &reply);

} // namespace AckFrame
