#pragma once

#include <QImage>

/// The picture as a screen of many pixels shows it.
namespace ScreenPicture {

/// A Grayscale8 picture scaled to `size` in format RGB32: linearly where it grows, by areas where it shrinks.
/// The work is spread over OpenCV's workers, and the bytes do not depend on their number. A null picture or
/// an empty size give a null picture.
[[nodiscard]] QImage scaled(const QImage &grey, QSize size);

} // namespace ScreenPicture
