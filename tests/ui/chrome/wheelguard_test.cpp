#include "tests/support/wheel.h"
#include "ui/chrome/wheelguard.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QScrollArea>
#include <QScrollBar>
#include <QSlider>
#include <QSpinBox>
#include <QTest>
#include <QVBoxLayout>

/// A page that is longer than its window, with a field of every kind on it.
class Wheel : public testing::Test
{
protected:
    Wheel()
    {
        auto *page = new QWidget;
        page->setMinimumHeight(2000);
        auto *layout = new QVBoxLayout(page);
        layout->setAlignment(Qt::AlignTop);
        list->addItems({"a", "b", "c"});
        list->setCurrentIndex(1);
        editable->setEditable(true);
        editable->addItems({"1", "2", "3"});
        editable->setCurrentIndex(1);
        number->setValue(50);
        slider->setValue(50);
        for (QWidget *field : std::initializer_list<QWidget *>{list, editable, number, slider})
            layout->addWidget(field);
        window.setWidget(page);
        window.resize(300, 200);
        new WheelGuard(window);
        window.show();
    }

    [[nodiscard]] QList<int> values() const
    {
        return {list->currentIndex(), editable->currentIndex(), number->value(), slider->value()};
    }

    QComboBox *list = new QComboBox;
    QComboBox *editable = new QComboBox;
    QSpinBox *number = new QSpinBox;
    QSlider *slider = new QSlider(Qt::Horizontal);
    QScrollArea window;
};

TEST_F(Wheel, over_a_field_without_the_focus_is_not_taken_and_changes_nothing)
{
    window.setFocus();
    for (QWidget *field : std::initializer_list<QWidget *>{list, editable, number, slider}) {
        EXPECT_FALSE(turnWheel(field, -120)) << field->metaObject()->className();
        EXPECT_FALSE(field->hasFocus()) << field->metaObject()->className();
    }
    EXPECT_EQ(values(), QList<int>({1, 1, 50, 50}));
}

TEST_F(Wheel, over_a_scroll_bar_scrolls)
{
    window.setFocus();
    EXPECT_TRUE(turnWheel(window.verticalScrollBar(), -120));
    EXPECT_GT(window.verticalScrollBar()->value(), 0);
}

TEST_F(Wheel, over_the_field_with_the_focus_changes_its_value)
{
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    for (QWidget *field : std::initializer_list<QWidget *>{list, editable, number, slider}) {
        field->setFocus();
        EXPECT_TRUE(turnWheel(field, -120));
    }
    EXPECT_EQ(list->currentIndex(), 2);
    EXPECT_EQ(editable->currentIndex(), 2);
    EXPECT_EQ(number->value(), 49);
    EXPECT_NE(slider->value(), 50);
}
