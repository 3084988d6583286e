#include "tests/support/commandbytes.h"
#include "tests/ui/mainwindow/mainwindowtest.h"

#include <array>

namespace {

struct Gear
{
    const char *button;
    int integrationTime;
    const char *adc; ///< the whole ADC packet
};

/// The timing packet written out from the formulas, independently of the program's own.
QByteArray timingPacket(qint32 base)
{
    const qint32 a = base + 15700;
    const qint32 b = 4 * a + 20000;
    const qint32 c = 4 * b + 16000;
    const auto scaled = static_cast<qint32>(0.8 * base);
    QByteArray payload;
    for (const qint32 value : {258 * c + 2000, 1000, 1000, c, c / 2, 2000, 1000, b, 4000, 1000, 1000, a, 6000,
                               1000, 300, scaled, 15400, 17360})
        payload += words({static_cast<quint32>(value)});
    return hexText(parameterFrame(0x10, payload));
}

constexpr char startVoltages[] = "FFAA01020DEB"
                                 "800080008000800080008000" // V1 to V6
                                 "E0002000"                 // Von 15 V, Voff -15 V
                                 "800080008000800080008000" // V9 to V14
                                 "83334000"                 // Vss 0.5 V, Vcom -10 V
                                 "F6";

} // namespace

class MainWindowDownload : public MainWindowTest
{
protected:
    [[nodiscard]] QByteArrayList packets() const { return detector.writtenTexts(); }

    void download()
    {
        detector.link.clearWritten();
        click("pushButton_set");
    }
};

TEST_F(MainWindowDownload, sends_timing_then_adc_then_voltages_and_says_success)
{
    openConnected();
    download();
    EXPECT_EQ(packets(), QList<QByteArray>({timingPacket(16600), "FFAA01010DEB01B6B7", startVoltages}));
    ASSERT_EQ(boxes.boxes().size(), 1);
    EXPECT_EQ(boxes.last().title, "Info");
    EXPECT_EQ(boxes.last().text, "set success");
    EXPECT_EQ(boxes.last().icon, QMessageBox::Information);
    EXPECT_EQ(boxes.last().buttons, QMessageBox::Ok);
}

TEST_F(MainWindowDownload, the_timing_of_150_na_is_these_bytes)
{
    openConnected();
    download();
    EXPECT_EQ(packets().value(0).left(12 + 8), "FFAA01100DEB096C7B50"); // 158104400
    EXPECT_EQ(packets().value(0).mid(12 + 15 * 8, 24), "000033E000003C28000043D0");
    EXPECT_EQ(packets().value(0).size(), 2 * (6 + 72 + 1));
}

TEST_F(MainWindowDownload, each_current_range_has_its_timing_adc_code_and_stored_values)
{
    openConnected();
    // Index 0 (25 pC) is code 6, index 3 (16 pC) is 3, index 6 (4 pC) is 0: (1 << 8) | 0x80 | code twice.
    const std::array<Gear, 4> gears{{{"radioButton_150", 16600, "FFAA01010DEB01B6B7"},
                                     {"radioButton_50", 50000, "FFAA01010DEB01B6B7"},
                                     {"radioButton_10", 130000, "FFAA01010DEB019B9C"},
                                     {"radioButton_1", 400000, "FFAA01010DEB018081"}}};
    for (const Gear &gear : gears) {
        click(gear.button);
        download();
        EXPECT_EQ(packets(), QList<QByteArray>({timingPacket(gear.integrationTime), gear.adc, startVoltages}))
            << gear.button;
        EXPECT_EQ(boxes.last().text, "set success");
    }
    EXPECT_EQ(pipeline().getCurrentRange(), 1);
}

TEST_F(MainWindowDownload, the_settings_file_keeps_the_full_values_as_decimal_texts)
{
    openConnected();
    click("radioButton_1");
    download();
    EXPECT_TRUE(packets().value(0).contains("0004E200")) << "320000, 80 % of 400000";
    window.reset();
    const QList<int> expected{1740779600, 1000, 1000,   6747200, 3373600, 2000, 1000,   1682800, 4000,
                              1000,       1000, 415700, 6000,    1000,    300,  400000, 15400,   21700};
    EXPECT_EQ(stored("comboBox_pcrange").toInt(), 6);
    for (int i = 0; i < expected.size(); ++i) {
        const QByteArray key = "lineEdit_" + QByteArray::number(17 + i);
        EXPECT_EQ(stored(key), QString::number(expected.at(i))) << key.constData();
    }
}

TEST_F(MainWindowDownload, voltages_and_adc_selections_of_the_developer_window_come_from_the_settings_file)
{
    openConnected(
        "lineEdit_1=1.5\nlineEdit_6=-20\nlineEdit_7=3\nlineEdit_8=3\nlineEdit_9=19.9\nlineEdit_14=oops\n"
        "lineEdit_15=3\nlineEdit_16=3\ncomboBox_ope=3\ncomboBox_data=1\ncomboBox_mode=1\n"
        "comboBox_pcrange=5\n");
    download();
    // (A+B)/2 is 111, 16 bit is 0, on is 1; the range is that of the page, not the stored one.
    EXPECT_EQ(packets().value(1), "FFAA01010DEB07767D");
    const QByteArray voltages = packets().value(2).mid(12, 64);
    EXPECT_EQ(voltages.mid(0, 4), "8999");      // 1.5 V
    EXPECT_EQ(voltages.mid(5 * 4, 4), "0000");  // -20 V
    EXPECT_EQ(voltages.mid(6 * 4, 4), "E000");  // of the page
    EXPECT_EQ(voltages.mid(7 * 4, 4), "2000");  // of the page
    EXPECT_EQ(voltages.mid(8 * 4, 4), "FF5C");  // 19.9 V
    EXPECT_EQ(voltages.mid(13 * 4, 4), "8000"); // no number is 0 V
    EXPECT_EQ(voltages.mid(14 * 4, 8), "83334000");
}

TEST_F(MainWindowDownload, a_hand_edit_of_the_settings_file_is_seen_by_the_next_download)
{
    openConnected("lineEdit_1=0\n");
    download();
    EXPECT_EQ(packets().value(2).mid(12, 4), "8000");
    QByteArray edited = folder.readText("config.ini");
    edited.replace("lineEdit_1=0\n", "lineEdit_1=10.0\n");
    folder.write("config.ini", edited + "comboBox_mode=1\n");
    download();
    EXPECT_EQ(packets().value(2).mid(12, 4), "C000");
    EXPECT_EQ(packets().value(1).mid(12, 4), "01F6");
}

TEST_F(MainWindowDownload, voltages_at_the_limits_of_the_page)
{
    openConnected();
    const std::array<const char *, 4> names{"doubleSpinBox_von", "doubleSpinBox_voff", "doubleSpinBox_vss",
                                            "doubleSpinBox_vcom"};
    for (const char *name : names)
        find<QDoubleSpinBox>(name)->setValue(15.0);
    download();
    EXPECT_EQ(packets().value(2).mid(12 + 24, 8), "E000E000"); // 57344
    EXPECT_EQ(packets().value(2).mid(12 + 56, 8), "E000E000");
    for (const char *name : names)
        find<QDoubleSpinBox>(name)->setValue(-15.0);
    download();
    EXPECT_EQ(packets().value(2).mid(12 + 24, 8), "20002000"); // 8192
    EXPECT_EQ(packets().value(2).mid(12 + 56, 8), "20002000");
}

TEST_F(MainWindowDownload, an_acknowledgement_anywhere_in_the_reply_counts)
{
    openConnected();
    detector.answerParameters('\x10', hex("00FFBB010000"));
    detector.answerParameters('\x01', hex("0FFBB0100000")); // off a byte boundary
    download();
    EXPECT_EQ(boxes.last().text, "set success");
}

TEST_F(MainWindowDownload, the_four_ranges_exclude_each_other_and_the_free_range_takes_no_part)
{
    openConnected();
    click("radioButton_10");
    EXPECT_FALSE(find<QRadioButton>("radioButton_150")->isChecked());
    find<QRadioButton>("radioButton_optional_gear")->setChecked(true);
    find<QLineEdit>("lineEdit_gear")->setText("77");
    EXPECT_TRUE(find<QRadioButton>("radioButton_10")->isChecked());
    download();
    EXPECT_EQ(packets().value(0), timingPacket(130000));
}

TEST_F(MainWindowDownload, it_is_closed_while_the_acquisition_runs)
{
    openSampling();
    detector.link.clearWritten();
    click("pushButton_set");
    EXPECT_TRUE(packets().isEmpty());
    EXPECT_TRUE(boxes.isEmpty());
}
