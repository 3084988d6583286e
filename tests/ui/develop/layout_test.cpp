#include "tests/ui/develop/dialog.h"

#include <QApplication>
#include <QFormLayout>
#include <QGroupBox>
#include <QMetaMethod>
#include <QTest>

namespace {

const QStringList rails{
    QStringLiteral("VOUT0"),   QStringLiteral("VOUT1"),   QStringLiteral("VOUT2"), QStringLiteral("VOUT3"),
    QStringLiteral("MUX_H"),   QStringLiteral("MUX_L"),   QStringLiteral("VGG"),   QStringLiteral("VEE"),
    QStringLiteral("VGL1_CK"), QStringLiteral("TFT_VGL"), QStringLiteral("VDD"),   QStringLiteral("VIN"),
    QStringLiteral("VGH_CK"),  QStringLiteral("VGL_CK"),  QStringLiteral("VSS"),   QStringLiteral("VCOM")};

struct Timing
{
    const char *name;
    const char *text;
};

constexpr Timing timings[] = {
    {"frame_period", "158102800"}, {"frame_head", "1000"},     {"frame_tail", "1000"},
    {"clk_cycle", "612800"},       {"clk_high", "306400"},     {"out_gap", "1000"},
    {"outp_ck_gap", "1000"},       {"ck_high", "150200"},      {"ck_gap", "3000"},
    {"ck_outn_gap", "1000"},       {"ckp_mux_gap", "1000"},    {"mux_high", "33300"},
    {"mux_gap", "5000"},           {"mux_ckn_gap", "1000"},    {"adc_start_delay", "300"},
    {"adc_intA", "16600"},         {"adc_end_delay", "16400"}, {"adc_intB", "21700"}};

class DevelopLayout : public testing::Test
{
protected:
    DevelopLayout() { dialog.open(); }

    QRect placeOf(const QWidget *widget)
    {
        return {widget->mapTo(&dialog.window(), QPoint()), widget->size()};
    }
    QLabel *captionBeside(int number)
    {
        for (const auto *form : dialog.window().findChildren<QFormLayout *>()) {
            if (auto *label = form->labelForField(dialog.field(number)))
                return qobject_cast<QLabel *>(label);
        }
        return nullptr;
    }

    Dialog dialog;
};

} // namespace

TEST_F(DevelopLayout, it_opens_at_940_by_615_with_a_title)
{
    EXPECT_EQ(dialog.window().size(), QSize(940, 615));
    EXPECT_FALSE(dialog.window().windowTitle().isEmpty());
}

TEST_F(DevelopLayout, it_needs_no_more_room_than_it_opens_with)
{
    dialog.window().show();
    EXPECT_EQ(dialog.window().size(), QSize(940, 615));
    EXPECT_LE(dialog.window().minimumSizeHint().height(), 615);
    EXPECT_LE(dialog.window().minimumSizeHint().width(), 940);
}

TEST_F(DevelopLayout, every_caption_is_as_it_should_be)
{
    const QList<std::pair<const char *, QString>> captions{
        {"pushButton_set_adc", QStringLiteral("Set ADC")},
        {"pushButton_set_mode", QStringLiteral("Set Mode")},
        {"pushButton_ver_readback", QStringLiteral("版本号回读")},
        {"pushButton_parm_readback", QStringLiteral("参数回读")},
        {"pushButton_eep_readback", QStringLiteral("EEP回读")},
        {"pushButton_send_eep", QStringLiteral("下发EEP参数")},
        {"pushButton_write_eep", QStringLiteral("写入EEP")},
        {"pushButton_read_eep", QStringLiteral("读取EEP")},
        {"pushButton_init_eep", QStringLiteral("初始化EEP")},
        {"pushButton_set_voltage", QStringLiteral("设置电压")},
        {"pushButton_cal_time", QStringLiteral("计算时序")},
        {"pushButton_set_time", QStringLiteral("设置时序")},
        {"radioButton_1k", QStringLiteral("QV 1K")},
        {"radioButton_256", QStringLiteral("QV 256")},
    };
    for (const auto &[name, caption] : captions)
        EXPECT_EQ(getChild<QAbstractButton>(dialog.window(), name)->text(), caption) << name;
    EXPECT_EQ(dialog.version(), QStringLiteral("00.00.00.00"));
}

TEST_F(DevelopLayout, the_four_lists_have_their_captions_and_items_and_take_no_focus)
{
    const QList<std::tuple<const char *, QString, QStringList>> lists{
        {"comboBox_ope",
         QStringLiteral("Ope  Format"),
         {QStringLiteral("A only"), QStringLiteral("A/B"), QStringLiteral("A+B"), QStringLiteral("(A+B)/2")}},
        {"comboBox_data",
         QStringLiteral("Data Format"),
         {QStringLiteral("20 bit"), QStringLiteral("16 bit")}},
        {"comboBox_mode", QStringLiteral("Test  Mode"), {QStringLiteral("off"), QStringLiteral("on")}},
        {"comboBox_pcrange",
         QStringLiteral("pC    Range"),
         {QStringLiteral("25"), QStringLiteral("19"), QStringLiteral("16"), QStringLiteral("13"),
          QStringLiteral("10"), QStringLiteral("7"), QStringLiteral("4")}},
    };
    const auto *form = dialog.window().findChild<QFormLayout *>(QStringLiteral("formLayout_adc"));
    ASSERT_NE(form, nullptr);
    for (const auto &[name, caption, items] : lists) {
        QComboBox *list = dialog.list(name);
        QStringList texts;
        for (int i = 0; i < list->count(); ++i)
            texts << list->itemText(i);
        EXPECT_EQ(texts, items) << name;
        EXPECT_EQ(list->currentIndex(), 0) << name;
        EXPECT_EQ(list->focusPolicy(), Qt::NoFocus) << name;
        EXPECT_EQ(qobject_cast<QLabel *>(form->labelForField(list))->text(), caption) << name;
    }
}

TEST_F(DevelopLayout, the_mode_group_starts_with_the_full_array_checked)
{
    const auto *group = qobject_cast<QGroupBox *>(dialog.radio("radioButton_1k")->parentWidget());
    ASSERT_NE(group, nullptr);
    EXPECT_EQ(group->title(), QStringLiteral("Mode"));
    EXPECT_TRUE(dialog.radio("radioButton_1k")->isChecked());
    EXPECT_FALSE(dialog.radio("radioButton_256")->isChecked());
}

TEST_F(DevelopLayout, each_voltage_rail_has_its_caption_beside_its_field)
{
    for (int number = 1; number <= 16; ++number) {
        const QLabel *caption = captionBeside(number);
        ASSERT_NE(caption, nullptr) << number;
        EXPECT_EQ(caption->text(), rails.at(number - 1));
        EXPECT_EQ(caption->objectName(),
                  number == 1 ? QStringLiteral("label") : QStringLiteral("label_%1").arg(number));
        EXPECT_EQ(dialog.text(number), QString());
    }
}

TEST_F(DevelopLayout, each_timing_field_has_its_name_beside_it_and_its_default_in_it)
{
    for (int number = 17; number <= 34; ++number) {
        const QLabel *caption = captionBeside(number);
        ASSERT_NE(caption, nullptr) << number;
        EXPECT_EQ(caption->text(), QLatin1String(timings[number - 17].name));
        EXPECT_EQ(dialog.text(number), QLatin1String(timings[number - 17].text)) << timings[number - 17].name;
    }
}

TEST_F(DevelopLayout, the_eeprom_words_are_numbered_and_empty)
{
    for (int number = 35; number <= 66; ++number) {
        const auto *caption =
            getChild<QLabel>(dialog.window(), qPrintable(QStringLiteral("label_%1").arg(number)));
        EXPECT_EQ(caption->text(), QString::number(number - 34));
        EXPECT_EQ(dialog.text(number), QString());
    }
}

TEST_F(DevelopLayout, the_tabulator_goes_through_the_fields_in_their_order)
{
    dialog.window().show();
    dialog.field(1)->setFocus();
    QStringList visited;
    const QWidget *widget = dialog.field(1);
    do {
        if (qobject_cast<const QLineEdit *>(widget) && (widget->focusPolicy() & Qt::TabFocus))
            visited << widget->objectName();
        widget = widget->nextInFocusChain();
    } while (widget != dialog.field(1));
    QStringList expected;
    for (int number = 1; number <= 66; ++number)
        expected << DialogFields::fieldName(number);
    EXPECT_EQ(visited, expected);
}

TEST_F(DevelopLayout, the_focus_is_on_the_dialog_itself)
{
    dialog.window().show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog.window()));
    EXPECT_EQ(QApplication::focusWidget(), &dialog.window());
}

TEST_F(DevelopLayout, no_button_is_the_default_so_that_return_in_a_field_sends_nothing)
{
    dialog.window().show();
    for (const QPushButton *button : dialog.window().findChildren<QPushButton *>()) {
        EXPECT_FALSE(button->autoDefault()) << qPrintable(button->objectName());
        EXPECT_FALSE(button->isDefault()) << qPrintable(button->objectName());
    }
    dialog.setText(17, QString());
    QTest::keyClick(dialog.field(18), Qt::Key_Return);
    EXPECT_EQ(dialog.text(17), QString());
    EXPECT_TRUE(dialog.window().isVisible());
}

TEST_F(DevelopLayout, everything_is_inside_the_dialog_and_nothing_covers_anything_else)
{
    dialog.window().show();
    QList<QWidget *> widgets;
    for (auto *widget : dialog.window().findChildren<QWidget *>()) {
        if (widget->isVisible() && !qobject_cast<QGroupBox *>(widget) && widget->parentWidget() != nullptr &&
            qobject_cast<QGroupBox *>(widget->parentWidget()))
            widgets << widget;
    }
    ASSERT_GE(widgets.size(), 66 * 2 + 12 + 8);
    for (const QWidget *widget : widgets) {
        EXPECT_TRUE(dialog.window().rect().contains(placeOf(widget))) << qPrintable(widget->objectName());
        for (const QWidget *other : widgets)
            EXPECT_TRUE(other == widget || !placeOf(other).intersects(placeOf(widget)))
                << qPrintable(widget->objectName()) << " and " << qPrintable(other->objectName());
    }
}

TEST_F(DevelopLayout, no_caption_is_cut_off)
{
    dialog.window().show();
    for (const QWidget *widget : dialog.window().findChildren<QWidget *>()) {
        const bool hasCaption =
            qobject_cast<const QLabel *>(widget) || qobject_cast<const QAbstractButton *>(widget);
        EXPECT_TRUE(!hasCaption || widget->width() >= widget->minimumSizeHint().width())
            << qPrintable(widget->objectName());
    }
}

TEST_F(DevelopLayout, the_largest_word_fits_into_every_eeprom_and_timing_field)
{
    dialog.window().show();
    for (int number = 17; number <= 66; ++number) {
        const QLineEdit *field = dialog.field(number);
        EXPECT_GE(field->width(), field->fontMetrics().horizontalAdvance(QStringLiteral("-2147483648")) + 14)
            << number;
    }
}

TEST_F(DevelopLayout, the_slots_come_in_their_order)
{
    const QMetaObject &meta = developwindow::staticMetaObject;
    QStringList names;
    for (int i = meta.methodOffset(); i < meta.methodCount() && names.size() < 12; ++i)
        names << QString::fromLatin1(meta.method(i).methodSignature());
    EXPECT_EQ(names.join(u' '),
              QStringLiteral(
                  "set_adc() ver_readback() parm_readback() set_mode() write_eep() read_eep() init_eep() "
                  "eep_readback() set_voltage() cal_time() set_time() send_eep()"));
}
