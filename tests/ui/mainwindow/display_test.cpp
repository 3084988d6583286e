#include "tests/ui/mainwindow/mainwindowtest.h"

#include "ui/mainwindow/mainwindow_rules.h"

#include <QTransform>

class MainWindowDisplay : public MainWindowTest
{
protected:
    /// What the image view shows of a picture.
    [[nodiscard]] QImage shown(const QImage &picture)
    {
        window->receive_displayImage(picture);
        return shownNow();
    }
    [[nodiscard]] QImage shownNow() const
    {
        return find<QWidget>("frame")->findChild<QLabel *>()->pixmap().toImage().convertToFormat(
            QImage::Format_Grayscale8);
    }

    /// The same, if the window turned and mirrored it as given.
    [[nodiscard]] QImage expected(const QImage &picture, double rotation, bool horizontal,
                                  bool vertical) const
    {
        const QSize size = find<QWidget>("frame")->findChild<QLabel *>()->size();
        return picture.transformed(QTransform().rotate(rotation), Qt::SmoothTransformation)
            .mirrored(horizontal, vertical)
            .scaled(size, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    }

    static QImage quadrants()
    {
        QImage picture(1024, 1024, QImage::Format_Grayscale8);
        for (int y = 0; y < 1024; ++y) {
            for (int x = 0; x < 1024; ++x)
                picture.scanLine(y)[x] =
                    static_cast<uchar>(x < 512 ? (y < 512 ? 255 : 60) : (y < 512 ? 140 : 0));
        }
        return picture;
    }

    /// The grey levels in the middle of the four quadrants, row by row; the scaling does not touch those.
    static QList<int> corners(const QImage &picture)
    {
        const int left = picture.width() / 4;
        const int right = picture.width() * 3 / 4;
        const int top = picture.height() / 4;
        const int bottom = picture.height() * 3 / 4;
        return {qGray(picture.pixel(left, top)), qGray(picture.pixel(right, top)),
                qGray(picture.pixel(left, bottom)), qGray(picture.pixel(right, bottom))};
    }
};

TEST_F(MainWindowDisplay, rotate_turns_every_later_picture_by_a_quarter)
{
    open();
    const QImage picture = quadrants();
    EXPECT_EQ(corners(shown(picture)), QList<int>({255, 140, 60, 0}));
    const QList<QList<int>> turns{
        {60, 255, 0, 140}, {0, 60, 140, 255}, {140, 0, 255, 60}, {255, 140, 60, 0}, {60, 255, 0, 140}};
    const QList<double> degrees{90.0, 180.0, 270.0, 360.0, 90.0};
    for (qsizetype i = 0; i < turns.size(); ++i) {
        click("pushButton_rotate");
        EXPECT_EQ(MainWindowInspector::rotation(*window), degrees.at(i));
        EXPECT_EQ(corners(shown(picture)), turns.at(i)) << degrees.at(i);
    }
}

TEST_F(MainWindowDisplay, the_mirror_buttons_toggle_and_combine_with_the_rotation)
{
    open();
    const QImage picture = quadrants();
    click("pushButton_mirrorHorizontal");
    EXPECT_EQ(corners(shown(picture)), QList<int>({140, 255, 0, 60}));
    click("pushButton_mirrorVertical");
    EXPECT_EQ(corners(shown(picture)), QList<int>({0, 60, 140, 255}));
    click("pushButton_mirrorHorizontal");
    EXPECT_EQ(corners(shown(picture)), QList<int>({60, 0, 255, 140}));
    click("pushButton_rotate");
    EXPECT_EQ(corners(shown(picture)), corners(expected(picture, 90.0, false, true)));
    click("pushButton_mirrorVertical");
    EXPECT_EQ(corners(shown(picture)), corners(expected(picture, 90.0, false, false)));
}

TEST_F(MainWindowDisplay, the_buttons_act_on_the_picture_that_stands_still)
{
    openSampling();
    showFrames(1);
    stop();
    (void)shown(quadrants());
    const QString rate = text("label_fps");
    const auto standing = [this] {
        return corners(shownNow());
    };
    click("pushButton_rotate");
    EXPECT_EQ(standing(), QList<int>({60, 255, 0, 140}));
    click("pushButton_mirrorHorizontal");
    EXPECT_EQ(standing(), QList<int>({255, 60, 140, 0}));
    click("pushButton_mirrorVertical");
    EXPECT_EQ(standing(), QList<int>({140, 0, 255, 60}));
    for (int turn = 0; turn < 3; ++turn)
        click("pushButton_rotate");
    EXPECT_EQ(shownNow(), expected(quadrants(), 360.0, true, true)) << "from the picture as it came";
    EXPECT_EQ(text("label_fps"), rate) << "no frame was counted";
}

TEST_F(MainWindowDisplay, without_a_picture_the_buttons_show_none)
{
    open();
    for (const char *name : {"pushButton_rotate", "pushButton_mirrorHorizontal", "pushButton_mirrorVertical"})
        click(name);
    EXPECT_TRUE(find<QWidget>("frame")->findChild<QLabel *>()->pixmap().isNull());
}

TEST_F(MainWindowDisplay, the_orientation_leaves_the_recorded_picture_alone)
{
    openSampling();
    click("pushButton_rotate");
    click("pushButton_mirrorHorizontal");
    find<QLineEdit>("lineEdit_savename")->setText("plain");
    click("checkBox_picture");
    click("pushButton_save");
    QImage emitted;
    QObject::connect(&pipeline(), &ProcessImage::sendImagetoMain, window.get(),
                     [&](const QImage &image) { emitted = image.copy(); });
    showFrames(1, 4096 + 500000);
    const QImage recorded(folder.filePath("Logs/plain/plain_pic1.png"));
    ASSERT_FALSE(recorded.isNull());
    EXPECT_EQ(recorded.convertToFormat(QImage::Format_Grayscale8), emitted);
}
