#include "tests/support/debugoutput.h"
#include "tests/support/workingfolder.h"

#include "simulator/settings/settings.h"

#include <QRegularExpression>

using namespace std::chrono_literals;
using simulator::Call;
using simulator::Pacing;
using simulator::readSettings;
using simulator::Scene;
using simulator::Settings;
using simulator::SettingsFile;

namespace {

const QString fileName = QStringLiteral("virtual-detector.ini");

class SettingsTest : public testing::Test
{
protected:
    Settings read(const QByteArray &content)
    {
        folder.write(fileName, content);
        return readSettings(fileName);
    }

    WorkingFolder folder;
    DebugOutput output;
};

} // namespace

TEST_F(SettingsTest, without_a_file_everything_has_its_default)
{
    const Settings settings = readSettings(fileName);
    EXPECT_EQ(settings.serialNumbers, QStringList{QStringLiteral("QV1K")});
    EXPECT_TRUE(settings.attached);
    EXPECT_EQ(settings.batteryLevel, 87);
    EXPECT_EQ(settings.scene, Scene::Phantom);
    EXPECT_EQ(settings.light, 1.0);
    EXPECT_EQ(settings.pacing, Pacing::Timing);
    EXPECT_EQ(settings.seed, 1U);
    EXPECT_EQ(settings.faults.failOpens, 0);
    EXPECT_FALSE(settings.faults.unplugAtByte);
    EXPECT_TRUE(output.messages().isEmpty());
    EXPECT_TRUE(folder.read(fileName).isNull()) << "and none is made";
}

TEST_F(SettingsTest, every_setting_is_read)
{
    const Settings settings = read("SerialNumbers=A, B\nAttached=false\nBatteryLevel=12\nScene=chart\n"
                                   "Light=0.25\nPacing=none\nSeed=99\nReplayFile=x/y.raw\n");
    EXPECT_EQ(settings.serialNumbers, (QStringList{QStringLiteral("A"), QStringLiteral("B")}));
    EXPECT_FALSE(settings.attached);
    EXPECT_EQ(settings.batteryLevel, 12);
    EXPECT_EQ(settings.scene, Scene::Chart);
    EXPECT_EQ(settings.light, 0.25);
    EXPECT_EQ(settings.pacing, Pacing::None);
    EXPECT_EQ(settings.seed, 99U);
    EXPECT_EQ(settings.replayFile, QStringLiteral("x/y.raw"));
    EXPECT_TRUE(output.messages().isEmpty());
}

TEST_F(SettingsTest, every_fault_is_read)
{
    const auto faults =
        read("[Faults]\nReplyFaultCommand=03A0\nReplyFaultCount=2\nReplyDelayMs=30\nShortReply=1\nLongReply="
             "2\n"
             "CorruptReply=yes\nMissingReply=1\nNotReadyQueries=3\nFailOpens=4\nOpenStatus=18\nFailReads=5\n"
             "FailWrites=6\nStallAfterBytes=7\nUnplugAtByte=8\nTornBlockAt=9\nTornBlockBytes=10\n"
             "DoubledBlockAt=11\n")
            .faults;
    EXPECT_EQ(faults.replyCommand, 0x03A0);
    EXPECT_EQ(faults.repliesLeft, 2);
    EXPECT_EQ(faults.replyDelay, 30ms);
    EXPECT_EQ(faults.replyBytesCut, 1);
    EXPECT_EQ(faults.replyBytesAdded, 2);
    EXPECT_TRUE(faults.corruptReply);
    EXPECT_TRUE(faults.missingReply);
    EXPECT_EQ(faults.notReadyQueries, 3);
    EXPECT_EQ(faults.failOpens, 4);
    EXPECT_EQ(faults.openStatus, 18U);
    EXPECT_EQ(faults.failReads, 5);
    EXPECT_EQ(faults.failWrites, 6);
    EXPECT_EQ(faults.stallAfterBytes, 7);
    EXPECT_EQ(faults.unplugAtByte, 8);
    EXPECT_EQ(faults.tornBlock, 9);
    EXPECT_EQ(faults.tornBytes, 10);
    EXPECT_EQ(faults.doubledBlock, 11);
    EXPECT_TRUE(output.messages().isEmpty());
}

TEST_F(SettingsTest, every_fault_of_the_transfers_is_read)
{
    const auto faults = read("[Faults]\nFaultsFromByte=1\nFailStatus=2\nFailReadsConsume=true\nShortReads=3\n"
                             "ShortReadBytes=4\nShortWrites=5\nShortWriteBytes=6\n")
                            .faults;
    EXPECT_EQ(faults.fromByte, 1);
    EXPECT_EQ(faults.failStatus, 2);
    EXPECT_TRUE(faults.failedReadsTake);
    EXPECT_EQ(faults.shortReads, 3);
    EXPECT_EQ(faults.shortReadBytes, 4U);
    EXPECT_EQ(faults.shortWrites, 5);
    EXPECT_EQ(faults.shortWriteBytes, 6U);
    EXPECT_TRUE(output.messages().isEmpty());
}

TEST_F(SettingsTest, every_fault_of_the_calls_is_read)
{
    const auto faults =
        read("[Faults]\nFailCalls=Close,Purge\nFailCallsCount=2\nHangCalls=OpenEx\n"
             "HangCallsCount=3\nHangMs=40\nClaimedDevices=5\nClaimedWaiting=6\nClaimedRead=7\n")
            .faults;
    EXPECT_EQ(faults.failingCalls, (QSet{Call::Close, Call::Purge}));
    EXPECT_EQ(faults.failCalls, 2);
    EXPECT_EQ(faults.hangingCalls, QSet{Call::Open});
    EXPECT_EQ(faults.hangCalls, 3);
    EXPECT_EQ(faults.hangTime, 40ms);
    EXPECT_EQ(faults.claimedDevices, 5U);
    EXPECT_EQ(faults.claimedWaiting, 6U);
    EXPECT_EQ(faults.claimedRead, 7U);
    EXPECT_TRUE(output.messages().isEmpty());
}

TEST_F(SettingsTest, every_fault_of_the_cable_is_read)
{
    const Settings settings =
        read("SerialNumbers=A,B\nUnplugged=B\n[Faults]\nReplugAfterMs=3\nRemovalMessage=late\n"
             "RemovalDelayMs=4\nKeepsStreaming=true\n");
    EXPECT_EQ(settings.unplugged, QStringList{QStringLiteral("B")});
    EXPECT_EQ(settings.faults.replugAfter, 3ms);
    EXPECT_EQ(settings.faults.removalMessage, simulator::RemovalMessage::Late);
    EXPECT_EQ(settings.faults.removalDelay, 4ms);
    EXPECT_TRUE(settings.faults.keepsStreaming);
    EXPECT_TRUE(output.messages().isEmpty());
}

TEST_F(SettingsTest, only_detectors_that_there_are_can_be_unplugged)
{
    EXPECT_EQ(read("SerialNumbers=A,B\nUnplugged=B,C\n").unplugged, QStringList{QStringLiteral("B")});
    EXPECT_EQ(output.messages().size(), 1);
    EXPECT_TRUE(output.contains(QStringLiteral("Unplugged=C is not used: choose of SerialNumbers")));
}

TEST_F(SettingsTest, an_empty_list_of_unplugged_detectors_names_none)
{
    EXPECT_EQ(read("SerialNumbers=A,B\nUnplugged=\n").unplugged, QStringList());
    EXPECT_EQ(read("SerialNumbers=A,B\nUnplugged=B,\n").unplugged, QStringList{QStringLiteral("B")});
    EXPECT_TRUE(output.messages().isEmpty()) << qPrintable(output.messages().join(u'\n'));
}

TEST_F(SettingsTest, a_call_that_cannot_be_told_to_fail_leaves_a_line_and_the_others_do)
{
    const auto faults = read("[Faults]\nFailCalls=Close,Read,close,Purge\n").faults;
    EXPECT_EQ(faults.failingCalls, (QSet{Call::Close, Call::Purge}));
    EXPECT_EQ(output.messages().size(), 2);
    EXPECT_TRUE(output.contains(QStringLiteral("FailCalls=Read is not used: choose of Close, Purge, ")));
}

TEST_F(SettingsTest, a_fault_may_happen_for_ever_and_not_less_than_never)
{
    EXPECT_EQ(read("[Faults]\nFailReads=-1\n").faults.failReads, simulator::forEver);
    EXPECT_TRUE(output.messages().isEmpty());
    EXPECT_EQ(read("[Faults]\nFailReads=-22\n").faults.failReads, 0);
    EXPECT_EQ(output.messages().size(), 1);
}

TEST_F(SettingsTest, a_value_that_makes_no_sense_leaves_a_line_and_the_default)
{
    const Settings settings = read("BatteryLevel=101\nLight=1.5\nScene=sunset\nAttached=perhaps\nSeed=-1\n"
                                   "Pacing=fast\n[Faults]\nFailReads=many\nReplyFaultCommand=3A0\n");
    EXPECT_EQ(settings.batteryLevel, 87);
    EXPECT_EQ(settings.light, 1.0);
    EXPECT_EQ(settings.scene, Scene::Phantom);
    EXPECT_TRUE(settings.attached);
    EXPECT_EQ(settings.seed, 1U);
    EXPECT_EQ(settings.pacing, Pacing::Timing);
    EXPECT_EQ(settings.faults.failReads, 0);
    EXPECT_FALSE(settings.faults.replyCommand);
    EXPECT_EQ(output.messages().size(), 8);
    EXPECT_TRUE(
        output.contains(QStringLiteral("BatteryLevel=101 is not used: a whole number from 0 to 100")));
    EXPECT_TRUE(output.contains(QStringLiteral("choose one of chart, dark, flat, phantom, replay")));
}

TEST_F(SettingsTest, a_command_is_four_hexadecimal_digits)
{
    EXPECT_EQ(read("[Faults]\nReplyFaultCommand=03fa\n").faults.replyCommand, 0x03FA);
    EXPECT_TRUE(output.messages().isEmpty());
    for (const char *other : {"3A0", "103A0", "03G0", "0x3A", "+3A0"})
        EXPECT_FALSE(read(QByteArray("[Faults]\nReplyFaultCommand=") + other + '\n').faults.replyCommand)
            << other;
    EXPECT_EQ(output.messages().size(), 5);
    EXPECT_TRUE(output.contains(
        QStringLiteral("ReplyFaultCommand=03G0 is not used: class and code of a command in four")));
}

TEST_F(SettingsTest, a_number_that_is_none_leaves_the_default)
{
    EXPECT_EQ(read("Light=nan\n").light, 1.0);
    EXPECT_EQ(read("Light=0,5\n").light, 1.0);
    EXPECT_EQ(read("Light=-0.1\n").light, 1.0);
    EXPECT_EQ(output.messages().size(), 3);
}

TEST_F(SettingsTest, a_key_that_does_not_exist_leaves_a_line)
{
    const Settings settings = read("Lihgt=0\n[Faults]\nFailure=1\n");
    EXPECT_EQ(settings.light, 1.0);
    EXPECT_TRUE(output.contains(QStringLiteral("there is no setting Lihgt")));
    EXPECT_TRUE(output.contains(QStringLiteral("there is no setting Faults/Failure")));
}

TEST_F(SettingsTest, serial_numbers_that_do_not_fit_are_left_out)
{
    const Settings settings = read("SerialNumbers=A,A,,1234567890123456,123456789012345\n");
    EXPECT_EQ(settings.serialNumbers.join(u'|'), QStringLiteral("A|123456789012345"));
    EXPECT_EQ(output.messages().size(), 3);
}

TEST_F(SettingsTest, an_empty_list_of_serial_numbers_leaves_the_default)
{
    EXPECT_EQ(read("SerialNumbers=\n").serialNumbers, QStringList{QStringLiteral("QV1K")});
    EXPECT_EQ(output.messages().size(), 1);
}

TEST_F(SettingsTest, a_replay_without_a_whole_frame_shows_the_phantom)
{
    folder.write(QStringLiteral("short.raw"), QByteArray(4194303, '\0'));
    EXPECT_EQ(read("Scene=replay\nReplayFile=short.raw\n").scene, Scene::Phantom);
    EXPECT_TRUE(output.contains(QStringLiteral("no file with a whole frame")));
    folder.write(QStringLiteral("whole.raw"), QByteArray(4194304, '\0'));
    EXPECT_EQ(read("Scene=replay\nReplayFile=whole.raw\n").scene, Scene::Replay);
}

TEST_F(SettingsTest, the_template_gives_the_defaults_without_a_line)
{
    QFile file(QStringLiteral(QV1K_SIMULATOR_SOURCE "/virtual-detector.ini.example"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray text = file.readAll();
    EXPECT_EQ(read(text).light, 1.0);
    EXPECT_TRUE(output.messages().isEmpty()) << qPrintable(output.messages().join(u'\n'));
}

TEST_F(SettingsTest, the_template_names_settings_that_exist)
{
    QFile file(QStringLiteral(QV1K_SIMULATOR_SOURCE "/virtual-detector.ini.example"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    QString text = QString::fromUtf8(file.readAll());
    text.replace(QRegularExpression(QStringLiteral("\n;(\\w+=)")), QStringLiteral("\n\\1"));
    const Settings settings = read(text.toUtf8());
    EXPECT_EQ(settings.replayFile, QStringLiteral("recording.raw"));
    EXPECT_EQ(settings.faults.replyDelay, 3s);
    EXPECT_EQ(settings.faults.doubledBlock, 40);
    EXPECT_TRUE(output.messages().isEmpty()) << qPrintable(output.messages().join(u'\n'));
}

TEST_F(SettingsTest, the_first_look_always_has_the_settings)
{
    SettingsFile file(fileName);
    EXPECT_TRUE(file.changed(0s));
    EXPECT_FALSE(file.changed(10s)) << "and the next only when it was written";
}

TEST_F(SettingsTest, a_file_that_is_made_written_or_removed_is_noticed)
{
    SettingsFile file(fileName);
    EXPECT_TRUE(file.changed(0s));
    folder.write(fileName, "Light=0.5\n");
    EXPECT_EQ(file.changed(1s).value_or(Settings()).light, 0.5);
    folder.write(fileName, "Light=0.25\n");
    EXPECT_EQ(file.changed(2s).value_or(Settings()).light, 0.25);
    QFile::remove(fileName);
    const auto settings = file.changed(3s);
    ASSERT_TRUE(settings);
    EXPECT_EQ(settings->light, 1.0);
}

TEST_F(SettingsTest, the_file_is_not_looked_at_more_often_than_every_200_ms)
{
    SettingsFile file(fileName);
    EXPECT_TRUE(file.changed(0s));
    folder.write(fileName, "Light=0.5\n");
    EXPECT_FALSE(file.changed(199ms));
    EXPECT_TRUE(file.changed(200ms));
}
