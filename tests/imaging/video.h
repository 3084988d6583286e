#pragma once

#include <gtest/gtest.h>

#include <QByteArray>
#include <QString>

#include <opencv2/videoio.hpp>

/// A stored video, opened again.
struct Video
{
    explicit Video(const QString &path) : capture(path.toStdString()) {}

    /// Reads to the end; every frame must have the size of the sensor.
    [[nodiscard]] int frames()
    {
        int count = 0;
        for (cv::Mat frame; capture.read(frame); ++count)
            EXPECT_EQ(frame.size(), cv::Size(1024, 1024));
        return count;
    }

    cv::VideoCapture capture;
};

/// Blanks the second frame of a video: decoding does not get it any more, while the file still states it.
inline void tearSecondFrame(QByteArray &video)
{
    const QByteArrayView frameStart("\0\0\1\xB6", 4);
    const qsizetype second = video.indexOf(frameStart, video.indexOf(frameStart) + 1);
    const qsizetype size = video.indexOf(frameStart, second + 1) - second;
    ASSERT_GT(size, 0);
    video.replace(second, size, QByteArray(size, '\0'));
}
