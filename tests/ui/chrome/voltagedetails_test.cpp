#include "tests/support/children.h"
#include "ui/voltagedetails.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QGridLayout>
#include <QLabel>
#include <QPixmap>
#include <QTest>
#include <QTranslator>

namespace {

struct Cell
{
    int row;
    int column;
    const char *name;
    const char *text;
};

const char *const cellStyle = "QLabel {\nfont-size: 14px;\nbackground:#DDDDDD;\n}";
const char *const headingStyle = "QLabel {\nfont-size: 15px;\n}";

constexpr Cell cells[] = {
    {0, 0, "label", "  Voltage    "},
    {0, 1, "label_2", "Function"},
    {0, 2, "label_3", "Suggest"},
    {1, 0, "label_4", "  Vss"},
    {1, 1, "label_5", "Bias voltage applied on the cathode node of PD"},
    {1, 2, "label_6",
     "<html><head/><body><p>\t1T0C: VSS must be postive value, PD current is related to "
     "VSS</p></body></html>"},
    {2, 0, "label_7", "  Vcom"},
    {2, 1, "label_8", "Reserved bias voltage"},
    {2, 2, "label_13", "1T0C: Not used here"},
    {3, 0, "label_11", "  Von"},
    {3, 1, "label_18", "Turn on voltage of TFT"},
    {3, 2, "label_20", "1T0C:Range is from 1V to 15V and 15V is recommended for initial setting"},
    {4, 0, "label_12", "  Voff"},
    {4, 1, "label_19", "Turn off voltage of TFT"},
    {4, 2, "label_21", "1T0C:Range is from -1V to -15V and -15V is recommended for initial setting      "}};

} // namespace

TEST(VoltageDetails, each_cell_stands_at_its_place_with_its_text_and_style)
{
    const VoltageDetails dialog(nullptr);
    const auto *grid = dialog.findChild<QGridLayout *>(QStringLiteral("gridLayout"));
    ASSERT_NE(grid, nullptr);
    for (const Cell &cell : cells) {
        const auto *label = getChild<QLabel>(dialog, cell.name);
        const auto *item = grid->itemAtPosition(cell.row, cell.column);
        ASSERT_NE(item, nullptr) << cell.name;
        EXPECT_EQ(item->widget(), label) << cell.name;
        EXPECT_EQ(label->text().toStdString(), cell.text);
        EXPECT_EQ(label->styleSheet().toStdString(), cellStyle) << cell.name;
    }
}

TEST(VoltageDetails, the_grid_has_five_rows_and_three_columns_in_its_own_widget)
{
    const VoltageDetails dialog(nullptr);
    const auto *widget = getChild<QWidget>(dialog, "widget");
    EXPECT_EQ(widget->styleSheet(), QStringLiteral("QLabel {\nfont-size: 14px;\n}"));
    const auto *grid = qobject_cast<QGridLayout *>(widget->layout());
    ASSERT_NE(grid, nullptr);
    EXPECT_EQ(grid->objectName(), QStringLiteral("gridLayout"));
    EXPECT_EQ(grid->rowCount(), 5);
    EXPECT_EQ(grid->columnCount(), 3);
    EXPECT_EQ(grid->count(), 15);
}

TEST(VoltageDetails, the_title_and_the_headings_are_as_they_should_be)
{
    const VoltageDetails dialog(nullptr);
    EXPECT_EQ(dialog.windowTitle(), QStringLiteral("VoltageDetails"));
    EXPECT_EQ(getChild<QLabel>(dialog, "label_24")->text(), QStringLiteral("Description:"));
    EXPECT_EQ(getChild<QLabel>(dialog, "label_25")->text(), QStringLiteral("Diagram:"));
    EXPECT_EQ(getChild<QLabel>(dialog, "label_24")->styleSheet().toStdString(), headingStyle);
    EXPECT_EQ(getChild<QLabel>(dialog, "label_25")->styleSheet().toStdString(), headingStyle);
}

TEST(VoltageDetails, the_two_diagrams_are_border_images_of_empty_labels)
{
    const VoltageDetails dialog(nullptr);
    EXPECT_EQ(getChild<QLabel>(dialog, "label_22")->text(), QString());
    EXPECT_EQ(getChild<QLabel>(dialog, "label_23")->text(), QString());
    EXPECT_EQ(getChild<QLabel>(dialog, "label_22")->styleSheet(),
              QStringLiteral("border-image: url(:/image/image_resource/v1.png);"));
    EXPECT_EQ(getChild<QLabel>(dialog, "label_23")->styleSheet(),
              QStringLiteral("border-image: url(:/image/image_resource/v2.png);"));
}

TEST(VoltageDetails, both_diagrams_are_in_the_program)
{
    EXPECT_FALSE(QPixmap(QStringLiteral(":/image/image_resource/v1.png")).isNull());
    EXPECT_FALSE(QPixmap(QStringLiteral(":/image/image_resource/v2.png")).isNull());
}

TEST(VoltageDetails, the_diagrams_keep_their_shape_when_the_dialog_grows)
{
    VoltageDetails dialog(nullptr);
    dialog.resize(1600, 1000);
    dialog.show();
    EXPECT_EQ(getChild<QLabel>(dialog, "label_22")->size(), QSize(480, 320));
    EXPECT_EQ(getChild<QLabel>(dialog, "label_23")->size(), QSize(480, 320));
}

TEST(VoltageDetails, everything_stands_from_top_to_bottom_and_the_diagrams_side_by_side)
{
    VoltageDetails dialog(nullptr);
    dialog.show();
    const auto placeOf = [&dialog](const char *name) {
        const auto *widget = getChild<QWidget>(dialog, name);
        return QRect(widget->mapTo(&dialog, QPoint()), widget->size());
    };
    EXPECT_LT(placeOf("label_24").bottom(), placeOf("widget").top());
    EXPECT_LT(placeOf("widget").bottom(), placeOf("label_25").top());
    EXPECT_LT(placeOf("label_25").bottom(), placeOf("label_22").top());
    EXPECT_EQ(placeOf("label_22").top(), placeOf("label_23").top());
    EXPECT_LT(placeOf("label_22").right(), placeOf("label_23").left());
    EXPECT_TRUE(dialog.rect().contains(placeOf("label_23")));
}

TEST(VoltageDetails, no_text_is_cut_off)
{
    VoltageDetails dialog(nullptr);
    dialog.show();
    const auto labels = getChild<QWidget>(dialog, "widget")->findChildren<QLabel *>();
    for (const QLabel *label : labels)
        EXPECT_GE(label->width(), label->sizeHint().width()) << qPrintable(label->objectName());
}

TEST(VoltageDetails, its_texts_can_be_translated_in_its_own_context)
{
    struct Translator : QTranslator
    {
        [[nodiscard]] bool isEmpty() const override { return false; }
        QString translate(const char *context, const char *text, const char *, int) const override
        {
            if (qstrcmp(context, "VoltageDetails") != 0)
                return {};
            return QStringLiteral("<%1>").arg(QString::fromUtf8(text));
        }
    } translator;
    QCoreApplication::installTranslator(&translator);
    const VoltageDetails dialog(nullptr);
    EXPECT_EQ(dialog.windowTitle(), QStringLiteral("<VoltageDetails>"));
    EXPECT_EQ(getChild<QLabel>(dialog, "label_3")->text(), QStringLiteral("<Suggest>"));
}

TEST(VoltageDetails, escape_closes_it)
{
    VoltageDetails dialog(nullptr);
    dialog.show();
    QTest::keyClick(&dialog, Qt::Key_Escape);
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(dialog.result(), QDialog::Rejected);
}
