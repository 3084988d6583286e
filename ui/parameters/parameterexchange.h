#pragma once

#include <QByteArray>

/// Exchanges of the settings page and the engineering dialog with the detector. GUI thread; each blocks until
/// the reply has arrived, for the time-out told at most, and shows the waiting cursor meanwhile.
namespace ParameterExchange {

/// Sends a command and returns its acknowledgement as hexadecimal text, or what of it arrived. 2 s.
QByteArray command(const QByteArray &frame);

/// Sends a query and returns its reply of `bytes` bytes as hexadecimal text, or what of it arrived. 5 s.
[[nodiscard]] QByteArray readBack(const QByteArray &frame, int bytes);

} // namespace ParameterExchange
