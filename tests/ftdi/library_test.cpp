#include "d2xx/arguments.h"
#include "device/d2xxlibrary.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>

using namespace d2xx;

namespace {

/// The shared library, loaded as the program loads it. Whether there is a USB here does not matter: the
/// serial number that is asked for belongs to nobody.
class FtdiLibrary : public testing::Test
{
protected:
    const D2xxLibrary library = D2xxLibrary::load(QStringLiteral(QV1K_FTDI_LIBRARY));
    const Functions &f = library.driver->functions();
};

} // namespace

TEST_F(FtdiLibrary, has_all_calls_and_leaves_plugging_and_unplugging_to_the_system)
{
    EXPECT_TRUE(library.driver->isUsable()) << qPrintable(library.problem);
    EXPECT_FALSE(library.isVirtual);
    EXPECT_EQ(f.setDeviceEventCallback, nullptr);
    EXPECT_NE(f.tellProblem, nullptr);
    EXPECT_NE(f.countLosses, nullptr);
    EXPECT_NE(f.listsAllBridges, nullptr);
}

TEST_F(FtdiLibrary, lists_what_is_there_or_says_that_it_cannot)
{
    ASSERT_TRUE(library.driver->isUsable());
    quint32 count = 0;
    const Status status = f.createDeviceInfoList(&count);
    EXPECT_TRUE(status == Status::Ok || (status == Status::OtherError && count == 0))
        << static_cast<quint32>(status);
    std::vector<DeviceRecord> records(count + 1);
    quint32 told = 99;
    EXPECT_EQ(f.getDeviceInfoList(records.data(), &told), Status::Ok);
    EXPECT_EQ(told, count);
}

TEST_F(FtdiLibrary, does_not_open_what_is_not_there)
{
    ASSERT_TRUE(library.driver->isUsable());
    std::array<char, 16> serialNumber{"NO SUCH BRIDGE"};
    Handle handle = nullptr;
    const Status status = f.openEx(serialNumber.data(), openBySerialNumber, &handle);
    EXPECT_TRUE(status == Status::DeviceNotFound || status == Status::OtherError)
        << static_cast<quint32>(status);
    EXPECT_EQ(handle, nullptr);
}

TEST_F(FtdiLibrary, knows_an_invalid_handle_in_every_call)
{
    ASSERT_TRUE(library.driver->isUsable());
    std::array<char, 4> buffer{};
    for (Handle stale : {Handle(nullptr), Handle(buffer.data())}) {
        quint32 a = 0;
        quint32 b = 0;
        quint32 c = 0;
        EXPECT_EQ(f.resetDevice(stale), Status::InvalidHandle);
        EXPECT_EQ(f.setBitMode(stale, 0xFF, bitModeSyncFifo), Status::InvalidHandle);
        EXPECT_EQ(f.setLatencyTimer(stale, 2), Status::InvalidHandle);
        EXPECT_EQ(f.setUsbParameters(stale, 65536, 65536), Status::InvalidHandle);
        EXPECT_EQ(f.setFlowControl(stale, flowRtsCts, 0, 0), Status::InvalidHandle);
        EXPECT_EQ(f.purge(stale, purgeBoth), Status::InvalidHandle);
        EXPECT_EQ(f.setTimeouts(stale, 10, 10), Status::InvalidHandle);
        EXPECT_EQ(f.getStatus(stale, &a, &b, &c), Status::InvalidHandle);
        EXPECT_EQ(f.read(stale, buffer.data(), 1, &a), Status::InvalidHandle);
        EXPECT_EQ(f.write(stale, buffer.data(), 1, &a), Status::InvalidHandle);
        EXPECT_EQ(f.countLosses(stale, &a), Status::InvalidHandle);
        EXPECT_EQ(f.close(stale), Status::InvalidHandle);
    }
}

TEST_F(FtdiLibrary, cuts_a_problem_that_is_longer_than_its_room)
{
    ASSERT_TRUE(library.driver->isUsable());
    std::array<char, 16> serialNumber{"NO SUCH BRIDGE"};
    Handle handle = nullptr;
    ASSERT_NE(f.openEx(serialNumber.data(), openBySerialNumber, &handle), Status::Ok);
    std::array<char, 4> text{'x', 'x', 'x', 'x'};
    EXPECT_EQ(f.tellProblem(nullptr, text.data(), 3), Status::Ok);
    EXPECT_EQ(std::strlen(text.data()), 2U);
    EXPECT_EQ(text[3], 'x');
    EXPECT_EQ(f.tellProblem(nullptr, nullptr, 3), Status::InvalidParameter);
    EXPECT_EQ(f.tellProblem(nullptr, text.data(), 0), Status::InvalidParameter);
}

TEST_F(FtdiLibrary, refuses_null_pointers)
{
    ASSERT_TRUE(library.driver->isUsable());
    constexpr Status invalidParameter = Status::InvalidParameter;
    quint32 count = 0;
    Handle handle = nullptr;
    EXPECT_EQ(f.createDeviceInfoList(nullptr), invalidParameter);
    EXPECT_EQ(f.getDeviceInfoList(nullptr, &count), invalidParameter);
    EXPECT_EQ(f.openEx(nullptr, openBySerialNumber, &handle), invalidParameter);
    std::array<char, 16> serialNumber{"NO SUCH BRIDGE"};
    EXPECT_EQ(f.openEx(serialNumber.data(), openBySerialNumber, nullptr), invalidParameter);
}
