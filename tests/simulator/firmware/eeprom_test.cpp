#include "tests/simulator/bytes.h"
#include "tests/support/debugoutput.h"
#include "tests/support/workingfolder.h"

#include "simulator/firmware/eeprom.h"

using simulator::Eeprom;

namespace {

Eeprom powerUp(const QString &serialNumber = QStringLiteral("QV1K"))
{
    return {QStringLiteral("./virtual-detector-eeprom.ini"), serialNumber};
}

} // namespace

TEST(Eeprom, all_32_words_survive_a_restart_once_they_were_committed)
{
    const WorkingFolder folder;
    QByteArray payload;
    for (quint32 i = 0; i < 32; ++i)
        payload += words({0xFFFFFFFFU - i});
    Eeprom before = powerUp();
    ASSERT_TRUE(before.download(payload));
    before.commit();
    EXPECT_EQ(powerUp().readback().left(128).toHex(), payload.toHex());
}

TEST(Eeprom, without_a_commit_nothing_survives)
{
    const WorkingFolder folder;
    Eeprom before = powerUp();
    ASSERT_TRUE(before.download(words({1})));
    EXPECT_EQ(powerUp().readback(), QByteArray(129, '\0'));
}

TEST(Eeprom, each_detector_has_its_own_words)
{
    const WorkingFolder folder;
    for (const quint32 number : {1U, 2U}) {
        Eeprom eeprom = powerUp(QString::number(number));
        ASSERT_TRUE(eeprom.download(words({number})));
        eeprom.commit();
    }
    EXPECT_EQ(sampleAt(powerUp(QStringLiteral("1")).readback(), 0), 1U);
    EXPECT_EQ(sampleAt(powerUp(QStringLiteral("2")).readback(), 0), 2U);
}

TEST(Eeprom, the_last_byte_is_the_sum_of_the_others)
{
    const WorkingFolder folder;
    Eeprom eeprom = powerUp();
    ASSERT_TRUE(eeprom.download(words({0xFF02FF03})));
    const QByteArray readback = eeprom.readback();
    EXPECT_EQ(readback.size(), 129);
    EXPECT_EQ(readback.back(), '\x03');
}

TEST(Eeprom, a_stored_copy_that_is_damaged_counts_as_empty_and_is_told)
{
    const WorkingFolder folder;
    folder.write(QStringLiteral("virtual-detector-eeprom.ini"), "[QV1K]\nWords=00112233\n");
    const DebugOutput output;
    EXPECT_EQ(powerUp().readback(), QByteArray(129, '\0'));
    EXPECT_TRUE(output.contains(QStringLiteral("does not hold 32 words")));
}

TEST(Eeprom, a_file_that_cannot_be_written_is_told)
{
    const WorkingFolder folder;
    folder.write(QStringLiteral("file"), "where a folder should be");
    const Eeprom eeprom(folder.filePath(QStringLiteral("file/eeprom.ini")), QStringLiteral("QV1K"));
    const DebugOutput output;
    eeprom.commit();
    EXPECT_TRUE(output.contains(QStringLiteral("could not be stored")));
}
