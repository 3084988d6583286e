#include "tests/ui/mainwindow/mainwindowtest.h"

#include <QMetaMethod>

#include <array>

namespace {

struct Place
{
    const char *parent;
    const char *children; // names, in the order in which they were made
};

constexpr std::array<Place, 25> tree{{
    {"mainwindow", "centralwidget"},
    {"centralwidget", "widget_title widget"},
    {"widget_title",
     "label_window_icon label_version pushButton_develop pushButton_sample widget_battery label_18 "
     "pushButton_minimize pushButton_maxsize pushButton_close"},
    {"widget_battery", "battery_color"},
    {"widget", "widget_19 stackedWidget frame label_fps label_coor label_current"},
    {"widget_19", "frame_orvane listWidget"},
    {"stackedWidget", "page_1 page_2 page page_4 page_5"},
    {"page_1", "comboBox_port pushButton_Connect textEdit"},
    {"page_2", "label_4 widget_14 volTitle widget_51 pushButton_set"},
    {"widget_14",
     "radioButton_150 radioButton_50 radioButton_10 radioButton_1 radioButton_optional_gear widget_range"},
    {"widget_range", "label_3 lineEdit_gear label_41"},
    {"volTitle", "label_6 pushButton_voltinfo"},
    {"widget_51", "doubleSpinBox_voff doubleSpinBox_vcom doubleSpinBox_vss doubleSpinBox_von"},
    {"page",
     "label_7 widget_49 ImageProcess widgetContrast widget_8 widget_2 testImage1 testImage2 testImage3 "
     "testImage4 testImage5"},
    {"widget_49", "pushButton_rotate pushButton_mirrorHorizontal pushButton_mirrorVertical"},
    {"ImageProcess", "radioButton_original radioButton_smooth radioButton_enhance"},
    {"widgetContrast", "label_2 doubleSpinBox_contrast"},
    {"widget_8", "pushButton_cali pushButton_full_on pushButton_full_off"},
    {"widget_2", "progressBar_cali label_calistate"},
    {"page_4", "widget_41 widget_42 widget_44 pushButton_save widget_53"},
    {"widget_41", "label"},
    {"widget_42", "label_29 comboBox_saveframes label_30 lineEdit_savename label_31 widget_43"},
    {"widget_43", "lineEdit_savepath pushButton_savepath"},
    {"widget_44", "checkBox_data checkBox_picture checkBox_video"},
    {"widget_53", "progressBar label_savestate"},
}};

struct Text
{
    const char *name;
    const char *text;
};

constexpr std::array<Text, 44> texts{{
    {"label_version", "QV1K"},
    {"label_4", "Current Range"},
    {"radioButton_150", "150nA"},
    {"radioButton_50", "50nA"},
    {"radioButton_10", "10nA"},
    {"radioButton_1", "1nA"},
    {"label_3", "Range "},
    {"label_41", "(nA)"},
    {"label_6", "       Voltage"},
    {"pushButton_set", "Setting"},
    {"pushButton_Connect", "Connect"},
    {"label_7", "Display Mode"},
    {"radioButton_original", "Original  "},
    {"radioButton_smooth", "Smooth  "},
    {"radioButton_enhance", "Pixelation"},
    {"label_2", "Contrast Ratio"},
    {"pushButton_cali", "Open Calibration"},
    {"pushButton_full_on", "Full-ON"},
    {"pushButton_full_off", "Full-OFF"},
    {"testImage1", "Test Image 1"},
    {"testImage2", "Test Image 2"},
    {"testImage3", "Test Image 3"},
    {"testImage4", "Test Image 4"},
    {"testImage5", "Test Image 5"},
    {"label", "Save Option"},
    {"label_29", "Number:"},
    {"label_30", "Name:"},
    {"label_31", "Path:"},
    {"checkBox_data", "Data"},
    {"checkBox_picture", "Picture"},
    {"checkBox_video", "Video"},
    {"pushButton_save", "Save"},
    {"label_savestate", ""},
    {"label_calistate", ""},
    {"label_fps", "FPS: N/A"},
    {"label_coor", "Coordinate:"},
    {"label_current", "Current:"},
    {"label_18", ""},
    {"pushButton_close", ""},
    {"pushButton_maxsize", ""},
    {"pushButton_minimize", ""},
    {"pushButton_sample", ""},
    {"pushButton_develop", ""},
    {"pushButton_savepath", ""},
}};

constexpr std::array<Text, 8> icons{{
    {"pushButton_develop", "Settings.png"},
    {"pushButton_sample", "play.png"},
    {"pushButton_minimize", "Minimize-1.png"},
    {"pushButton_maxsize", "Maximize-1.png"},
    {"pushButton_close", "Shut down-1.png"},
    {"pushButton_rotate", "rotate.png"},
    {"pushButton_mirrorHorizontal", "mirror.png"},
    {"pushButton_mirrorVertical", "mirror_top.png"},
}};

} // namespace

class MainWindowForm : public MainWindowTest
{
protected:
    [[nodiscard]] const QWidget *place(const char *name) const
    {
        return qstrcmp(name, "mainwindow") == 0 ? window.get() : find<QWidget>(name);
    }
};

TEST_F(MainWindowForm, every_widget_has_its_name_text_and_icon_in_its_place)
{
    open();
    EXPECT_EQ(window->objectName(), "mainwindow");
    EXPECT_EQ(window->windowTitle(), "mainwindow");
    for (const Place &expected : tree) {
        const QStringList names = QString::fromLatin1(expected.children).split(u' ');
        QStringList there;
        if (const auto *pages = qobject_cast<const QStackedWidget *>(place(expected.parent))) {
            for (int i = 0; i < pages->count(); ++i)
                there << pages->widget(i)->objectName();
        }
        for (const QObject *child : place(expected.parent)->children()) {
            if (names.contains(child->objectName()) && !there.contains(child->objectName()))
                there << child->objectName();
        }
        EXPECT_EQ(there, names) << expected.parent << ": " << qPrintable(there.join(u' '));
    }
    for (const auto &[name, expected] : texts)
        EXPECT_EQ(find<QWidget>(name)->property("text").toString(), expected) << name;
    for (const auto &[name, icon] : icons)
        EXPECT_TRUE(hasIcon(button(name), icon)) << name;
    EXPECT_FALSE(find<QLabel>("label_window_icon")->pixmap().isNull());
}

TEST_F(MainWindowForm, the_settings_controls_start_with_their_ranges_and_values)
{
    open();
    EXPECT_TRUE(find<QRadioButton>("radioButton_150")->isChecked());
    const std::array<std::pair<const char *, double>, 4> voltages{{{"doubleSpinBox_von", 15.0},
                                                                   {"doubleSpinBox_voff", -15.0},
                                                                   {"doubleSpinBox_vcom", -10.0},
                                                                   {"doubleSpinBox_vss", 0.5}}};
    for (const auto &[name, start] : voltages) {
        const auto *box = find<QDoubleSpinBox>(name);
        EXPECT_EQ(box->value(), start) << name;
        EXPECT_EQ(box->minimum(), -15.0) << name;
        EXPECT_EQ(box->maximum(), 15.0) << name;
        EXPECT_EQ(box->buttonSymbols(), QAbstractSpinBox::NoButtons) << name;
    }
    const auto *contrast = find<QDoubleSpinBox>("doubleSpinBox_contrast");
    EXPECT_EQ(contrast->value(), 1.0);
    EXPECT_EQ(contrast->minimum(), 1.0);
    EXPECT_EQ(contrast->maximum(), 100.0);
    EXPECT_EQ(contrast->buttonSymbols(), QAbstractSpinBox::NoButtons);
    EXPECT_EQ(find<QLineEdit>("lineEdit_gear")->placeholderText(), "1~500");
    EXPECT_EQ(find<QWidget>("widget_51")->findChildren<QLabel *>().size(), 8);
    int units = 0;
    for (const auto *label : find<QWidget>("widget_51")->findChildren<QLabel *>())
        units += label->text() == "(v)" ? 1 : 0;
    EXPECT_EQ(units, 4);
}

TEST_F(MainWindowForm, checkable_buttons_are_those_of_calibration_and_test_images)
{
    open();
    for (const char *name : {"pushButton_full_on", "pushButton_full_off", "testImage1", "testImage2",
                             "testImage3", "testImage4", "testImage5"})
        EXPECT_TRUE(button(name)->isCheckable()) << name;
    EXPECT_FALSE(button("pushButton_cali")->isCheckable());
    EXPECT_TRUE(find<QTextEdit>("textEdit")->isReadOnly());
}

TEST_F(MainWindowForm, what_is_not_for_the_operator_is_hidden)
{
    open();
    for (const char *name : {"radioButton_optional_gear", "widget_range", "ImageProcess",
                             "pushButton_develop", "testImage1", "testImage2", "testImage3", "testImage4",
                             "testImage5", "pushButton_full_on", "pushButton_full_off"})
        EXPECT_TRUE(find<QWidget>(name)->isHidden()) << name;
}

TEST_F(MainWindowForm, the_about_page_names_product_version_and_maker)
{
    open();
    QStringList lines;
    const auto labels = find<QWidget>("page_5")->findChildren<QLabel *>();
    for (const QLabel *label : labels)
        lines << label->text();
    EXPECT_TRUE(lines.contains(" Quillon 03QV (1024*1024) "));
    EXPECT_TRUE(lines.contains("All Rights Reserved."));
    const QString version = lines.filter("Version 1.0.8").value(0);
    EXPECT_TRUE(Qt::mightBeRichText(version)) << qPrintable(version);
    QString styles;
    for (const QLabel *label : labels)
        styles += label->styleSheet();
    for (const char *colour : {"#4169E1", "#888888", "#555555"})
        EXPECT_TRUE(styles.contains(colour)) << colour;
}

TEST_F(MainWindowForm, the_slots_stand_in_the_order_of_their_table)
{
    const QList<QByteArray> expected{"on_pushButton_close_clicked()",
                                     "on_pushButton_maxsize_clicked()",
                                     "on_pushButton_minimize_clicked()",
                                     "on_pushButton_Connect_clicked()",
                                     "on_pushButton_savepath_clicked()",
                                     "on_pushButton_develop_clicked()",
                                     "on_pushButton_save_clicked()",
                                     "on_pushButton_set_clicked()",
                                     "receive_displayImage(QImage)",
                                     "handleSetMaxSuccess()",
                                     "handleSaveMessage(int)",
                                     "handleCaliMessage(int)",
                                     "handleLabelClick(int,int)",
                                     "handleSetMinSuccess()",
                                     "handleStop()",
                                     "receive_errorOccurred(errormessage)",
                                     "on_pushButton_mirrorHorizontal_clicked()",
                                     "on_pushButton_mirrorVertical_clicked()",
                                     "on_pushButton_rotate_clicked()",
                                     "on_pushButton_full_off_clicked()",
                                     "on_pushButton_full_on_clicked()",
                                     "on_pushButton_cali_clicked()",
                                     "check_lower_computer_status()",
                                     "on_pushButton_voltinfo_clicked()",
                                     "on_pushButton_sample_clicked()"};
    const QMetaObject &meta = mainwindow::staticMetaObject;
    QList<QByteArray> declared;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
        declared << meta.method(i).methodSignature();
    EXPECT_EQ(declared, expected);
}
