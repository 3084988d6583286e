// The settings page, down to what the detector then holds and does.

#include "tests/ui/parameters/parameterwindow.h"

using namespace DialogFields;

namespace {

struct Gear
{
    const char *button;
    QByteArray adc;
    QByteArray timing;     ///< as the detector holds it
    QStringList fullTexts; ///< as the settings file keeps it
    const char *pcRange;
    const char *charge;
    double framesPerSecond;
};

QStringList texts(const QList<int> &values)
{
    QStringList result;
    for (const int value : values)
        result << QString::number(value);
    return result;
}

/// The values of a gear: frame_period, clk_cycle, clk_high, ck_high, mux_high and adc_intA; all others are
/// the same in every gear.
QList<int> sequence(int period, int cycle, int high, int ckHigh, int muxHigh, int integration)
{
    return {period, 1000, 1000,    cycle, high, 2000, 1000,        ckHigh, 4000,
            1000,   1000, muxHigh, 6000,  1000, 300,  integration, 15400,  21700};
}

// At the positions of the two integration times the detector holds 80 %.
const QList<Gear> gears{
    {"radioButton_50", "01B6",
     "11A44A50000003E8000003E8001181400008C0A0000007D0"
     "000003E8000450B000000FA0000003E8000003E8000100A4"
     "00001770000003E80000012C00009C4000003C28000043D0",
     texts(sequence(295979600, 1147200, 573600, 282800, 65700, 50000)), "0", "25", 3.3786},
    {"radioButton_10", "019B",
     "25535A50000003E8000003E800250940001284A0000007D0"
     "000003E8000932B000000FA0000003E8000003E800023924"
     "00001770000003E80000012C0001964000003C28000043D0",
     texts(sequence(626219600, 2427200, 1213600, 602800, 145700, 130000)), "3", "13", 1.5969},
    {"radioButton_1", "0180",
     "67C23050000003E8000003E80066F44000337A20000007D0"
     "000003E80019AD7000000FA0000003E8000003E8000657D4"
     "00001770000003E80000012C0004E20000003C28000043D0",
     texts(sequence(1740779600, 6747200, 3373600, 1682800, 415700, 400000)), "6", "4", 0.57446},
    {"radioButton_150", "01B6",
     "096C7B50000003E8000003E8000959C00004ACE0000007D0"
     "000003E8000246D000000FA0000003E8000003E800007E2C"
     "00001770000003E80000012C000033E000003C28000043D0",
     texts(sequence(158104400, 612800, 306400, 149200, 32300, 16600)), "0", "25", 6.3250},
};

constexpr char startVoltages[] = "800080008000800080008000E0002000"
                                 "80008000800080008000800083334000";

class ParameterDownload : public ParameterWindow
{
};

} // namespace

TEST_F(ParameterDownload, the_detector_holds_each_range_the_file_keeps_it_and_the_dialog_reads_it_back)
{
    openConnected();
    for (const Gear &gear : gears) {
        SCOPED_TRACE(gear.button);
        download(gear.button);
        ASSERT_EQ(boxes.last().text, "set success");

        const Held now = held();
        EXPECT_EQ(now.mode, "00");
        EXPECT_EQ(now.adc, gear.adc);
        EXPECT_EQ(now.voltages, startVoltages);
        EXPECT_EQ(now.timing, gear.timing);

        EXPECT_EQ(stored("comboBox_pcrange"), gear.pcRange);
        for (int i = 0; i < 18; ++i)
            EXPECT_EQ(stored(17 + i), gear.fullTexts.at(i)) << 17 + i;

        inDialog([&](const developwindow &dialog) {
            EXPECT_EQ(shown(dialog, 17, 18), gear.fullTexts) << "from the settings file";
            type(dialog, 17, QStringList(18, "1"));
            choose(dialog, {3, 1, 1, 1});
            press(dialog, "pushButton_parm_readback");
            EXPECT_EQ(shown(dialog, 17, 18), gear.fullTexts) << "from the detector";
            EXPECT_EQ(chosen(dialog), QStringList({"A only", "20 bit", "off", gear.charge}));
            EXPECT_EQ(shown(dialog, 7, 2), QStringList({"15.000", "-15.000"}));
            EXPECT_EQ(shown(dialog, 15, 2), QStringList({"0.500", "-10.000"}));
            type(dialog, 1, QStringList(16, "0"));
        });
    }
}

TEST_F(ParameterDownload, the_pictures_come_at_the_pace_of_the_range_that_was_downloaded)
{
    openConnected("Pacing=timing\n");
    for (const Gear &gear : gears) {
        SCOPED_TRACE(gear.button);
        download(gear.button);
        ASSERT_EQ(boxes.last().text, "set success");
        start();
        waitForPictures(gear.framesPerSecond > 3 ? 5 : gear.framesPerSecond > 1 ? 2 : 1);
        const double rate = framesPerSecond();
        EXPECT_LT(rate, 1.1 * gear.framesPerSecond) << "no picture is early";
        EXPECT_GT(rate, 0.2 * gear.framesPerSecond) << "a busy computer may be late";
        stop();
    }
}

TEST_F(ParameterDownload, what_the_engineer_keeps_is_downloaded_with_the_operators_range_and_voltages)
{
    openConnected();
    inDialog([](const developwindow &dialog) {
        choose(dialog, {3, 1, 1, 5});
        type(dialog, 1, {"-20", "-15", "15", "19.9", "1.5", "-0.5", "3", "3"});
        type(dialog, 9, {"10", "7.25", "-5", "", "oops", "12", "3", "3"});
        field(dialog, 12)->clear();
    });
    find<QDoubleSpinBox>("doubleSpinBox_von")->setValue(12.5);
    find<QDoubleSpinBox>("doubleSpinBox_vss")->setValue(-15);
    download("radioButton_10");
    ASSERT_EQ(boxes.last().text, "set success");
    const Held now = held();
    EXPECT_EQ(now.adc, "075B"); // (A+B)/2, 16 bit, on; 13 pC, which the range asks for
    EXPECT_EQ(now.voltages, "00002000E000FF5C89997CCC"
                            "D0002000"
                            "C000AE666000800080"
                            "00CCCC"
                            "20004000");
}

TEST_F(ParameterDownload, a_voltage_of_20_volts_makes_a_packet_that_the_detector_does_not_take)
{
    openConnected({}, "lineEdit_1=20\n");
    const Held before = held();
    download("radioButton_1");
    EXPECT_EQ(boxes.last().text, "set voltage fail");
    EXPECT_EQ(held().voltages, before.voltages);
    EXPECT_EQ(held().adc, "0180") << "what was acknowledged stays in force";
}

TEST_F(ParameterDownload, while_images_stream_in_the_dialog_keeps_off_the_link)
{
    openConnected();
    start();
    waitForPictures(1);
    inDialog([](const developwindow &dialog) {
        const auto buttons = dialog.findChildren<QPushButton *>();
        for (const QPushButton *button : buttons)
            EXPECT_EQ(button->isEnabled(), button->objectName() == "pushButton_cal_time");
        press(dialog, "pushButton_parm_readback");
        press(dialog, "pushButton_cal_time");
        EXPECT_EQ(field(dialog, 17)->text(), "158104400");
        EXPECT_EQ(field(dialog, 1)->text(), "");
    });
    waitForPictures(3);
    stop();
    inDialog([](const developwindow &dialog) {
        press(dialog, "pushButton_ver_readback");
        EXPECT_EQ(getChild<QLabel>(dialog, "label_version")->text(), "1.2.3.4.5");
    });
}
