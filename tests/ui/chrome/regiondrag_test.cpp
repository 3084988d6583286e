#include "ui/chrome/regiondrag.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QMouseEvent>
#include <QSignalSpy>
#include <QTest>
#include <QWidget>

/// A picture of 512 x 512 that counts the presses that reach it.
class DraggedPicture : public testing::Test
{
protected:
    struct Picture : QWidget
    {
        void mousePressEvent(QMouseEvent *) override { ++presses; }
        int presses = 0;
    };

    DraggedPicture()
    {
        picture.resize(512, 512);
        picture.show();
    }

    [[nodiscard]] QList<QRect> regions() const
    {
        QList<QRect> result;
        for (const QVariantList &one : chosen)
            result << one.constFirst().toRect();
        return result;
    }
    [[nodiscard]] bool isBandShown() const
    {
        const auto *band = picture.findChild<QRubberBand *>();
        return band != nullptr && band->isVisible();
    }

    Picture picture;
    std::unique_ptr<RegionDrag> drag = std::make_unique<RegionDrag>(picture);
    QSignalSpy chosen{drag.get(), &RegionDrag::chosen};
};

TEST_F(DraggedPicture, tells_the_part_in_pixels_of_the_frame_from_whichever_corner)
{
    const QRect part(QPoint(200, 40), QPoint(401, 81));
    for (const auto &[from, to] : {std::pair(QPoint(100, 20), QPoint(200, 40)), {{200, 20}, {100, 40}}}) {
        QTest::mousePress(&picture, Qt::LeftButton, {}, from);
        EXPECT_FALSE(isBandShown());
        QTest::mouseMove(&picture, to);
        EXPECT_TRUE(isBandShown());
        QTest::mouseRelease(&picture, Qt::LeftButton, {}, to);
        EXPECT_FALSE(isBandShown());
    }
    EXPECT_EQ(regions(), QList<QRect>({part, part}));
    EXPECT_EQ(picture.presses, 2) << "they reach the picture";
}

TEST_F(DraggedPicture, a_click_is_no_drag)
{
    QTest::mouseClick(&picture, Qt::LeftButton, {}, QPoint(100, 20));
    QTest::mousePress(&picture, Qt::LeftButton, {}, QPoint(100, 20));
    QTest::mouseMove(&picture, QPoint(101, 21));
    QTest::mouseRelease(&picture, Qt::LeftButton, {}, QPoint(101, 21));
    EXPECT_EQ(chosen.size(), 0);
}

TEST_F(DraggedPicture, moves_without_the_button_and_drags_with_another_tell_nothing)
{
    QTest::mouseMove(&picture, QPoint(10, 10));
    QTest::mouseMove(&picture, QPoint(300, 300));
    QTest::mousePress(&picture, Qt::RightButton, {}, QPoint(100, 20));
    QTest::mouseMove(&picture, QPoint(300, 300));
    QTest::mouseRelease(&picture, Qt::RightButton, {}, QPoint(300, 300));
    EXPECT_EQ(chosen.size(), 0);
}

TEST_F(DraggedPicture, another_button_breaks_it_off)
{
    QTest::mousePress(&picture, Qt::LeftButton, {}, QPoint(100, 20));
    QTest::mouseMove(&picture, QPoint(300, 300));
    QMouseEvent other(QEvent::MouseButtonPress, QPointF(300, 300), picture.mapToGlobal(QPointF(300, 300)),
                      Qt::RightButton, Qt::LeftButton | Qt::RightButton, Qt::NoModifier);
    QApplication::sendEvent(&picture, &other);
    EXPECT_FALSE(isBandShown());
    QTest::mouseRelease(&picture, Qt::LeftButton, {}, QPoint(400, 400));
    EXPECT_EQ(chosen.size(), 0);
}

TEST_F(DraggedPicture, the_release_of_another_button_chooses_nothing)
{
    QTest::mousePress(&picture, Qt::LeftButton, {}, QPoint(100, 20));
    QTest::mouseMove(&picture, QPoint(300, 300));
    QTest::mouseRelease(&picture, Qt::RightButton, {}, QPoint(300, 300)); // which was pressed somewhere else
    EXPECT_FALSE(isBandShown());
    QTest::mouseRelease(&picture, Qt::LeftButton, {}, QPoint(300, 300));
    EXPECT_EQ(chosen.size(), 0);
}

TEST_F(DraggedPicture, is_cut_at_the_edges)
{
    QTest::mousePress(&picture, Qt::LeftButton, {}, QPoint(256, 256));
    QTest::mouseMove(&picture, QPoint(2000, -50));
    QTest::mouseRelease(&picture, Qt::LeftButton, {}, QPoint(2000, -50));
    EXPECT_EQ(regions(), QList<QRect>({QRect(QPoint(512, 0), QPoint(1023, 513))}));
}

TEST_F(DraggedPicture, reaches_the_frames_edges_at_every_size)
{
    for (const int side : {100, 511, 700, 1024, 1500, 2048}) {
        picture.resize(side, side);
        chosen.clear();
        QTest::mousePress(&picture, Qt::LeftButton, {}, QPoint(0, side - 1));
        QTest::mouseMove(&picture, QPoint(side - 1, side / 2));
        QTest::mouseRelease(&picture, Qt::LeftButton, {}, QPoint(side - 1, side / 2));
        const int upper = side / 2 * 1024 / side;
        EXPECT_EQ(regions(), QList<QRect>({QRect(QPoint(0, upper), QPoint(1023, 1023))})) << side;
    }
}

TEST_F(DraggedPicture, of_a_picture_larger_than_the_frame_is_what_shows_the_pixels)
{
    picture.resize(2048, 2048);
    QTest::mousePress(&picture, Qt::LeftButton, {}, QPoint(201, 400));
    QTest::mouseMove(&picture, QPoint(400, 801));
    QTest::mouseRelease(&picture, Qt::LeftButton, {}, QPoint(400, 801));
    EXPECT_EQ(regions(), QList<QRect>({QRect(QPoint(100, 200), QPoint(200, 400))}));
}

TEST_F(DraggedPicture, goes_in_the_middle_of_a_drag)
{
    QTest::mousePress(&picture, Qt::LeftButton, {}, QPoint(100, 20));
    QTest::mouseMove(&picture, QPoint(300, 300));
    drag.reset();
    EXPECT_FALSE(isBandShown());
    QTest::mouseMove(&picture, QPoint(310, 310));
    QTest::mouseRelease(&picture, Qt::LeftButton, {}, QPoint(310, 310));
}
