#pragma once

#include <gtest/gtest.h>

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
