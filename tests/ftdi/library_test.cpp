#include "d2xx/arguments.h"
#include "device/d2xxlibrary.h"

#include <gtest/gtest.h>

#include <libusb.h>

#include <array>
#include <cstring>

using namespace d2xx;

namespace {

/// Whether the USB can be looked at; there is never anything on it.
bool isUsbUsable = true;

} // namespace

// Stand in for the calls of libusb with which the library looks, so that it does not matter whether there is
// a USB here and what is plugged in.
extern "C" {
int libusb_init(libusb_context **context)
{
    static char thing;
    *context = reinterpret_cast<libusb_context *>(&thing);
    return LIBUSB_SUCCESS;
}

void libusb_exit(libusb_context *) {}

ssize_t libusb_get_device_list(libusb_context *, libusb_device ***list)
{
    static libusb_device *none = nullptr;
    *list = &none;
    return isUsbUsable ? 0 : LIBUSB_ERROR_OTHER;
}

void libusb_free_device_list(libusb_device **, int) {}
}

namespace {

/// The shared library, loaded as the program loads it.
class FtdiLibrary : public testing::Test
{
protected:
    ~FtdiLibrary() override { isUsbUsable = true; }

    Status open()
    {
        std::array<char, 16> serialNumber{"NO SUCH BRIDGE"};
        return f.openEx(serialNumber.data(), openBySerialNumber, &handle);
    }

    const D2xxLibrary library = D2xxLibrary::load(QStringLiteral(QV1K_FTDI_LIBRARY));
    const Functions &f = library.driver->functions();
    Handle handle = nullptr;
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

TEST_F(FtdiLibrary, lists_nothing_where_nothing_is_plugged_in)
{
    ASSERT_TRUE(library.driver->isUsable());
    quint32 count = 99;
    EXPECT_EQ(f.createDeviceInfoList(&count), Status::Ok);
    EXPECT_EQ(count, 0U);
    DeviceRecord record{};
    quint32 told = 99;
    EXPECT_EQ(f.getDeviceInfoList(&record, &told), Status::Ok);
    EXPECT_EQ(told, 0U);
}

TEST_F(FtdiLibrary, says_that_it_cannot_list_where_there_is_no_usable_usb)
{
    ASSERT_TRUE(library.driver->isUsable());
    isUsbUsable = false;
    quint32 count = 99;
    EXPECT_EQ(f.createDeviceInfoList(&count), Status::OtherError);
}

TEST_F(FtdiLibrary, does_not_open_what_is_not_there_and_says_so)
{
    ASSERT_TRUE(library.driver->isUsable());
    EXPECT_EQ(open(), Status::DeviceNotFound);
    EXPECT_EQ(handle, nullptr);
    EXPECT_EQ(library.driver->problem(nullptr),
              QStringLiteral("No bridge with the serial number NO SUCH BRIDGE is plugged in."));
}

TEST_F(FtdiLibrary, opens_nothing_where_there_is_no_usable_usb_and_says_so)
{
    ASSERT_TRUE(library.driver->isUsable());
    isUsbUsable = false;
    EXPECT_EQ(open(), Status::OtherError);
    EXPECT_EQ(handle, nullptr);
    EXPECT_EQ(library.driver->problem(nullptr), QStringLiteral("The system's USB cannot be used."));
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
    ASSERT_NE(open(), Status::Ok);
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
    EXPECT_EQ(f.createDeviceInfoList(nullptr), invalidParameter);
    EXPECT_EQ(f.getDeviceInfoList(nullptr, &count), invalidParameter);
    EXPECT_EQ(f.openEx(nullptr, openBySerialNumber, &handle), invalidParameter);
    std::array<char, 16> serialNumber{"NO SUCH BRIDGE"};
    EXPECT_EQ(f.openEx(serialNumber.data(), openBySerialNumber, nullptr), invalidParameter);
}
