#pragma once

#include <QImage>
#include <QString>

#include <memory>
#include <optional>

namespace cv {
class VideoWriter;
}

/// The video of a recording while it is written: 1024 x 1024 colour frames, 0.5 a second. It is replaced by
/// what is appended, and knows whether all of it got there. Blocks for the disk.
class VideoFile
{
public:
    /// How the frames of a finished video are counted.
    enum class Count {
        Stated,  ///< what the file says of itself: milliseconds, whatever its length
        Decoded, ///< every frame is taken out and decoded, so torn ones are not counted
    };

    explicit VideoFile(const QString &path);
    ~VideoFile();
    Q_DISABLE_COPY_MOVE(VideoFile)

    /// Empty when the video could be opened, otherwise a line with its path and the reason.
    [[nodiscard]] QString openingFailure() const;

    /// Appends the picture as a colour frame. What the encoder does not take is found by finish(). May run on
    /// any thread, one at a time.
    void append(const QImage &image);

    /// Closes the video and reads back what it says of itself: it must open and hold the frames appended.
    /// Empty when it does, when none was appended, or when it never was open; otherwise a line with its
    /// path and the reason.
    [[nodiscard]] QString finish();

    /// Opens a finished video and counts its frames; nothing when it does not open.
    [[nodiscard]] static std::optional<int> countFrames(const QString &path, Count count);

    /// Empty when the finished video says that it holds that many frames, otherwise a line with its path and
    /// both numbers. Then tries whether the disk takes more of the file, for the reason.
    [[nodiscard]] static QString check(const QString &path, int frames);

private:
    QString m_path;
    std::unique_ptr<cv::VideoWriter> m_writer; ///< never null
    int m_frames = 0;                          ///< appended
};
