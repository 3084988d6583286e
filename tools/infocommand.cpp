#include "device/conversations.h"
#include "device/parameters/adclists.h"
#include "device/parameters/parameterkeys.h"
#include "device/portmanager.h"
#include "device/protocol/parameterpackets.h"
#include "device/protocol/readback.h"
#include "device/protocol/timing.h"
#include "tools/commands.h"
#include "tools/detectorsession.h"
#include "tools/standardoutput.h"
#include "tools/summary.h"

#include <QJsonArray>
#include <QJsonObject>

#include <cmath>

namespace {

/// What there is to tell of a detector, under the keys of the summary.
class DetectorFacts
{
public:
    DetectorFacts(DetectorSession &session, QJsonObject &facts) : m_session(session), m_facts(facts) {}

    /// Asks for everything; ends with the first question that is not answered.
    RunResult ask();

private:
    RunResult askForVersion();
    RunResult askForBattery();
    RunResult askForParameters();
    RunResult askForEeprom();
    void addVoltages(const QList<int> &codes);

    [[nodiscard]] RunResult silence(const char *what) const
    {
        return m_session.failure(QStringLiteral("time-out: the detector did not tell its %1").arg(what));
    }
    void add(const char *key, const QJsonValue &value) { m_facts[QLatin1String(key)] = value; }

    DetectorSession &m_session;
    QJsonObject &m_facts;
};

template <typename Value, std::size_t count>
QString textOf(const std::array<AdcLists::Entry<Value>, count> &list, Value value)
{
    return QString::fromLatin1(list[static_cast<std::size_t>(AdcLists::indexOf(list, value))].text);
}

RunResult DetectorFacts::ask()
{
    for (const auto question : {&DetectorFacts::askForVersion, &DetectorFacts::askForBattery,
                                &DetectorFacts::askForParameters, &DetectorFacts::askForEeprom}) {
        RunResult result = (this->*question)();
        if (result.problem.isEmpty() && TerminationSignals::received() != 0)
            result = {QString::fromLatin1(EndReason::signal), ExitStatus::failed};
        if (!result.problem.isEmpty())
            return result;
    }
    return {};
}

RunResult DetectorFacts::askForVersion()
{
    const auto version = Readback::version(Conversation::readVersion(m_session.link()));
    if (!version)
        return silence("version");
    add("version", *version);
    return {};
}

RunResult DetectorFacts::askForBattery()
{
    const auto level = Conversation::batteryLevel(m_session.link());
    if (!level)
        return silence("battery charge");
    add("battery", *level);
    return {};
}

RunResult DetectorFacts::askForParameters()
{
    const auto parameters = Readback::parameters(Conversation::readParameters(m_session.link()));
    if (!parameters)
        return silence("parameters");
    add("mode", parameters->mode == 0 ? QStringLiteral("QV 1K") : QStringLiteral("QV 256"));
    add("adc",
        QJsonObject{
            {QStringLiteral("operation"), textOf(AdcLists::operations, parameters->adc.operation)},
            {QStringLiteral("dataFormat"), textOf(AdcLists::dataFormats, parameters->adc.dataFormat)},
            {QStringLiteral("testMode"), textOf(AdcLists::testModes, parameters->adc.testMode)},
            {QStringLiteral("picocoulombs"), textOf(AdcLists::pcRanges, parameters->adc.pcRange).toInt()}});
    addVoltages(parameters->voltageCodes);
    QJsonArray timing;
    for (qsizetype i = 0; i < parameters->timingWords.size(); ++i)
        timing.append(
            Timing::fromWire(Timing::fields[static_cast<std::size_t>(i)], parameters->timingWords[i]));
    add("timing", timing);
    return {};
}

void DetectorFacts::addVoltages(const QList<int> &codes)
{
    QJsonArray voltages;
    for (const int code : codes)
        voltages.append(ParameterPacket::voltageValue(code));
    add("voltages", voltages);
    const auto volts = [&](int number) {
        return voltages[number - ParameterKeys::firstVoltage];
    };
    add("von", volts(ParameterKeys::gateOnVoltage));
    add("voff", volts(ParameterKeys::gateOffVoltage));
    add("vss", volts(ParameterKeys::cathodeVoltage));
    add("vcom", volts(ParameterKeys::commonVoltage));
}

RunResult DetectorFacts::askForEeprom()
{
    const auto words = Readback::eeprom(Conversation::readEeprom(m_session.link()));
    if (!words)
        return silence("EEPROM");
    QJsonArray eeprom;
    for (const int word : *words)
        eeprom.append(word);
    add("eeprom", eeprom);
    return {};
}

/// "87", "QV 1K", "0 0.5 15": numbers with three decimals at most.
QString textOf(const QJsonValue &value)
{
    if (value.isArray()) {
        QStringList values;
        for (const QJsonValue &each : value.toArray())
            values << textOf(each);
        return values.join(u' ');
    }
    if (value.isObject()) {
        const QJsonObject object = value.toObject();
        QStringList values;
        for (auto entry = object.begin(); entry != object.end(); ++entry)
            values << entry.key() + u' ' + textOf(entry.value());
        return values.join(QStringLiteral(", "));
    }
    constexpr double thousandths = 1000.0;
    constexpr int digits = 12;
    return value.isDouble()
               ? QString::number(std::round(value.toDouble() * thousandths) / thousandths, 'g', digits)
               : value.toString();
}

RunResult infoInto(QJsonObject &summary, const CommandLine &line, StandardOutput &output)
{
    const D2xxLibrary library = D2xxLibrary::load(line.value(QStringLiteral("library")));
    if (RunResult result = DetectorSession::check(library); !result.problem.isEmpty())
        return result;
    DetectorSession::tellWhetherSimulated(library, output);
    DetectorSession session(library);
    RunResult result = session.open(line.value(QStringLiteral("serial")));
    if (result.problem.isEmpty())
        result = session.ask([&] { return DetectorFacts(session, summary).ask(); },
                             [&] { return summary.contains(QLatin1String("version")); });
    for (const char *key : {"version", "battery", "mode", "adc", "von", "voff", "vss", "vcom", "voltages",
                            "timing", "eeprom"}) {
        if (summary.contains(QLatin1String(key)))
            output.print(QStringLiteral("%1  %2")
                             .arg(QLatin1String(key), -8)
                             .arg(textOf(summary[QLatin1String(key)])));
    }
    Summary::addSource(summary, library, session.serial());
    return result;
}

} // namespace

RunResult Commands::info(const CommandLine &line, StandardOutput &output)
{
    return Summary::tell(
        line.isSet(QStringLiteral("json")), output,
        [&line](QJsonObject &summary, StandardOutput &told) { return infoInto(summary, line, told); });
}
