#include "device/d2xxlibrary.h"
#include "tests/support/debugoutput.h"
#include "tests/support/linkfixture.h"

using Discovery = LinkFixture;

namespace {

const QString created = QStringLiteral("串口初始化");

} // namespace

TEST_F(Discovery, no_device_gives_an_empty_list_a_word_on_the_debug_output_and_nothing_in_the_log)
{
    ASSERT_TRUE(log.waitFor({created}));
    const DebugOutput debug;
    fake.serialNumbers.clear();
    EXPECT_TRUE(link().listDevices().isEmpty());
    EXPECT_EQ(debug.messages(), QStringList({QStringLiteral("当前没有串口连接")}));
    EXPECT_EQ(fake.calls(), QStringList({QStringLiteral("CreateDeviceInfoList")}));
    PortManager::destroyInstance();
    EXPECT_TRUE(log.waitFor({created, QStringLiteral("串口销毁")}));
}

TEST_F(Discovery, two_devices_are_logged_and_listed_in_the_drivers_order)
{
    fake.serialNumbers = {QStringLiteral("FT7A3B9C"), QStringLiteral("QV1K")};
    EXPECT_EQ(link().listDevices(), QList<QString>({QStringLiteral("FT7A3B9C"), QStringLiteral("QV1K")}));
    EXPECT_TRUE(log.waitFor({created, QStringLiteral("串口0 = FT7A3B9C"), QStringLiteral("串口1 = QV1K")}));
}

TEST_F(Discovery, a_bridge_that_is_no_detector_is_listed_apart)
{
    fake.serialNumbers = {QStringLiteral("FT7A3B9C"), QStringLiteral("QV1K")};
    fake.descriptions = {{QStringLiteral("FT7A3B9C"), QStringLiteral("serial cable")}};
    EXPECT_EQ(link().listDevices(), QList<QString>({QStringLiteral("FT7A3B9C"), QStringLiteral("QV1K")}));
    EXPECT_EQ(link().detectors(), QStringList(QStringLiteral("QV1K")));
    EXPECT_EQ(link().otherBridges(), QStringList(QStringLiteral("FT7A3B9C")));
    EXPECT_TRUE(log.waitFor(
        {created, QStringLiteral("串口0 = FT7A3B9C（非探测器）"), QStringLiteral("串口1 = QV1K")}));
    fake.createListStatus = d2xx::Status::OtherError;
    link().listDevices();
    EXPECT_TRUE(link().detectors().isEmpty() && link().otherBridges().isEmpty());
}

TEST_F(Discovery, what_a_library_lists_that_does_not_list_all_bridges_are_detectors)
{
    d2xx::Functions functions = FakeD2xx::functions();
    functions.listsAllBridges = nullptr;
    PortManager::destroyInstance();
    PortManager::setDriver(std::make_shared<D2xx>(functions));
    PortManager::createInstance();
    fake.serialNumbers = {QStringLiteral("FT7A3B9C"), QStringLiteral("QV1K")};
    fake.descriptions = {{QStringLiteral("FT7A3B9C"), QStringLiteral("serial cable")}};
    EXPECT_EQ(link().listDevices(), QList<QString>({QStringLiteral("FT7A3B9C"), QStringLiteral("QV1K")}));
    EXPECT_EQ(link().detectors(), QStringList({QStringLiteral("FT7A3B9C"), QStringLiteral("QV1K")}));
    EXPECT_TRUE(link().otherBridges().isEmpty());
    EXPECT_TRUE(log.waitFor({created, QStringLiteral("串口销毁"), created, QStringLiteral("串口0 = FT7A3B9C"),
                             QStringLiteral("串口1 = QV1K")}));
}

TEST_F(Discovery, a_serial_number_that_fills_its_field_is_read_whole)
{
    fake.serialNumbers = {QStringLiteral("123456789012345")};
    EXPECT_EQ(link().listDevices().value(0), QStringLiteral("123456789012345"));
}

TEST_F(Discovery, a_failing_enumeration_is_told_on_the_debug_output_only)
{
    const DebugOutput debug;
    fake.createListStatus = d2xx::Status::OtherError;
    EXPECT_TRUE(link().listDevices().isEmpty());
    EXPECT_FALSE(link().isListed());
    EXPECT_TRUE(debug.contains(QStringLiteral("获取串口列表失败")));
    fake.createListStatus = d2xx::Status::Ok;
    fake.serialNumbers.clear();
    EXPECT_TRUE(link().listDevices().isEmpty());
    EXPECT_TRUE(link().isListed()) << "nothing is attached, and that is known";
}

TEST_F(Discovery, failing_to_read_the_records_is_told_on_the_debug_output_only)
{
    const DebugOutput debug;
    fake.getListStatus = d2xx::Status::OtherError;
    EXPECT_TRUE(link().listDevices().isEmpty());
    EXPECT_FALSE(link().isListed());
    EXPECT_TRUE(debug.contains(QStringLiteral("获取串口信息失败")));
}

TEST_F(Discovery, opening_configures_the_bridge_with_seven_calls_in_order)
{
    EXPECT_TRUE(link().openDevice(QStringLiteral("QV1K")));
    EXPECT_EQ(
        fake.calls(),
        QStringList({QStringLiteral("OpenEx QV1K 1"), QStringLiteral("ResetDevice"),
                     QStringLiteral("SetBitMode 255 64"), QStringLiteral("SetLatencyTimer 2"),
                     QStringLiteral("SetUSBParameters 65536 65536"), QStringLiteral("SetFlowControl 256 0 0"),
                     QStringLiteral("Purge 3"), QStringLiteral("SetTimeouts 10 10")}));
    EXPECT_TRUE(log.waitFor({created, QStringLiteral("串口连接配置成功")}));
}

TEST_F(Discovery, a_device_that_rejects_its_configuration_still_counts_as_connected)
{
    fake.configurationStatus = d2xx::Status::IoError;
    EXPECT_TRUE(link().openDevice(QStringLiteral("QV1K")));
    EXPECT_EQ(fake.calls().size(), 8);
}

TEST_F(Discovery, a_device_held_by_another_program_fails_with_two_log_lines)
{
    fake.openStatus = d2xx::Status::DeviceNotOpened;
    EXPECT_FALSE(link().openDevice(QStringLiteral("QV1K")));
    EXPECT_TRUE(log.waitFor({created, QStringLiteral("串口连接失败"), QStringLiteral("设备未开启")}));
    EXPECT_EQ(fake.calls().size(), 1);
}

TEST_F(Discovery, a_reason_that_the_library_tells_is_logged_behind_the_failure)
{
    fake.openStatus = d2xx::Status::DeviceNotOpened;
    fake.problem = "Another program holds it.";
    EXPECT_FALSE(link().openDevice(QStringLiteral("QV1K")));
    EXPECT_EQ(link().problem(), QStringLiteral("Another program holds it."));
    EXPECT_TRUE(log.waitFor({created, QStringLiteral("串口连接失败"), QStringLiteral("设备未开启"),
                             QStringLiteral("原因：Another program holds it.")}));
}

TEST_F(Discovery, any_other_failure_to_open_has_one_log_line)
{
    fake.openStatus = d2xx::Status::DeviceNotFound;
    EXPECT_FALSE(link().openDevice(QStringLiteral("QV1K")));
    PortManager::destroyInstance();
    EXPECT_TRUE(log.waitFor({created, QStringLiteral("串口连接失败"), QStringLiteral("串口销毁")}));
}

TEST_F(Discovery, a_failed_open_leaves_an_earlier_handle_which_closing_closes)
{
    ASSERT_TRUE(link().openDevice(QStringLiteral("QV1K")));
    fake.openStatus = d2xx::Status::DeviceNotFound;
    EXPECT_FALSE(link().openDevice(QStringLiteral("OTHER")));
    link().write("x");
    EXPECT_EQ(fake.written().size(), 1) << "the earlier one is still open";
    link().closeDevice();
    EXPECT_EQ(fake.calls().last(), QStringLiteral("Close"));
    EXPECT_FALSE(fake.isOpen());
}

TEST_F(Discovery, a_failed_open_leaves_what_the_library_left_which_closing_closes)
{
    int something = 0;
    fake.openStatus = d2xx::Status::OtherError;
    fake.leftByFailedOpen = &something;
    EXPECT_FALSE(link().openDevice(QStringLiteral("QV1K")));
    link().closeDevice();
    EXPECT_EQ(fake.calls().last(), QStringLiteral("Close"));
    EXPECT_TRUE(log.waitFor({created, QStringLiteral("串口连接失败"), QStringLiteral("串口关闭")}));
}

TEST_F(Discovery, a_count_of_devices_that_cannot_be_true_costs_no_memory)
{
    fake.countTold = 0xFFFFFFFFU;
    EXPECT_EQ(link().listDevices(), QList<QString>({QStringLiteral("QV1K")}));
}

TEST_F(Discovery, the_first_sixty_four_devices_are_listed)
{
    fake.serialNumbers.clear();
    for (int i = 0; i < 100; ++i)
        fake.serialNumbers << QString::number(i);
    const QList<QString> listed = link().listDevices();
    ASSERT_EQ(listed.size(), 64);
    EXPECT_EQ(listed.last(), QStringLiteral("63"));
}

TEST_F(Discovery, closing_twice_does_nothing_the_second_time)
{
    ASSERT_TRUE(link().openDevice(QStringLiteral("QV1K")));
    link().closeDevice();
    EXPECT_FALSE(fake.isOpen());
    link().closeDevice();
    EXPECT_EQ(fake.calls().count(QStringLiteral("Close")), 1);
    PortManager::destroyInstance();
    EXPECT_TRUE(log.waitFor({created, QStringLiteral("串口连接配置成功"), QStringLiteral("串口关闭"),
                             QStringLiteral("串口销毁")}));
}

TEST_F(Discovery, destroying_the_link_closes_an_open_device)
{
    ASSERT_TRUE(link().openDevice(QStringLiteral("QV1K")));
    PortManager::destroyInstance();
    EXPECT_EQ(PortManager::instance(), nullptr);
    EXPECT_FALSE(fake.isOpen());
    EXPECT_TRUE(log.waitFor({created, QStringLiteral("串口连接配置成功"), QStringLiteral("串口销毁"),
                             QStringLiteral("串口关闭")}));
}

TEST_F(Discovery, without_a_driver_that_was_set_it_is_the_default_one)
{
    PortManager::destroyInstance();
    PortManager::setDriver(nullptr);
    PortManager::createInstance();
    quint32 count = 0;
    const auto status = D2xxLibrary::load({}).driver->createDeviceInfoList(&count);
    EXPECT_EQ(link().listDevices().size(), status == d2xx::Status::Ok ? count : 0U);
    EXPECT_FALSE(link().openDevice(QStringLiteral("no such detector")));
}

TEST_F(Discovery, without_a_driver_library_there_are_no_devices_and_none_opens)
{
    PortManager::destroyInstance();
    PortManager::setDriver(std::make_shared<D2xx>());
    PortManager::createInstance();
    EXPECT_TRUE(link().listDevices().isEmpty());
    EXPECT_FALSE(link().openDevice(QStringLiteral("QV1K")));
    link().write("x");
    EXPECT_EQ(link().wait_for_read(20, 6), QByteArray());
}
