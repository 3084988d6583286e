#include "tests/support/children.h"
#include "ui/chrome/screenroom.h"

#include <gtest/gtest.h>

#include <QDialog>
#include <QLineEdit>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QTest>
#include <QVBoxLayout>

namespace {

/// Ten fields of 400 x 60 with nothing between them.
class TallDialog : public QDialog
{
public:
    TallDialog()
    {
        auto *layout = new QVBoxLayout(this);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->setSpacing(0);
        for (int i = 0; i < 10; ++i) {
            auto *field = new QLineEdit;
            field->setObjectName(QStringLiteral("field%1").arg(i));
            field->setFixedSize(400, 60);
            layout->addWidget(field);
        }
        resize(400, 600);
    }

    [[nodiscard]] QLineEdit *field(int number) const
    {
        return getChild<QLineEdit>(*this, qPrintable(QStringLiteral("field%1").arg(number)));
    }
    /// Whether all of a field can be seen.
    [[nodiscard]] bool shows(int number) const
    {
        return field(number)->visibleRegion().boundingRect() == field(number)->rect();
    }
};

} // namespace

TEST(ScreenRoom, a_dialog_for_which_there_is_room_stays_as_it_is)
{
    TallDialog dialog;
    ScreenRoom::keepWithin(dialog, QSize(400, 600));
    EXPECT_EQ(dialog.size(), QSize(400, 600));
    EXPECT_EQ(dialog.findChild<QScrollArea *>(), nullptr);
    EXPECT_EQ(dialog.field(0)->parentWidget(), &dialog);
}

TEST(ScreenRoom, a_dialog_that_is_larger_is_scrolled_to_the_field_that_has_the_focus)
{
    TallDialog dialog;
    ScreenRoom::keepWithin(dialog, QSize(1000, 300));
    dialog.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
    EXPECT_EQ(dialog.height(), 300);
    EXPECT_LT(dialog.width(), 1000);
    const auto *area = dialog.findChild<QScrollArea *>();
    ASSERT_NE(area, nullptr);
    EXPECT_FALSE(area->horizontalScrollBar()->isVisible()) << "there is room for the width";
    EXPECT_TRUE(dialog.shows(0));
    EXPECT_FALSE(dialog.shows(9));
    dialog.field(0)->setFocus();
    for (int i = 0; i < 9; ++i)
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Tab);
    EXPECT_EQ(dialog.focusWidget(), dialog.field(9));
    EXPECT_TRUE(dialog.shows(9));
}

TEST(ScreenRoom, a_dialog_that_opens_small_but_needs_more_is_larger_too)
{
    TallDialog dialog;
    dialog.resize(100, 100);
    ScreenRoom::keepWithin(dialog, QSize(300, 1000));
    EXPECT_EQ(dialog.width(), 300);
    EXPECT_NE(dialog.findChild<QScrollArea *>(), nullptr);
}

TEST(ScreenRoom, the_room_is_the_screens_less_a_frame)
{
    const QDialog dialog;
    const QSize screen = dialog.screen()->availableSize();
    const QSize room = ScreenRoom::of(dialog);
    EXPECT_LE(room.width(), screen.width());
    EXPECT_LT(room.height(), screen.height());
    EXPECT_GT(room.height(), screen.height() - 60);
}
