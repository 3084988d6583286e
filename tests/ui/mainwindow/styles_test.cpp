#include "tests/ui/mainwindow/mainwindowtest.h"

#include "ui/mainwindow/stylesheets.h"

#include <QRegularExpression>

#include <span>

namespace {

struct Declaration
{
    const char *widget;
    const char *selector; // empty for a style without rules
    const char *text;
};

constexpr Declaration titleBar[]{
    {"centralwidget", "QWidget#centralwidget", "border: 1px solid #CCCCCC"},
    {"centralwidget", "QWidget#centralwidget", "border-radius: 8px"},
    {"centralwidget", "QWidget#centralwidget", "font-family: 'Arial'"},
    {"widget_title", "QWidget#widget_title", "background: #896827"},
    {"widget_title", "QWidget#widget_title", "border-top-left-radius: 8px"},
    {"widget_title", "QWidget#widget_title", "border-top-right-radius: 8px"},
    {"widget_title", "QPushButton:hover", "background: #9A7741"},
    {"label_version", "", "color: white"},
    {"label_version", "", "font-family: 'Arial'"},
    {"widget_battery", "QWidget#widget_battery", "border: 1px solid white"},
    {"label_18", "", "background: white"},
    {"pushButton_close", "QPushButton", "border-top-right-radius: 8px"},
    {"pushButton_close", "QPushButton:hover", "background: red"},
};

constexpr Declaration leftColumn[]{
    {"widget", "QWidget#widget", "background: rgb(240, 243, 246)"},
    {"widget_19", "QWidget#widget_19", "background: rgb(240, 243, 246)"},
    {"frame_orvane", "QLabel", "border-image: url(:/image/image_resource/Orvane.png)"},
    {"frame_orvane", "QLabel", "margin: 2px 12px"},
    {"listWidget", "QListWidget", "outline: 0px"},
    {"listWidget", "QListWidget::item", "padding: 10px"},
    {"listWidget", "QListWidget::item", "border-radius: 5px"},
    {"listWidget", "QListWidget::item", "background: white"},
    {"listWidget", "QListWidget::item", "color: #333333"},
    {"listWidget", "QListWidget::item:hover", "background: #DFDFDD"},
    {"listWidget", "QListWidget::item:selected", "background: #CC896827"},
    {"listWidget", "QListWidget::item:selected", "color: white"},
    {"stackedWidget", "QStackedWidget#stackedWidget", "background: rgba(247, 249, 252, 1)"},
};

constexpr Declaration systemPage[]{
    {"comboBox_port", "QComboBox", "background: white"},
    {"comboBox_port", "QComboBox", "border: 1px solid #8C6927"},
    {"comboBox_port", "QComboBox", "border-radius: 5px"},
    {"comboBox_port", "QComboBox", "height: 20px"},
    {"comboBox_port", "QComboBox", "margin: 3px"},
    {"comboBox_port", "QComboBox::drop-down", "subcontrol-position: right center"},
    {"comboBox_port", "QComboBox::down-arrow", "image: url(:/image/image_resource/down_arrow.png)"},
    {"pushButton_Connect", "QPushButton", "color: white"},
    {"pushButton_Connect", "QPushButton", "background: #896827"},
    {"pushButton_Connect", "QPushButton", "border-radius: 5px"},
    {"pushButton_Connect", "QPushButton:hover", "background: #9A7741"},
    {"textEdit", "QTextEdit", "background: white"},
    {"textEdit", "QTextEdit", "border: none"},
};

constexpr Declaration settingsPage[]{
    {"label_4", "QLabel", "color: #8C6A26"},
    {"label_4", "QLabel", "border-bottom: 1px solid grey"},
    {"widget_14", "QRadioButton", "font-size: 9pt"},
    {"widget_14", "QRadioButton", "background: white"},
    {"widget_14", "QRadioButton", "border: 1px solid #DDDDDD"},
    {"widget_14", "QRadioButton", "border-radius: 5px"},
    {"widget_14", "QRadioButton:hover", "border-color: #CCCCCC"},
    {"widget_14", "QRadioButton::indicator:checked", "width: 12px"},
    {"widget_14", "QRadioButton::indicator:checked", "height: 12px"},
    {"widget_14", "QRadioButton::indicator:unchecked", "border: 2px solid #777777"},
    {"widget_14", "QRadioButton::indicator:unchecked:hover", "border: 2px solid #666666"},
    {"lineEdit_gear", "QLineEdit", "border: 1px solid grey"},
    {"lineEdit_gear", "QLineEdit:hover", "border: 1px solid #666666"},
    {"lineEdit_gear", "QLineEdit:focus", "border: 2px solid #666666"},
    {"volTitle", "QWidget#volTitle", "border-bottom: 1px solid grey"},
    {"label_6", "QLabel", "color: #8C6A26"},
    {"pushButton_voltinfo", "QPushButton", "border-image: url(:/image/image_resource/wenhao.png)"},
    {"pushButton_voltinfo", "QPushButton:hover",
     "border-image: url(:/image/image_resource/wenhao_press.png)"},
    {"pushButton_voltinfo", "QPushButton:pressed",
     "border-image: url(:/image/image_resource/wenhao_press.png)"},
    {"widget_51", "QDoubleSpinBox", "border: 1px solid grey"},
    {"widget_51", "QDoubleSpinBox:hover", "border: 1px solid #666666"},
    {"widget_51", "QDoubleSpinBox:focus", "border: 2px solid #666666"},
    {"pushButton_set", "QPushButton", "color: white"},
    {"pushButton_set", "QPushButton", "background: #896827"},
    {"pushButton_set", "QPushButton", "font-size: 13px"},
    {"pushButton_set", "QPushButton:pressed", "background: #9A7741"},
    {"pushButton_set", "QPushButton:hover", "background: #9A7741"},
    {"pushButton_set", "QPushButton:disabled", "color: #333333"},
    {"pushButton_set", "QPushButton:disabled", "background: #d3d3d3"},
    {"pushButton_set", "QPushButton:disabled", "font-weight: bold"},
};

constexpr Declaration displayPage[]{
    {"label_7", "QLabel", "color: #8C6A26"},
    {"widget_49", "QPushButton", "background: #896827"},
    {"widget_49", "QPushButton", "border-radius: 5px"},
    {"widget_49", "QPushButton:hover", "background: #9A7741"},
    {"doubleSpinBox_contrast", "QDoubleSpinBox", "background: white"},
    {"doubleSpinBox_contrast", "QDoubleSpinBox", "border: 1px solid #8C6927"},
    {"doubleSpinBox_contrast", "QDoubleSpinBox", "border-radius: 5px"},
    {"widget_8", "QPushButton", "background: #CC896827"},
    {"widget_8", "QPushButton:hover", "background: #896827"},
    {"widget_8", "QPushButton:pressed", "background: #896827"},
    {"widget_8", "QPushButton:checked", "background: #d3d3d3"},
    {"widget_8", "QPushButton:checked", "color: #333333"},
    {"widget_8", "QPushButton:disabled", "background: #d3d3d3"},
    {"widget_8", "QPushButton:disabled", "color: #333333"},
    {"progressBar_cali", "QProgressBar", "background: transparent"},
    {"progressBar_cali", "QProgressBar", "border: none"},
    {"progressBar_cali", "QProgressBar", "border-radius: 12px"},
    {"progressBar_cali", "QProgressBar", "color: white"},
    {"progressBar_cali", "QProgressBar", "text-align: center"},
    {"progressBar_cali", "QProgressBar::chunk", "background: #CC896827"},
    {"progressBar_cali", "QProgressBar::chunk", "border-radius: 8px"},
    {"progressBar_cali", "QProgressBar::chunk", "margin: 2px"},
    {"testImage1", "QPushButton:checked", "background: #d3d3d3"},
    {"testImage5", "QPushButton:checked", "color: #333333"},
};

constexpr Declaration savePage[]{
    {"widget_42", "QLineEdit", "background: white"},
    {"widget_42", "QLineEdit", "border: none"},
    {"widget_42", "QLineEdit", "border-bottom: 1px solid #888888"},
    {"widget_42", "QLineEdit", "border-radius: 0px"},
    {"comboBox_saveframes", "QComboBox", "border: 1px solid #8C6927"},
    {"pushButton_savepath", "QPushButton", "image: url(:/image/image_resource/file.png)"},
    {"pushButton_savepath", "QPushButton", "background: #9E9e9e"},
    {"pushButton_savepath", "QPushButton:hover", "background: #666666"},
    {"pushButton_savepath", "QPushButton:pressed", "background: #666666"},
    {"widget_44", "QCheckBox", "color: #444444"},
    {"widget_44", "QCheckBox", "font-size: 13px"},
    {"widget_44", "QCheckBox::indicator", "width: 14px"},
    {"widget_44", "QCheckBox::indicator", "height: 14px"},
    {"widget_44", "QCheckBox::indicator:unchecked", "image: url(:/image/image_resource/checkbox.png)"},
    {"widget_44", "QCheckBox::indicator:checked", "image: url(:/image/image_resource/checkbox-checked.png)"},
    {"pushButton_save", "QPushButton", "background: #CC896827"},
    {"pushButton_save", "QPushButton:hover", "background: #896827"},
    {"label_savestate", "", "font-size: 13px"},
};

/// The declarations under a selector.
QStringList declarations(const QString &style, const QString &selector)
{
    QString body = style;
    if (!selector.isEmpty()) {
        const QRegularExpression rule("(?:^|\\})\\s*" + QRegularExpression::escape(selector) +
                                      "\\s*\\{([^}]*)\\}");
        body = rule.match(style).captured(1);
    }
    QStringList result = body.split(u';', Qt::SkipEmptyParts);
    for (QString &declaration : result)
        declaration = declaration.trimmed();
    return result;
}

} // namespace

class MainWindowStyles : public MainWindowTest
{
protected:
    void expectStyles(std::span<const Declaration> expected) const
    {
        for (const auto &[name, selector, text] : expected) {
            const QString style = find<QWidget>(name)->styleSheet();
            EXPECT_TRUE(declarations(style, selector).contains(text))
                << name << " " << selector << " lacks " << text;
        }
    }
};

TEST_F(MainWindowStyles, the_window_has_one_font_and_starts_idle_with_a_full_gauge)
{
    open();
    EXPECT_EQ(window->styleSheet(), "font-family: 'Arial';");
    EXPECT_EQ(button("pushButton_sample")->styleSheet(), StyleSheets::playIdle);
    EXPECT_EQ(find<QWidget>("battery_color")->styleSheet(), StyleSheets::batteryFull);
}

TEST_F(MainWindowStyles, the_title_bar_is_white_on_brown_with_rounded_corners)
{
    open();
    expectStyles(titleBar);
}

TEST_F(MainWindowStyles, the_left_column_shows_the_chosen_page_in_brown)
{
    open();
    expectStyles(leftColumn);
}

TEST_F(MainWindowStyles, the_system_page_is_white_and_brown)
{
    open();
    expectStyles(systemPage);
}

TEST_F(MainWindowStyles, the_settings_page_marks_the_chosen_range_and_greys_what_cannot_be_pressed)
{
    open();
    expectStyles(settingsPage);
    const QString style = find<QWidget>("widget_14")->styleSheet();
    const QString ring =
        declarations(style, "QRadioButton::indicator:checked").filter("qradialgradient").value(0);
    EXPECT_TRUE(ring.contains("#8c6927")) << qPrintable(ring);
}

TEST_F(MainWindowStyles, the_display_page_greys_what_is_pressed_in)
{
    open();
    expectStyles(displayPage);
}

TEST_F(MainWindowStyles, the_save_page_has_fields_with_a_bottom_rule_only)
{
    open();
    expectStyles(savePage);
}

TEST_F(MainWindowStyles, every_picture_that_a_style_names_is_in_the_program)
{
    open();
    const QRegularExpression url("url\\(([^)]*)\\)");
    int pictures = 0;
    for (const QWidget *widget : window->findChildren<QWidget *>()) {
        auto matches = url.globalMatch(widget->styleSheet());
        while (matches.hasNext()) {
            const QString file = matches.next().captured(1);
            EXPECT_FALSE(QImage(file).isNull()) << qPrintable(file);
            ++pictures;
        }
    }
    EXPECT_GE(pictures, 8);
}

TEST_F(MainWindowStyles, the_calibration_progress_shows_its_number_only_where_it_can_be_read)
{
    open();
    auto *progress = find<QProgressBar>("progressBar_cali");
    EXPECT_FALSE(progress->isTextVisible());
    progress->setValue(1);
    EXPECT_TRUE(progress->isTextVisible());
    progress->setValue(0);
    EXPECT_FALSE(progress->isTextVisible());
}

TEST_F(MainWindowStyles, the_looks_of_the_play_button_have_their_colours)
{
    openSampling();
    const auto colour = [this] {
        return button("pushButton_sample")->grab().toImage().pixelColor(10, 20);
    };
    const auto hovered = [](QRgb idle, QRgb hover, const QColor &shown) {
        return shown.rgb() == idle || shown.rgb() == hover;
    };
    EXPECT_TRUE(hovered(qRgb(208, 61, 79), qRgb(235, 91, 106), colour())) << "running";
    click("pushButton_sample");
    EXPECT_TRUE(hovered(0xffd3d3d3, 0xffd3d3d3, colour())) << "stopping";
    detector.pushBlock();
    ASSERT_TRUE(QTest::qWaitFor([this] { return looksIdle(); }, 10000));
}
