#include "ui/chrome/availability.h"

#include <gtest/gtest.h>

#include <QPushButton>
#include <QTest>
#include <QVBoxLayout>

/// A window with three buttons, the second with the focus.
class ControlAvailability : public testing::Test
{
protected:
    ControlAvailability()
    {
        auto *layout = new QVBoxLayout(&window);
        for (QPushButton *button : {first, second, third})
            layout->addWidget(button);
        window.show();
        second->setToolTip("What it does");
        second->setFocus();
    }

    [[nodiscard]] const QWidget *focus() const { return window.focusWidget(); }

    QWidget window;
    QPushButton *first = new QPushButton;
    QPushButton *second = new QPushButton;
    QPushButton *third = new QPushButton;
};

TEST_F(ControlAvailability, what_cannot_be_used_tells_what_it_does_and_why_it_cannot)
{
    Availability::withhold(*second, "Not now");
    EXPECT_FALSE(second->isEnabled());
    EXPECT_EQ(second->toolTip(), "What it does\nNot now");
    Availability::withhold(*second, "Not yet");
    EXPECT_EQ(second->toolTip(), "What it does\nNot yet");
    Availability::grant(*second);
    EXPECT_TRUE(second->isEnabled());
    EXPECT_EQ(second->toolTip(), "What it does");
}

TEST_F(ControlAvailability, what_is_usable_stays_as_it_is)
{
    Availability::grant(*second);
    EXPECT_EQ(second->toolTip(), "What it does");
    EXPECT_EQ(focus(), second);
}

TEST_F(ControlAvailability, the_focus_comes_back)
{
    Availability::withhold(*second, "Not now");
    EXPECT_EQ(focus(), third);
    Availability::grant(*second);
    EXPECT_EQ(focus(), second);
}

TEST_F(ControlAvailability, the_focus_stays_where_the_operator_moved_it)
{
    Availability::withhold(*second, "Not now");
    first->setFocus();
    Availability::grant(*second);
    EXPECT_EQ(focus(), first);
}

TEST_F(ControlAvailability, the_focus_is_not_taken_by_what_did_not_have_it)
{
    Availability::withhold(*first, "Not now");
    third->setFocus();
    Availability::grant(*first);
    EXPECT_EQ(focus(), third);
}
