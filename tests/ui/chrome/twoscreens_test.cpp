// The picture on a screen that has four pixels for one of the desktop's, beside one that has one:
// data/twoscreens.json.

#include "ui/keepratiowidget.h"

#include <gtest/gtest.h>

#include <QColorSpace>
#include <QGuiApplication>
#include <QImage>
#include <QLabel>
#include <QScreen>
#include <QWindow>

namespace {

/// Stripes so fine that they are lost where the picture is shown at half its size.
QImage stripes(QImage::Format format)
{
    QImage image(512, 512, QImage::Format_Grayscale8);
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            image.scanLine(y)[x] = x % 2 == 0 ? 0 : 255;
    return image.convertToFormat(format);
}

/// A shown view whose label is 256 x 256.
class MovedView : public KeepRatioWidget
{
public:
    MovedView() : KeepRatioWidget(nullptr)
    {
        resize(260, 260);
        show();
    }

    void moveTo(const QString &screen)
    {
        for (QScreen *each : QGuiApplication::screens())
            if (each->name() == screen)
                windowHandle()->setScreen(each);
        ASSERT_EQ(windowHandle()->screen()->name(), screen);
    }

    [[nodiscard]] QImage shown() const { return findChild<QLabel *>()->pixmap(Qt::ReturnByValue).toImage(); }
};

} // namespace

class PictureOnTwoScreens : public testing::TestWithParam<QImage::Format>
{
};

TEST_P(PictureOnTwoScreens, has_the_pixels_of_the_one_that_it_is_on)
{
    const QImage picture = stripes(GetParam());
    MovedView view;
    QImage image = picture;
    view.setImage(image);
    ASSERT_EQ(view.shown().size(), QSize(256, 256));
    for (int times = 0; times < 2; ++times) {
        view.moveTo("sharp");
        QImage sharp = view.shown().convertToFormat(GetParam());
        EXPECT_EQ(sharp.devicePixelRatio(), 2);
        sharp.setDevicePixelRatio(1);
        EXPECT_EQ(sharp, picture);
        view.moveTo("plain");
        EXPECT_EQ(view.shown().size(), QSize(256, 256));
        EXPECT_EQ(view.shown().devicePixelRatio(), 1);
    }
}

INSTANTIATE_TEST_SUITE_P(KeepRatio, PictureOnTwoScreens,
                         testing::Values(QImage::Format_Grayscale8, QImage::Format_RGB32));

TEST(PictureOnASharpScreen, keeps_its_colour_space)
{
    MovedView view;
    view.moveTo("sharp");
    QImage image = stripes(QImage::Format_Grayscale8);
    image.setColorSpace(QColorSpace::SRgb);
    view.setImage(image);
    EXPECT_EQ(image.colorSpace(), QColorSpace(QColorSpace::SRgb));
    EXPECT_EQ(image.format(), QImage::Format_Grayscale8);
}
