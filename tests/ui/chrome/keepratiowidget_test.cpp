#include "tests/support/debugoutput.h"
#include "ui/keepratiowidget.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QSignalSpy>
#include <QTest>

namespace {

struct Geometry
{
    QSize ratio;
    QSize frame;
    QRect content;
};

void PrintTo(const Geometry &geometry, std::ostream *out)
{
    *out << geometry.ratio.width() << ':' << geometry.ratio.height() << " in " << geometry.frame.width()
         << " x " << geometry.frame.height();
}

QWidget *contentOf(const KeepRatioWidget &view)
{
    return view.findChild<QWidget *>(QString(), Qt::FindDirectChildrenOnly);
}

QLabel *labelOf(const KeepRatioWidget &view)
{
    return view.findChild<QLabel *>();
}

/// QTest takes the point (0, 0) for the middle, so the press is sent as it is.
void press(QWidget *widget, QPointF point, Qt::MouseButton button = Qt::LeftButton,
           QEvent::Type type = QEvent::MouseButtonPress)
{
    QMouseEvent event(type, point, widget->mapToGlobal(point), button, button, Qt::NoModifier);
    QApplication::sendEvent(widget, &event);
}

/// The clicks that were reported, as points.
QList<QPoint> points(const QSignalSpy &clicks)
{
    QList<QPoint> result;
    for (const QVariantList &click : clicks)
        result.append({click.at(0).toInt(), click.at(1).toInt()});
    return result;
}

/// A shown view whose label is 512 x 512.
struct ShownView : KeepRatioWidget
{
    ShownView() : KeepRatioWidget(nullptr)
    {
        resize(516, 516);
        show();
    }
};

} // namespace

class KeepRatioGeometry : public testing::TestWithParam<Geometry>
{
};

TEST_P(KeepRatioGeometry, the_content_is_centred_at_the_ratio)
{
    KeepRatioWidget view(nullptr);
    view.setRatio(GetParam().ratio.width(), GetParam().ratio.height());
    view.resize(GetParam().frame);
    view.show();
    EXPECT_EQ(contentOf(view)->geometry(), GetParam().content);
}

INSTANTIATE_TEST_SUITE_P(KeepRatio, KeepRatioGeometry,
                         testing::Values(Geometry{{1, 1}, {800, 600}, {100, 0, 600, 600}},
                                         Geometry{{1, 1}, {600, 800}, {0, 100, 600, 600}},
                                         Geometry{{1, 1}, {601, 600}, {0, 0, 600, 600}},
                                         Geometry{{1, 1}, {603, 600}, {1, 0, 600, 600}},
                                         Geometry{{1, 1}, {600, 603}, {0, 1, 600, 600}},
                                         Geometry{{1, 1}, {600, 600}, {0, 0, 600, 600}},
                                         Geometry{{847, 209}, {1000, 300}, {0, 27, 1000, 246}},
                                         Geometry{{847, 209}, {847, 209}, {0, 0, 847, 209}},
                                         Geometry{{847, 209}, {1300, 300}, {42, 0, 1215, 300}},
                                         Geometry{{847, 209}, {1215, 300}, {0, 0, 1215, 300}},
                                         Geometry{{847, 209}, {1214, 300}, {0, 0, 1214, 299}}));

TEST(KeepRatioWidget, the_ratio_is_one_to_one_at_first)
{
    KeepRatioWidget view(nullptr);
    view.resize(700, 300);
    view.show();
    EXPECT_EQ(contentOf(view)->geometry(), QRect(200, 0, 300, 300));
}

TEST(KeepRatioWidget, a_new_ratio_takes_effect_at_the_next_resize)
{
    KeepRatioWidget view(nullptr);
    view.resize(400, 400);
    view.show();
    view.setRatio(2, 1);
    EXPECT_EQ(contentOf(view)->geometry(), QRect(0, 0, 400, 400));
    view.resize(400, 401);
    EXPECT_EQ(contentOf(view)->geometry(), QRect(0, 100, 400, 200));
}

TEST(KeepRatioWidget, the_label_fills_the_content_but_for_two_pixels_on_each_side)
{
    const ShownView view;
    EXPECT_EQ(labelOf(view)->geometry(), QRect(2, 2, 512, 512));
    EXPECT_EQ(labelOf(view)->parentWidget(), contentOf(view));
    const auto *layout = qobject_cast<QHBoxLayout *>(contentOf(view)->layout());
    ASSERT_NE(layout, nullptr);
    EXPECT_EQ(layout->contentsMargins(), QMargins(2, 2, 2, 2));
    EXPECT_EQ(layout->count(), 1);
}

TEST(KeepRatioWidget, it_is_a_frame_inside_its_parent_and_no_window)
{
    QWidget parent;
    const KeepRatioWidget view(&parent);
    EXPECT_EQ(view.parentWidget(), &parent);
    EXPECT_FALSE(view.isWindow());
    EXPECT_EQ(contentOf(view)->parentWidget(), &view);
}

TEST(KeepRatioWidget, making_one_tells_the_size_of_its_content)
{
    const DebugOutput debug;
    const KeepRatioWidget view(nullptr);
    const QSize size = contentOf(view)->size();
    EXPECT_EQ(debug.messages(),
              QStringList(QStringLiteral("QSize(%1, %2)").arg(size.width()).arg(size.height())));
}

TEST(KeepRatioClick, the_corners_of_the_label_give_0_and_1022)
{
    const ShownView view;
    QSignalSpy clicks(&view, &KeepRatioWidget::click_coor);
    press(labelOf(view), {0, 0});
    press(labelOf(view), {511, 511});
    press(labelOf(view), {256, 1});
    EXPECT_EQ(points(clicks), (QList<QPoint>{{0, 0}, {1022, 1022}, {512, 2}}));
}

TEST(KeepRatioClick, each_axis_is_mapped_by_the_size_of_the_label_in_it)
{
    KeepRatioWidget view(nullptr);
    view.setRatio(3, 1);
    view.resize(904, 1000);
    view.show();
    ASSERT_EQ(labelOf(view)->size(), QSize(900, 297));
    QSignalSpy clicks(&view, &KeepRatioWidget::click_coor);
    press(labelOf(view), {899, 296});
    press(labelOf(view), {300, 100});
    EXPECT_EQ(points(clicks), (QList<QPoint>{{1022, 1020}, {341, 344}}));
}

TEST(KeepRatioClick, every_pixel_of_the_label_stays_within_0_and_1023)
{
    const ShownView view;
    QSignalSpy clicks(&view, &KeepRatioWidget::click_coor);
    for (int x = 0; x < 512; ++x)
        press(labelOf(view), QPointF(x, 511 - x));
    ASSERT_EQ(clicks.size(), 512);
    for (int x = 0; x < 512; ++x)
        ASSERT_EQ(points(clicks).at(x), QPoint(2 * x, 2 * (511 - x)));
}

TEST(KeepRatioClick, other_buttons_releases_double_clicks_and_moves_emit_nothing)
{
    const ShownView view;
    QLabel *label = labelOf(view);
    QSignalSpy clicks(&view, &KeepRatioWidget::click_coor);
    press(label, {5, 5}, Qt::RightButton);
    press(label, {5, 5}, Qt::MiddleButton);
    press(label, {5, 5}, Qt::LeftButton, QEvent::MouseButtonRelease);
    press(label, {5, 5}, Qt::LeftButton, QEvent::MouseButtonDblClick);
    press(label, {9, 9}, Qt::LeftButton, QEvent::MouseMove);
    EXPECT_TRUE(clicks.isEmpty());
}

TEST(KeepRatioClick, between_two_pixels_the_coordinate_is_rounded_down)
{
    const ShownView view;
    QSignalSpy clicks(&view, &KeepRatioWidget::click_coor);
    press(labelOf(view), {0.49, 0.5});
    press(labelOf(view), {511.99, 511.5});
    EXPECT_EQ(points(clicks), (QList<QPoint>{{0, 1}, {1023, 1023}}));
}

TEST(KeepRatioClick, a_press_beside_the_label_emits_nothing)
{
    KeepRatioWidget view(nullptr);
    view.resize(800, 600);
    view.show();
    QSignalSpy clicks(&view, &KeepRatioWidget::click_coor);
    press(&view, {20, 300});
    press(contentOf(view), {1, 300});
    EXPECT_TRUE(clicks.isEmpty());
}

TEST(KeepRatioClick, a_label_without_area_tells_none)
{
    ShownView view;
    view.resize(4, 4);
    ASSERT_TRUE(labelOf(view)->size().isEmpty());
    const QSignalSpy clicks(&view, &KeepRatioWidget::click_coor);
    press(labelOf(view), {0, 0});
    EXPECT_TRUE(clicks.isEmpty());
}

TEST(KeepRatioClick, the_label_still_receives_the_press)
{
    struct Listener : QObject
    {
        int presses = 0;
        bool eventFilter(QObject *, QEvent *event) override
        {
            presses += event->type() == QEvent::MouseButtonPress;
            return false;
        }
    } listener;
    const ShownView view;
    // The filter installed first runs last.
    labelOf(view)->removeEventFilter(const_cast<ShownView *>(&view));
    labelOf(view)->installEventFilter(&listener);
    labelOf(view)->installEventFilter(const_cast<ShownView *>(&view));
    press(labelOf(view), {5, 5});
    EXPECT_EQ(listener.presses, 1);
}

TEST(KeepRatioWidget, arrow_keys_go_on_from_the_place_clicked_last)
{
    ShownView view;
    const QSignalSpy clicks(&view, &KeepRatioWidget::click_coor);
    press(labelOf(view), {256, 128});
    for (const int key : {Qt::Key_Right, Qt::Key_Down, Qt::Key_Left, Qt::Key_Up})
        QTest::keyClick(&view, static_cast<Qt::Key>(key));
    QTest::keyClick(&view, Qt::Key_Up, Qt::ShiftModifier);
    EXPECT_EQ(points(clicks),
              QList<QPoint>({{512, 256}, {513, 256}, {513, 257}, {512, 257}, {512, 256}, {512, 240}}));
}

TEST(KeepRatioWidget, arrow_keys_stop_at_the_edges_of_the_picture)
{
    ShownView view;
    press(labelOf(view), {0, 511});
    const QSignalSpy clicks(&view, &KeepRatioWidget::click_coor);
    for (const int key : {Qt::Key_Left, Qt::Key_Down, Qt::Key_Down})
        QTest::keyClick(&view, static_cast<Qt::Key>(key));
    EXPECT_EQ(points(clicks), QList<QPoint>({{0, 1022}, {0, 1023}, {0, 1023}}));
}
