// The virtual detector's settings file, whatever stands in it: every setting lies where it makes sense, and a
// file that tells what was understood is understood alike. Input: the file.

#include "simulator/settings/settings.h"
#include "tests/fuzz/settingsfile.h"
#include "tests/fuzz/target.h"

#include <QSettings>

using Fuzz::require;

namespace {

using simulator::Settings;

template <typename Number>
bool isWithin(Number value, Number lowest, Number highest)
{
    return value >= lowest && value <= highest;
}

void holdRanges(const Settings &settings)
{
    require(!settings.serialNumbers.isEmpty(), "there is a detector");
    for (const QString &number : settings.serialNumbers) {
        require(isWithin<qsizetype>(number.toUtf8().size(), 1, 15), "a serial number is 1 to 15 bytes long");
        require(settings.serialNumbers.count(number) == 1, "serial numbers differ");
    }
    for (const QString &number : settings.unplugged)
        require(settings.serialNumbers.contains(number), "what is unplugged is one of the detectors");
    require(isWithin(settings.batteryLevel, 0, 100), "a battery holds 0 to 100 percent");
    require(isWithin(settings.light, 0.0, 1.0), "light is 0 to 1");
    require(settings.scene != simulator::Scene::Replay, "without a file nothing is replayed");
}

void holdRanges(const simulator::Faults &faults)
{
    using namespace std::chrono_literals;
    for (const int count :
         {faults.repliesLeft, faults.notReadyQueries, faults.failOpens, faults.failCalls, faults.hangCalls,
          faults.failStatus, faults.failReads, faults.failWrites, faults.shortReads, faults.shortWrites})
        require(count >= simulator::forEver, "what happens happens that often or for ever");
    for (const simulator::Milliseconds time :
         {faults.replyDelay, faults.hangTime, faults.removalDelay, faults.replugAfter.value_or(0ms)})
        require(isWithin<simulator::Milliseconds>(time, 0ms, 1h), "times are an hour at most");
    for (const std::optional<qint64> place : {faults.fromByte, faults.stallAfterBytes, faults.unplugAtByte,
                                              faults.tornBlock, faults.doubledBlock})
        require(place.value_or(0) >= 0, "a place in the stream is not before its beginning");
    require(isWithin(faults.replyBytesCut, 0, 256), "a reply loses what it has");
    require(isWithin(faults.replyBytesAdded, 0, 65536), "a reply grows within reason");
    require(isWithin(faults.tornBytes, 1, 131072), "a block loses a part or all of it");
    require(isWithin<quint32>(faults.openStatus, 1, 255), "an open that fails says so");
}

/// What was understood, told in a file of its own.
void tell(const Settings &settings, const QString &path)
{
    QSettings file(path, QSettings::IniFormat);
    file.setValue(QStringLiteral("SerialNumbers"), settings.serialNumbers);
    file.setValue(QStringLiteral("Unplugged"), settings.unplugged);
    file.setValue(QStringLiteral("Attached"), settings.attached);
    file.setValue(QStringLiteral("BatteryLevel"), settings.batteryLevel);
    file.setValue(QStringLiteral("Light"), QString::number(settings.light, 'g', 17));
    file.setValue(QStringLiteral("Seed"), QString::number(settings.seed));
    file.setValue(QStringLiteral("Pacing"), settings.pacing == simulator::Pacing::None
                                                ? QStringLiteral("none")
                                                : QStringLiteral("timing"));
    const simulator::Faults &faults = settings.faults;
    file.beginGroup(QStringLiteral("Faults"));
    if (faults.replyCommand)
        file.setValue(QStringLiteral("ReplyFaultCommand"),
                      QStringLiteral("%1").arg(*faults.replyCommand, 4, 16, QLatin1Char('0')));
    file.setValue(QStringLiteral("ReplyFaultCount"), faults.repliesLeft);
    file.setValue(QStringLiteral("ReplyDelayMs"), QString::number(faults.replyDelay.count()));
    file.setValue(QStringLiteral("CorruptReply"), faults.corruptReply);
    file.setValue(QStringLiteral("FailReads"), faults.failReads);
    file.setValue(QStringLiteral("ShortReadBytes"), QString::number(faults.shortReadBytes));
    file.setValue(QStringLiteral("ClaimedWaiting"), QString::number(faults.claimedWaiting));
    if (faults.tornBlock)
        file.setValue(QStringLiteral("TornBlockAt"), QString::number(*faults.tornBlock));
}

void holdAlike(const Settings &first, const Settings &second)
{
    require(first.serialNumbers == second.serialNumbers, "serial numbers are understood alike");
    require(first.unplugged == second.unplugged, "unplugged detectors are understood alike");
    require(first.attached == second.attached, "switches are understood alike");
    require(first.batteryLevel == second.batteryLevel, "numbers are understood alike");
    require(first.light == second.light, "the light is understood alike");
    require(first.seed == second.seed, "the seed is understood alike");
    require(first.pacing == second.pacing, "words are understood alike");
    require(first.faults.replyCommand == second.faults.replyCommand, "commands are understood alike");
    require(first.faults.repliesLeft == second.faults.repliesLeft, "counts are understood alike");
    require(first.faults.replyDelay == second.faults.replyDelay, "times are understood alike");
    require(first.faults.corruptReply == second.faults.corruptReply, "faults are understood alike");
    require(first.faults.failReads == second.faults.failReads, "failures are understood alike");
    require(first.faults.shortReadBytes == second.faults.shortReadBytes, "lengths are understood alike");
    require(first.faults.claimedWaiting == second.faults.claimedWaiting, "claims are understood alike");
    require(first.faults.tornBlock == second.faults.tornBlock, "places are understood alike");
}

} // namespace

void Fuzz::tryInput(QByteArrayView input)
{
    const SettingsFile given(input);
    const Settings settings = simulator::readSettings(given.path());
    holdRanges(settings);
    holdRanges(settings.faults);
    const SettingsFile told;
    tell(settings, told.path());
    const SettingsFile copy(told.content()); // read from the disk, and not from what was remembered of it
    holdAlike(settings, simulator::readSettings(copy.path()));
}
