#pragma once

#include "imaging/partfile.h"

#include <QImage>
#include <QString>

#include <memory>
#include <optional>

namespace cv {
class VideoWriter;
}

/// The video of a recording while it is written: 1024 x 1024 colour frames, 0.5 a second. What has its name
/// is replaced by what was appended when that is closed; until then it stands beside it ("a.part.mp4"). Knows
/// whether all of it got there. Blocks for the disk.
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

    /// Closes the video, reads back what it says of itself, and gives it its name. It must open and hold the
    /// frames appended. Empty when it does, when none was appended, or when it never was open; otherwise a
    /// line with its path and the reason. One that does not open is removed; one that lacks frames stays.
    [[nodiscard]] QString finish();

    /// Opens a finished video and counts its frames; nothing when it does not open.
    [[nodiscard]] static std::optional<int> countFrames(const QString &path, Count count);

    /// Whether a video that was to hold `frames` is whole by the count found; nothing was found when it did
    /// not open. Not every library keeps an exact count: then it is whole when it opens.
    [[nodiscard]] static bool isWhole(std::optional<int> found, int frames,
                                      bool exactCount = countsExactly());

    /// Whether the library in use keeps a video's exact count: FFmpeg does.
    [[nodiscard]] static bool countsExactly();

private:
    PartFile m_place;
    std::unique_ptr<cv::VideoWriter> m_writer; ///< never null; goes before the file that it writes
    int m_frames = 0;                          ///< appended
    QString m_trouble;                         ///< what an exception said when the last of them was appended
};
