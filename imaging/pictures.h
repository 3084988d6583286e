#pragma once

#include <QImage>
#include <QString>

namespace cv {
class Mat;
}

/// The grey pictures of a recording as OpenCV sees them.
namespace Pictures {

/// Saves a PNG file of 8-bit grey samples; read back it is the picture, as from QImage::save(), also in its
/// resolution. Blocks for the disk. Returns an empty text, or a line that says which file failed and why.
[[nodiscard]] QString savePng(const QString &path, const QImage &image);

/// The picture's rows of 8-bit samples as blue, green and red of a colour frame; empty for an empty picture.
[[nodiscard]] cv::Mat colourFrame(const QImage &image);

} // namespace Pictures
