#include "ftdi/statusbytes.h"

#include "tests/ftdi/packed.h"

#include <gmock/gmock.h>

#include <limits>

using testing::IsEmpty;

namespace {

std::vector<std::uint8_t> stripped(std::vector<std::uint8_t> transfer)
{
    const auto kept = ftdi::withoutStatusBytes(transfer, packetSize);
    return {kept.begin(), kept.end()};
}

} // namespace

TEST(StatusBytes, are_taken_out_of_every_packet)
{
    for (const std::size_t length : {1U, 2U, 509U, 510U, 511U, 1020U, 1021U, 65280U}) {
        const auto payload = numbered(length, 17);
        EXPECT_EQ(stripped(packed(payload)), payload) << length;
    }
}

TEST(StatusBytes, alone_are_no_data)
{
    EXPECT_THAT(stripped({}), IsEmpty());
    EXPECT_THAT(stripped({0x32}), IsEmpty());
    EXPECT_THAT(stripped({0x32, 0x60}), IsEmpty());
}

TEST(StatusBytes, alone_behind_a_full_packet_add_nothing)
{
    auto transfer = packed(numbered(510));
    transfer.insert(transfer.end(), {0x32, 0x60});
    EXPECT_EQ(stripped(transfer), numbered(510));
}

TEST(StatusBytes, are_those_of_each_packet_also_of_packets_that_hold_less_or_more_than_a_transfer)
{
    const std::vector<std::uint8_t> telling(4, 0xFF);
    EXPECT_EQ(ftdi::lossesIn(telling, 1), 0U); // there is no second byte
    EXPECT_EQ(ftdi::lossesIn(telling, 2), 2U);
    EXPECT_EQ(ftdi::lossesIn(telling, 3), 1U);
    EXPECT_EQ(ftdi::lossesIn(telling, std::numeric_limits<std::size_t>::max()), 1U);
}
