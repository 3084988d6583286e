#pragma once

#include <QImage>
#include <QRandomGenerator>

#include <opencv2/core.hpp>

/// Pictures to try the files with.
namespace TestPictures {

/// As large as the sensor, with every grey level.
inline QImage random(quint32 seed)
{
    QImage image(1024, 1024, QImage::Format_Grayscale8);
    QRandomGenerator random(seed);
    for (qsizetype i = 0; i < image.sizeInBytes(); ++i)
        image.bits()[i] = static_cast<uchar>(i < 256 ? i : random.bounded(256));
    return image;
}

inline bool same(const cv::Mat &a, const cv::Mat &b)
{
    return a.size() == b.size() && a.type() == b.type() && cv::norm(a, b, cv::NORM_INF) == 0;
}

} // namespace TestPictures
