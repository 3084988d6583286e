#include "d2xx/arguments.h"
#include "d2xx/functions.h"
#include "d2xx/guard.h"
#include "d2xx/handlesource.h"

#include <gmock/gmock.h>

#include <set>
#include <stdexcept>
#include <string>
#include <vector>

TEST(Contract, the_record_of_a_device_is_laid_out_as_the_interface_says)
{
    EXPECT_EQ(sizeof(d2xx::DeviceRecord), 104U);
    EXPECT_EQ(offsetof(d2xx::DeviceRecord, id), 8U);
    EXPECT_EQ(offsetof(d2xx::DeviceRecord, serialNumber), 16U);
    EXPECT_EQ(offsetof(d2xx::DeviceRecord, description), 32U);
    EXPECT_EQ(offsetof(d2xx::DeviceRecord, handle), 96U);
}

TEST(Contract, a_text_that_does_not_fit_is_cut_and_always_terminated)
{
    char field[4] = {'x', 'x', 'x', 'x'};
    d2xx::setText(field, "ABCDEF");
    EXPECT_EQ(std::string(field), "ABC");
    d2xx::setText(field, "A");
    EXPECT_THAT(field, testing::ElementsAre('A', '\0', '\0', '\0'));
}

TEST(Contract, a_text_is_read_up_to_its_end_or_to_that_of_the_field)
{
    const char terminated[4] = {'A', '\0', 'B', '\0'};
    const char full[4] = {'A', 'B', 'C', 'D'};
    EXPECT_EQ(d2xx::textOf(terminated), "A");
    EXPECT_EQ(d2xx::textOf(full), "ABCD");
}

TEST(Contract, takes_the_modes_flows_sizes_latencies_and_masks_of_the_interface_and_no_others)
{
    std::set<int> modes;
    for (int mode = 0; mode < 256; ++mode) {
        if (d2xx::isBitMode(static_cast<std::uint8_t>(mode)))
            modes.insert(mode);
    }
    EXPECT_THAT(modes, testing::ElementsAre(0x00, 0x01, 0x02, 0x04, 0x08, 0x10, 0x20, 0x40));
    std::set<int> flows;
    for (int flow = 0; flow < 65536; ++flow) {
        if (d2xx::isFlowControl(static_cast<std::uint16_t>(flow)))
            flows.insert(flow);
    }
    EXPECT_THAT(flows, testing::ElementsAre(0x0000, 0x0100, 0x0200, 0x0400));
    EXPECT_FALSE(d2xx::isLatency(1));
    EXPECT_TRUE(d2xx::isLatency(2));
    EXPECT_TRUE(d2xx::isLatency(255));
    for (const std::uint32_t size : {64U, 128U, 65472U, 65536U})
        EXPECT_TRUE(d2xx::isTransferSize(size)) << size;
    for (const std::uint32_t size : {0U, 63U, 65U, 65537U, 65600U})
        EXPECT_FALSE(d2xx::isTransferSize(size)) << size;
    EXPECT_FALSE(d2xx::isPurgeMask(0));
    EXPECT_TRUE(d2xx::isPurgeMask(1));
    EXPECT_TRUE(d2xx::isPurgeMask(3));
    EXPECT_FALSE(d2xx::isPurgeMask(4));
}

TEST(Contract, fourteen_calls_are_exported_under_names_of_their_own)
{
    d2xx::Functions functions;
    std::vector<std::string> names;
    functions.forEachCall([&names](const char *name, auto &) { names.emplace_back(name); });
    EXPECT_EQ(names.size(), 14U);
    EXPECT_EQ(std::set<std::string>(names.begin(), names.end()).size(), 14U);
    EXPECT_THAT(names, testing::Each(testing::StartsWith("FT_")));
}

TEST(Contract, an_exception_becomes_a_status)
{
    EXPECT_EQ(d2xx::guarded([]() -> d2xx::Status { throw std::runtime_error("no memory"); }),
              d2xx::Status::OtherError);
    EXPECT_EQ(d2xx::guarded([] { return d2xx::Status::IoError; }), d2xx::Status::IoError);
}

TEST(Contract, a_handle_never_comes_again)
{
    d2xx::HandleSource source(0x1000);
    std::set<d2xx::Handle> handles;
    for (int i = 0; i < 1000; ++i) {
        const d2xx::Handle handle = source.next();
        EXPECT_NE(handle, nullptr);
        EXPECT_TRUE(handles.insert(handle).second);
    }
}
