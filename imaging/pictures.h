#pragma once

#include <QImage>
#include <QString>

#include <memory>

namespace cv {
class Mat;
class VideoWriter;
} // namespace cv

/// The files that hold pictures of a recording. All block for the disk; a returned text is empty or a line
/// that says which file failed and why.
namespace Pictures {

/// Saves a PNG file of 8-bit grey samples; read back it is the picture, as from QImage::save().
[[nodiscard]] QString savePng(const QString &path, const QImage &image);

/// What OpenCV is to read and write videos with: FFmpeg where it has it, otherwise its own choice.
[[nodiscard]] int videoLibrary();

/// Opens a video of 1024 x 1024 colour frames, 0.5 a second. When that fails the writer is not open.
[[nodiscard]] std::unique_ptr<cv::VideoWriter> openVideo(const QString &path);

/// The picture's rows of 8-bit samples as blue, green and red of a colour frame; empty for an empty picture.
[[nodiscard]] cv::Mat colourFrame(const QImage &image);

/// Appends the picture as a colour frame. What the encoder does not take is seen by
/// checkVideo(). May run on any thread, one at a time.
void appendToVideo(cv::VideoWriter &video, const QImage &image);

/// Why a video at that path did not open.
[[nodiscard]] QString videoNotOpened(const QString &path);

/// Reads back what a finished video says about itself: it must open and hold that many frames. When it does
/// not, tries whether the disk takes more of the file, for the reason.
[[nodiscard]] QString checkVideo(const QString &path, int frames);

} // namespace Pictures
