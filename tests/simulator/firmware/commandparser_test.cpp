#include "tests/simulator/bytes.h"

#include "simulator/firmware/commandparser.h"

#include <gmock/gmock.h>

using simulator::Command;
using simulator::CommandParser;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// What a parser hands over, as class, code and payload in hexadecimal text.
class Collected
{
public:
    void write(const QByteArray &bytes)
    {
        m_parser.write(bytes, [this](const Command &command) {
            const QByteArray head{QByteArray(1, static_cast<char>(command.frameClass)) +
                                  static_cast<char>(command.code)};
            texts.push_back(
                (head.toHex() + ' ' + command.payload.toByteArray().toHex()).trimmed().toStdString());
        });
    }
    void clear() { m_parser.clear(); }

    std::vector<std::string> texts;

private:
    CommandParser m_parser;
};

} // namespace

TEST(CommandParser, one_frame_in_one_write_is_one_command)
{
    Collected collected;
    collected.write(hex("FF AA 03 A0 0D EB"));
    EXPECT_THAT(collected.texts, ElementsAre("03a0"));
}

TEST(CommandParser, frames_glued_together_are_all_found)
{
    Collected collected;
    collected.write(hex("FF AA 03 AA 0D EB FF AA 03 A0 0D EB FF AA 00 00 0D EB"));
    EXPECT_THAT(collected.texts, ElementsAre("03aa", "03a0", "0000"));
}

TEST(CommandParser, a_frame_may_come_byte_by_byte)
{
    Collected collected;
    for (const char byte : hex("FF AA 02 FA 0D EB"))
        collected.write(QByteArray(1, byte));
    EXPECT_THAT(collected.texts, ElementsAre("02fa"));
}

TEST(CommandParser, a_frame_may_be_split_at_every_place)
{
    const QByteArray bytes = hex("FF AA 02 10 0D EB");
    for (qsizetype cut = 1; cut < bytes.size(); ++cut) {
        Collected collected;
        collected.write(bytes.left(cut));
        EXPECT_THAT(collected.texts, IsEmpty());
        collected.write(bytes.mid(cut));
        EXPECT_THAT(collected.texts, ElementsAre("0210")) << cut;
    }
}

TEST(CommandParser, a_parameter_frame_goes_on_to_the_end_of_the_write)
{
    Collected collected;
    collected.write(hex("FF AA 01 01 0D EB 01 B6 B7"));
    collected.write(hex("FF AA 02 10 0D EB"));
    EXPECT_THAT(collected.texts, ElementsAre("0101 01b6b7", "0210"));
}

TEST(CommandParser, the_head_of_a_parameter_frame_may_be_split_over_writes)
{
    Collected collected;
    collected.write(hex("FF AA 01"));
    collected.write(hex("01 0D EB 01 B6 B7"));
    EXPECT_THAT(collected.texts, ElementsAre("0101 01b6b7"));
}

TEST(CommandParser, a_payload_that_looks_like_a_frame_is_payload)
{
    Collected collected;
    collected.write(hex("FF AA 01 EE 0D EB FF AA 03 A0 0D EB"));
    EXPECT_THAT(collected.texts, ElementsAre("01ee ffaa03a00deb"));
}

TEST(CommandParser, a_control_frame_before_a_parameter_frame_in_one_write_is_found)
{
    Collected collected;
    collected.write(hex("FF AA 03 A1 0D EB FF AA 01 00 0D EB 00 00"));
    EXPECT_THAT(collected.texts, ElementsAre("03a1", "0100 0000"));
}

TEST(CommandParser, a_parameter_head_alone_has_no_payload)
{
    Collected collected;
    collected.write(hex("FF AA 01 02 0D EB"));
    EXPECT_THAT(collected.texts, ElementsAre("0102"));
}

TEST(CommandParser, stray_bytes_before_a_frame_are_passed_over)
{
    Collected collected;
    collected.write(hex("00 FF FF 12 AA FF FF AA 03 A0 0D EB"));
    EXPECT_THAT(collected.texts, ElementsAre("03a0"));
}

TEST(CommandParser, a_frame_with_a_wrong_end_mark_is_none_and_hides_no_other)
{
    Collected collected;
    collected.write(hex("FF AA 03 A0 0D EC FF AA 03 FF AA 03 A1 0D EB"));
    EXPECT_THAT(collected.texts, ElementsAre("03a1"));
}

TEST(CommandParser, the_device_direction_mark_is_no_command)
{
    Collected collected;
    collected.write(hex("FF BB 03 A0 0D EB"));
    EXPECT_THAT(collected.texts, IsEmpty());
}

TEST(CommandParser, an_incomplete_frame_can_be_forgotten)
{
    Collected collected;
    collected.write(hex("FF AA 03 A0"));
    collected.clear();
    collected.write(hex("0D EB"));
    EXPECT_THAT(collected.texts, IsEmpty());
}
