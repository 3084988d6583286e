#include "tests/ui/mainwindow/mainwindowtest.h"

#include <array>

namespace {

struct Packet
{
    char code;
    const char *failure;
    int sent; ///< packets that have gone out when it fails
};

constexpr std::array<Packet, 3> packets{{
    {'\x10', "set time sequence fail", 1},
    {'\x01', "set adc fail", 2},
    {'\x02', "set voltage fail", 3},
}};

} // namespace

class MainWindowDownloadFaults : public MainWindowTest
{
protected:
    void expectFailure(const Packet &packet, int boxesBefore)
    {
        ASSERT_EQ(boxes.boxes().size(), boxesBefore + 1);
        EXPECT_EQ(boxes.last().title, "Error");
        EXPECT_EQ(boxes.last().text, packet.failure);
        EXPECT_EQ(boxes.last().icon, QMessageBox::Critical);
        EXPECT_EQ(boxes.last().buttons, QMessageBox::Ok);
        EXPECT_EQ(detector.link.written().size(), packet.sent) << packet.failure;
        EXPECT_EQ(detector.link.written().last().at(3), packet.code);
    }
};

TEST_F(MainWindowDownloadFaults, a_packet_that_is_refused_ends_the_download_with_its_message)
{
    openConnected();
    for (std::size_t i = 0; i < packets.size(); ++i) {
        detector.answerParameters(packets[i].code, hex("FFBB02000DEB"));
        detector.link.clearWritten();
        click("pushButton_set");
        expectFailure(packets[i], static_cast<int>(i));
        detector.answerParameters(packets[i].code, hex("FFBB01000DEB"));
    }
    EXPECT_TRUE(button("pushButton_set")->isEnabled());
    click("pushButton_set");
    EXPECT_EQ(boxes.last().text, "set success");
}

TEST_F(MainWindowDownloadFaults, a_packet_without_an_answer_fails_after_two_seconds_and_is_not_repeated)
{
    openConnected();
    for (std::size_t i = 0; i < packets.size(); ++i) {
        detector.answerParameters(packets[i].code, {});
        detector.link.clearWritten();
        QElapsedTimer clock;
        clock.start();
        click("pushButton_set");
        EXPECT_GE(clock.elapsed(), 2000);
        expectFailure(packets[i], static_cast<int>(i));
        detector.answerParameters(packets[i].code, hex("FFBB01000DEB"));
    }
}

TEST_F(MainWindowDownloadFaults, values_are_stored_also_when_the_first_packet_fails)
{
    openConnected();
    click("radioButton_1");
    detector.answerParameters('\x10', hex("00"));
    click("pushButton_set");
    EXPECT_EQ(boxes.last().text, "set time sequence fail");
    EXPECT_EQ(pipeline().getCurrentRange(), 1);
    window.reset();
    EXPECT_EQ(stored("comboBox_pcrange").toInt(), 6);
    EXPECT_EQ(stored("lineEdit_32"), "400000");
    EXPECT_EQ(stored("lineEdit_34"), "21700");
}

TEST_F(MainWindowDownloadFaults, a_late_answer_does_not_pass_for_the_next_packets)
{
    openConnected();
    detector.answerParameters('\x10', {});
    click("pushButton_set");
    EXPECT_EQ(boxes.last().text, "set time sequence fail");
    detector.link.push(hex("FFBB01000DEB")); // now it comes
    detector.answerParameters('\x10', hex("FFBB01000DEB"));
    detector.link.clearWritten();
    // The answer that waits is read together with the new one: longer than expected, it still acknowledges.
    click("pushButton_set");
    EXPECT_EQ(boxes.last().text, "set success");
    EXPECT_EQ(detector.link.written().size(), 3);
}

TEST_F(MainWindowDownloadFaults, a_download_without_a_connection_fails_by_its_first_packet)
{
    open();
    click("pushButton_set");
    EXPECT_EQ(boxes.boxes().size(), 1);
    EXPECT_EQ(boxes.last().text, "set time sequence fail");
    EXPECT_TRUE(detector.link.written().isEmpty());
}
