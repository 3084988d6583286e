// A download whose packets the virtual detector takes but answers badly.

#include "tests/ui/parameters/parameterwindow.h"

#include <QElapsedTimer>

namespace {

struct Fault
{
    const char *name;
    const char *setting;
    bool fillsTime; ///< the wait runs out
};

struct Packet
{
    const char *name;
    const char *command; ///< class and code
    const char *message;
    int place;
};

constexpr Fault faults[] = {{"refused", "CorruptReply=true", false},
                            {"late", "ReplyDelayMs=2600", true},
                            {"unanswered", "MissingReply=true", true}};
constexpr Packet packets[] = {{"timing", "0110", "set time sequence fail", 1},
                              {"adc", "0101", "set adc fail", 2},
                              {"voltages", "0102", "set voltage fail", 3}};

// The tests' names in a listing would show addresses otherwise.
void PrintTo(const Fault &fault, std::ostream *out)
{
    *out << fault.name;
}
void PrintTo(const Packet &packet, std::ostream *out)
{
    *out << packet.name;
}

class ParameterFaults : public ParameterWindow, public testing::WithParamInterface<std::tuple<Fault, Packet>>
{
};

INSTANTIATE_TEST_SUITE_P(Each, ParameterFaults,
                         testing::Combine(testing::ValuesIn(faults), testing::ValuesIn(packets)),
                         [](const auto &tested) {
                             return std::string(std::get<0>(tested.param).name) + '_' +
                                    std::get<1>(tested.param).name;
                         });

} // namespace

TEST_P(ParameterFaults, a_packet_ends_the_download_and_the_detector_is_sent_nothing_more)
{
    const auto &[fault, packet] = GetParam();
    openConnected(QByteArray("[Faults]\nReplyFaultCount=1\nReplyFaultCommand=") + packet.command + '\n' +
                  fault.setting + '\n');
    const Held before = held();
    find<QDoubleSpinBox>("doubleSpinBox_von")->setValue(10.0);
    QElapsedTimer clock;
    clock.start();
    download("radioButton_1");

    ASSERT_EQ(boxes.boxes().size(), 1);
    EXPECT_EQ(boxes.last().title, "Error");
    EXPECT_EQ(boxes.last().text, packet.message);
    EXPECT_EQ(boxes.last().icon, QMessageBox::Critical);
    EXPECT_GE(clock.elapsed(), fault.fillsTime ? 2000 : 0);
    EXPECT_TRUE(button("pushButton_set")->isEnabled());
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);

    if (qstrcmp(fault.name, "late") == 0) {
        const QByteArray late = PortManager::instance()->wait_for_read(5000, 6);
        EXPECT_EQ(late, QByteArray("FFBB") + packet.command + "0DEB");
    }
    // The packet itself arrived; those after it did not go out.
    const Held after = held();
    EXPECT_NE(after.timing, before.timing);
    EXPECT_EQ(after.adc, packet.place >= 2 ? QByteArray("0180") : before.adc);
    EXPECT_EQ(after.voltages.mid(24, 4), packet.place >= 3 ? QByteArray("C000") : QByteArray("E000"));

    EXPECT_EQ(stored("comboBox_pcrange"), "6");
    EXPECT_EQ(stored(17), "1740779600");
    EXPECT_EQ(stored(32), "400000");
    EXPECT_EQ(stored(34), "21700");
    EXPECT_EQ(pipeline().getCurrentRange(), 1);

    click("pushButton_set");
    EXPECT_EQ(boxes.last().text, "set success") << "once the fault is over";
    EXPECT_EQ(held().voltages.mid(24, 4), "C000");
    EXPECT_EQ(held().adc, "0180");
}
