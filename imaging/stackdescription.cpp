#include "imaging/stackdescription.h"

#include "device/protocol/frameformat.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QJsonArray>

#include <array>

namespace {

constexpr std::array timingNames{"framePeriod", "frameHead",   "frameTail", "clkCycle",  "clkHigh",
                                 "outGap",      "outpCkGap",   "ckHigh",    "ckGap",     "ckOutnGap",
                                 "ckpMuxGap",   "muxHigh",     "muxGap",    "muxCknGap", "adcStartDelay",
                                 "adcIntA",     "adcEndDelay", "adcIntB"};
static_assert(timingNames.size() == Timing::count);

QJsonValue ofText(const QString &text)
{
    return text.isEmpty() ? QJsonValue() : QJsonValue(text);
}

template <typename Fact>
QJsonValue ofFact(const std::optional<Fact> &fact)
{
    return fact ? QJsonValue(*fact) : QJsonValue();
}

QJsonValue ofVoltages(const std::optional<RecordingFacts::Voltages> &volts)
{
    if (!volts)
        return {};
    return QJsonObject{{QStringLiteral("vss"), volts->vss},
                       {QStringLiteral("vcom"), volts->vcom},
                       {QStringLiteral("von"), volts->von},
                       {QStringLiteral("voff"), volts->voff}};
}

QJsonValue ofTiming(const std::optional<Timing> &timing)
{
    if (!timing)
        return {};
    QJsonObject values;
    for (std::size_t i = 0; i < timingNames.size(); ++i)
        values[QLatin1String(timingNames[i])] = (*timing).*Timing::fields[i];
    return values;
}

std::optional<int> numberIn(const QJsonValue &value)
{
    return value.isDouble() ? std::optional(value.toInt()) : std::nullopt;
}

} // namespace

QJsonObject StackDescription::ofRecording(const RecordingFacts &facts)
{
    const QJsonObject program{{QStringLiteral("name"), QCoreApplication::applicationName()},
                              {QStringLiteral("version"), ofText(QCoreApplication::applicationVersion())}};
    const QJsonObject detector{{QStringLiteral("serial_number"), ofText(facts.serial)},
                               {QStringLiteral("driver_library"), ofText(facts.library)},
                               {QStringLiteral("simulated"), ofFact(facts.isSimulated)},
                               {QStringLiteral("test_pattern"), ofFact(facts.testPattern)}};
    const QJsonObject settings{{QStringLiteral("current_range_nA"), ofFact(facts.currentRange)},
                               {QStringLiteral("voltages_V"), ofVoltages(facts.voltages)},
                               {QStringLiteral("timing_ns"), ofTiming(facts.timing)},
                               {QStringLiteral("grey_levels_calibrated"), ofFact(facts.isCalibrated)}};
    return {{QStringLiteral("program"), program},
            {QStringLiteral("detector"), detector},
            {QStringLiteral("settings"), settings}};
}

RecordingFacts StackDescription::factsOf(const QJsonObject &description)
{
    const QJsonObject detector = description[QLatin1String("detector")].toObject();
    const QJsonObject settings = description[QLatin1String("settings")].toObject();
    RecordingFacts facts{.serial = detector[QLatin1String("serial_number")].toString(),
                         .library = detector[QLatin1String("driver_library")].toString()};
    if (const QJsonValue simulated = detector[QLatin1String("simulated")]; simulated.isBool())
        facts.isSimulated = simulated.toBool();
    facts.testPattern = numberIn(detector[QLatin1String("test_pattern")]);
    facts.currentRange = numberIn(settings[QLatin1String("current_range_nA")]);
    if (const QJsonValue volts = settings[QLatin1String("voltages_V")]; volts.isObject())
        facts.voltages = RecordingFacts::Voltages{.vss = volts[QLatin1String("vss")].toDouble(),
                                                  .vcom = volts[QLatin1String("vcom")].toDouble(),
                                                  .von = volts[QLatin1String("von")].toDouble(),
                                                  .voff = volts[QLatin1String("voff")].toDouble()};
    if (const QJsonValue values = settings[QLatin1String("timing_ns")]; values.isObject()) {
        Timing timing;
        for (std::size_t i = 0; i < timingNames.size(); ++i)
            timing.*Timing::fields[i] = values[QLatin1String(timingNames[i])].toInt();
        facts.timing = timing;
    }
    return facts;
}

QJsonObject StackDescription::ofCurrents(const QString &format, int frames)
{
    return {{QStringLiteral("format"), format},
            {QStringLiteral("shape"), QJsonArray{frames, FrameFormat::side, FrameFormat::side}},
            {QStringLiteral("axes"), QStringLiteral("frame, row from the top, column from the left")},
            {QStringLiteral("type"), QStringLiteral("float32")},
            {QStringLiteral("byte_order"),
             Q_BYTE_ORDER == Q_LITTLE_ENDIAN ? QStringLiteral("little") : QStringLiteral("big")},
            {QStringLiteral("quantity"), QStringLiteral("photocurrent, not calibrated")},
            {QStringLiteral("unit"), QStringLiteral("nA")}};
}

QString StackDescription::timeText(qint64 milliseconds)
{
    return QDateTime::fromMSecsSinceEpoch(milliseconds, Qt::UTC).toString(Qt::ISODateWithMs);
}
