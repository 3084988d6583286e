#include "device/d2xxlibrary.h"

#include <gtest/gtest.h>

#include <array>

using namespace ftdi;

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
}

TEST_F(FtdiLibrary, lists_what_is_there_or_says_that_it_cannot)
{
    ASSERT_TRUE(library.driver->isUsable());
    DWORD count = 0;
    const FT_STATUS status = f.createDeviceInfoList(&count);
    EXPECT_TRUE(status == FT_OK || (status == FT_OTHER_ERROR && count == 0)) << status;
    std::vector<DeviceRecord> records(count + 1);
    DWORD told = 99;
    EXPECT_EQ(f.getDeviceInfoList(records.data(), &told), FT_OK);
    EXPECT_EQ(told, count);
}

TEST_F(FtdiLibrary, does_not_open_what_is_not_there)
{
    ASSERT_TRUE(library.driver->isUsable());
    std::array<char, 16> serialNumber{"NO SUCH BRIDGE"};
    FT_HANDLE handle = nullptr;
    const FT_STATUS status = f.openEx(serialNumber.data(), FT_OPEN_BY_SERIAL_NUMBER, &handle);
    EXPECT_TRUE(status == FT_DEVICE_NOT_FOUND || status == FT_OTHER_ERROR) << status;
    EXPECT_EQ(handle, nullptr);
}

TEST_F(FtdiLibrary, knows_an_invalid_handle_in_every_call)
{
    ASSERT_TRUE(library.driver->isUsable());
    std::array<char, 4> buffer{};
    for (FT_HANDLE stale : {FT_HANDLE(nullptr), FT_HANDLE(buffer.data())}) {
        DWORD a = 0;
        DWORD b = 0;
        DWORD c = 0;
        EXPECT_EQ(f.resetDevice(stale), FT_INVALID_HANDLE);
        EXPECT_EQ(f.setBitMode(stale, 0xFF, FT_BITMODE_SYNC_FIFO), FT_INVALID_HANDLE);
        EXPECT_EQ(f.setLatencyTimer(stale, 2), FT_INVALID_HANDLE);
        EXPECT_EQ(f.setUsbParameters(stale, 65536, 65536), FT_INVALID_HANDLE);
        EXPECT_EQ(f.setFlowControl(stale, FT_FLOW_RTS_CTS, 0, 0), FT_INVALID_HANDLE);
        EXPECT_EQ(f.purge(stale, FT_PURGE_RX_AND_TX), FT_INVALID_HANDLE);
        EXPECT_EQ(f.setTimeouts(stale, 10, 10), FT_INVALID_HANDLE);
        EXPECT_EQ(f.getStatus(stale, &a, &b, &c), FT_INVALID_HANDLE);
        EXPECT_EQ(f.read(stale, buffer.data(), 1, &a), FT_INVALID_HANDLE);
        EXPECT_EQ(f.write(stale, buffer.data(), 1, &a), FT_INVALID_HANDLE);
        EXPECT_EQ(f.close(stale), FT_INVALID_HANDLE);
    }
}

TEST_F(FtdiLibrary, refuses_null_pointers)
{
    ASSERT_TRUE(library.driver->isUsable());
    constexpr FT_STATUS invalidParameter = 6;
    DWORD count = 0;
    FT_HANDLE handle = nullptr;
    EXPECT_EQ(f.createDeviceInfoList(nullptr), invalidParameter);
    EXPECT_EQ(f.getDeviceInfoList(nullptr, &count), invalidParameter);
    EXPECT_EQ(f.openEx(nullptr, FT_OPEN_BY_SERIAL_NUMBER, &handle), invalidParameter);
    std::array<char, 16> serialNumber{"NO SUCH BRIDGE"};
    EXPECT_EQ(f.openEx(serialNumber.data(), FT_OPEN_BY_SERIAL_NUMBER, nullptr), invalidParameter);
}
