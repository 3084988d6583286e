#pragma once

#include <QImage>
#include <QString>

/// Comparing a picture of the program with the one in the documents.
namespace Pictures {

/// Side of the squares that are compared, in pixels.
inline constexpr int tile = 32;
/// By how much the colours of a square may differ on average, of 255: a palette of 256 colours and the
/// sensor's noise stay below, a word that is another one does not.
inline constexpr double tolerance = 6.0;

/// Where and by how much the two differ most; empty when they are the same within the tolerance.
[[nodiscard]] QString difference(const QImage &made, const QImage &kept);

} // namespace Pictures
