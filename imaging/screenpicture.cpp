#include "imaging/screenpicture.h"

#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

namespace {

/// A picture's rows as OpenCV sees them, in place.
cv::Mat rows(const QImage &image, int type)
{
    // cv::Mat has no read-only view.
    return {image.height(), image.width(), type, const_cast<uchar *>(image.constBits()),
            static_cast<std::size_t>(image.bytesPerLine())};
}

} // namespace

QImage ScreenPicture::scaled(const QImage &grey, QSize size)
{
    if (grey.isNull() || size.isEmpty())
        return {};
    const bool shrinks = size.width() < grey.width() || size.height() < grey.height();
    cv::Mat sized;
    cv::resize(rows(grey, CV_8UC1), sized, {size.width(), size.height()}, 0.0, 0.0,
               shrinks ? cv::INTER_AREA : cv::INTER_LINEAR);
    QImage result(size, QImage::Format_RGB32);
    if (result.isNull())
        return {};
    cv::Mat target(result.height(), result.width(), CV_8UC4, result.bits(),
                   static_cast<std::size_t>(result.bytesPerLine()));
    cv::cvtColor(sized, target, cv::COLOR_GRAY2BGRA);
    return result;
}
