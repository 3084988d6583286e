// config.ini, whatever stands in it: what the window and the dialog read there makes sense, and what they
// write is read as it was written. Input: the file; with a comment in its first line it is read by the dialog
// too, which takes longer than all the rest.

#include "device/detectornames.h"
#include "device/parameters/adclists.h"
#include "device/parameters/parameterkeys.h"
#include "device/parameters/storedvalue.h"
#include "device/protocol/parameterpackets.h"
#include "tests/fuzz/settingsfile.h"
#include "tests/fuzz/target.h"
#include "ui/developwindow.h"
#include "ui/mainwindow/mainwindow_rules.h"

#include <QSettings>

using Fuzz::require;

namespace {

/// What the dialog keeps, and no other key.
QStringList dialogKeys()
{
    QStringList keys{ParameterKeys::operation, ParameterKeys::dataFormat, ParameterKeys::testMode,
                     ParameterKeys::pcRange, ParameterKeys::mode};
    for (int number = ParameterKeys::firstVoltage; number <= ParameterKeys::lastField; ++number)
        keys.append(ParameterKeys::field(number));
    return keys;
}

QStringList textsOf(const QSettings &settings, const QStringList &keys)
{
    QStringList texts;
    for (const QString &key : keys)
        texts.append(storedValue(settings, key).toString());
    return texts;
}

/// A text of half a character, which no file holds, would come back as another.
bool canBeStored(const QString &text)
{
    return QString::fromUtf8(text.toUtf8()) == text;
}

d2xx::DeviceRecord recordOf(const QString &serialNumber)
{
    d2xx::DeviceRecord record{};
    d2xx::setText(record.serialNumber, serialNumber.toStdString());
    return record;
}

/// The first name that is no blank, alone, is one of them.
void holdDetectorNames(const QString &given)
{
    const DetectorNames names(given);
    bool hasName = false;
    for (const QString &part : given.split(u',')) {
        const QString name = part.trimmed();
        hasName = hasName || !name.isEmpty();
        const bool fits = name.toUtf8().size() < 16 && !name.contains(QChar::Null) && canBeStored(name);
        if (!name.isEmpty() && fits)
            require(names.include(recordOf(name)), "a device that is named is a detector");
    }
    require(hasName || names.include(recordOf(QStringLiteral("QV1K"))), "without a name it is QV1K");
    require(hasName || !names.include(recordOf(QStringLiteral("other"))), "without a name others are not");
}

/// What the settings page makes of the file.
void holdParameters(const QSettings &settings)
{
    const auto number = [&settings](const QString &key) {
        return storedValue(settings, key, 0).toInt();
    };
    const AdcSelection adc = AdcLists::selection({.operation = number(ParameterKeys::operation),
                                                  .dataFormat = number(ParameterKeys::dataFormat),
                                                  .testMode = number(ParameterKeys::testMode),
                                                  .pcRange = number(ParameterKeys::pcRange)});
    require(AdcSelection::ofWord(adc.word()) == adc, "an ADC selection has a word");
    require(AdcLists::selection(AdcLists::indexes(adc)) == adc, "an ADC selection has places in the lists");
    for (int field = ParameterKeys::firstVoltage; field < ParameterKeys::firstTiming; ++field) {
        const double volts = storedValue(settings, ParameterKeys::field(field), 0.0).toDouble();
        const int code = ParameterPacket::voltageCode(volts);
        if (volts >= -20 && volts <= 20)
            require(code >= 0 && code <= 65536, "a voltage in reach has a code in reach");
    }
    const QVariant debugMode = storedValue(settings, QStringLiteral("DebugMode"), false);
    require(MainWindowRules::isSwitchedOn(debugMode) == MainWindowRules::isSwitchedOn(debugMode.toString()),
            "a switch is what its text says");
}

/// A text that the window stores is read again as it was.
void holdTexts(const QSettings &settings)
{
    for (const QString &key :
         {QStringLiteral("SavePath"), QStringLiteral("D2xxLibrary"), QStringLiteral("DetectorNames")}) {
        const QString text = storedValue(settings, key).toString();
        if (!canBeStored(text))
            continue;
        const SettingsFile file;
        QSettings(file.path(), QSettings::IniFormat).setValue(key, text);
        const QSettings copy(file.path(), QSettings::IniFormat);
        require(storedValue(copy, key).toString() == text, "a text is read as it was stored");
    }
}

/// Opens the dialog on a file's content and closes it; the file that it leaves.
QByteArray storedByDialog(const QByteArray &content)
{
    const SettingsFile file(content);
    {
        QSettings settings(file.path(), QSettings::IniFormat);
        const developwindow dialog(&settings, nullptr);
    }
    return file.content();
}

QStringList dialogTexts(const QByteArray &content)
{
    const SettingsFile file(content);
    return textsOf(QSettings(file.path(), QSettings::IniFormat), dialogKeys());
}

void holdDialog(QByteArrayView input)
{
    const QByteArray first = storedByDialog(input.toByteArray());
    const QByteArray second = storedByDialog(first);
    const QStringList texts = dialogTexts(first);
    for (const QString &text : texts) {
        if (!canBeStored(text))
            return;
    }
    require(dialogTexts(second) == texts, "what the dialog stored it shows and stores again");
}

} // namespace

void Fuzz::tryInput(QByteArrayView input)
{
    const SettingsFile file(input);
    const QSettings settings(file.path(), QSettings::IniFormat);
    holdDetectorNames(storedValue(settings, QStringLiteral("DetectorNames"), QString()).toString());
    holdParameters(settings);
    holdTexts(settings);
    if (input.startsWith(';'))
        holdDialog(input);
}
