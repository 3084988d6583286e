#include "tests/ui/mainwindow/mainwindowtest.h"

#include <array>

class MainWindowNavigation : public MainWindowTest
{
protected:
    [[nodiscard]] bool itemHasIcon(int row, const char *name) const
    {
        const QString file = QStringLiteral(":/image/image_resource/%1").arg(QString::fromLatin1(name));
        const QIcon icon = find<QListWidget>("listWidget")->item(row)->icon();
        return icon.pixmap(20, 20).toImage() == QIcon(file).pixmap(20, 20).toImage();
    }
};

TEST_F(MainWindowNavigation, the_list_switches_pages_and_marks_the_chosen_one_by_its_icon)
{
    struct Row
    {
        const char *text;
        const char *idleIcon;
        const char *selectedIcon;
        const char *page;
    };
    const std::array<Row, 5> rows{{
        {"System", "control_1.png", "control_2.png", "page_1"},
        {"Settings", "current_1.png", "current_2.png", "page_2"},
        {"Display", "calibration_1.png", "calibration_2.png", "page"},
        {"Save", "save_table.png", "save_table_1.png", "page_4"},
        {"About", "about_1.png", "about_2.png", "page_5"},
    }};
    open();
    auto *list = find<QListWidget>("listWidget");
    ASSERT_EQ(list->count(), static_cast<int>(rows.size()));
    EXPECT_EQ(list->focusPolicy(), Qt::NoFocus);
    EXPECT_EQ(list->currentRow(), 0);
    EXPECT_TRUE(itemHasIcon(0, "control_2.png"));

    for (int chosen : {3, 1, 4, 2, 0}) {
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                          list->visualItemRect(list->item(chosen)).center());
        EXPECT_EQ(find<QStackedWidget>("stackedWidget")->currentWidget()->objectName(),
                  rows[static_cast<std::size_t>(chosen)].page);
        for (int row = 0; row < list->count(); ++row) {
            const Row &expected = rows[static_cast<std::size_t>(row)];
            EXPECT_EQ(list->item(row)->text(), expected.text);
            EXPECT_EQ(list->item(row)->font().weight(), QFont::Bold);
            EXPECT_TRUE(itemHasIcon(row, row == chosen ? expected.selectedIcon : expected.idleIcon))
                << row << " while " << chosen << " is chosen";
        }
    }
}

TEST_F(MainWindowNavigation, a_press_beside_the_items_leaves_the_page_marked)
{
    open();
    auto *list = find<QListWidget>("listWidget");
    list->setCurrentRow(2);
    const QRect last = list->visualItemRect(list->item(4));
    for (const QPoint beside :
         {last.center() + QPoint(0, 2 * last.height()), last.bottomLeft() + QPoint(30, 2)}) {
        ASSERT_EQ(list->itemAt(beside), nullptr);
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, beside);
        EXPECT_TRUE(list->item(2)->isSelected());
        EXPECT_EQ(list->currentRow(), 2);
        EXPECT_TRUE(itemHasIcon(2, "calibration_2.png"));
        EXPECT_EQ(find<QStackedWidget>("stackedWidget")->currentWidget()->objectName(), "page");
    }
}
