#include "device/detectornames.h"

#include <gtest/gtest.h>

namespace {

d2xx::DeviceRecord record(std::string_view serialNumber, std::string_view description)
{
    d2xx::DeviceRecord record{};
    d2xx::setText(record.serialNumber, serialNumber);
    d2xx::setText(record.description, description);
    return record;
}

} // namespace

TEST(DetectorNames, a_bridge_is_known_by_its_serial_number_or_by_its_description)
{
    const DetectorNames names;
    EXPECT_TRUE(names.include(record("QV1K", "")));
    EXPECT_TRUE(names.include(record("QV1K-0042", "a bridge")));
    EXPECT_TRUE(names.include(record("FT7A3B9C", "QV1K detector")));
}

TEST(DetectorNames, a_bridge_of_somebody_else_is_none)
{
    const DetectorNames names;
    EXPECT_FALSE(names.include(record("FT7A3B9C", "USB serial converter")));
    EXPECT_FALSE(names.include(record("", "")));
    EXPECT_FALSE(names.include(record("MY QV1K", "cable of the QV1K")));
    EXPECT_FALSE(names.include(record("qv1k", "qv1k")));
}

TEST(DetectorNames, can_be_other_ones)
{
    const DetectorNames names(QStringLiteral(" FT7A ,, Lab"));
    EXPECT_TRUE(names.include(record("FT7A3B9C", "")));
    EXPECT_TRUE(names.include(record("1", "Lab 3")));
    EXPECT_FALSE(names.include(record("QV1K", "QV1K detector")));
    EXPECT_FALSE(names.include(record("1", "2"))) << "an empty name is none";
}

TEST(DetectorNames, without_any_are_the_usual_ones)
{
    EXPECT_TRUE(DetectorNames(QStringLiteral(" ,")).include(record("QV1K", "")));
    EXPECT_FALSE(DetectorNames(QStringLiteral(" ,")).include(record("X", "")));
}
