#include "device/conversations.h"
#include "device/parameters/adclists.h"
#include "device/parameters/parameterdownload.h"
#include "device/parameters/parameterkeys.h"
#include "device/parameters/storedvalue.h"
#include "device/portmanager.h"
#include "device/protocol/currentrange.h"
#include "tools/commands.h"
#include "tools/detectorsession.h"
#include "tools/standardoutput.h"
#include "tools/summary.h"

#include <QJsonArray>
#include <QJsonObject>

#include <algorithm>
#include <array>

namespace {

using ParameterDownload::Rails;

/// What the arguments ask to be set.
struct Wanted
{
    const CurrentRange::Gear *gear = nullptr; ///< null: the range stays
    std::optional<Rails> rails;               ///< none: the voltages stay
};

struct Rail
{
    const char *name;
    double Rails::*volts;
};
constexpr std::array rails{Rail{"von", &Rails::von}, Rail{"voff", &Rails::voff}, Rail{"vss", &Rails::vss},
                           Rail{"vcom", &Rails::vcom}};

/// All sixteen voltages go to the detector in one frame, and nothing tells what it should be given for a rail
/// that was left out.
std::optional<Rails> railsOf(const CommandLine &line)
{
    Rails wanted;
    std::size_t given = 0;
    for (const Rail &rail : rails) {
        const auto volts = line.volts(QString::fromLatin1(rail.name), ParameterDownload::lowestRail,
                                      ParameterDownload::highestRail, ParameterDownload::railDecimals);
        if (!volts)
            continue;
        wanted.*rail.volts = *volts;
        ++given;
    }
    if (given == 0)
        return {};
    if (given < rails.size())
        CommandLine::refuse(QStringLiteral("--von, --voff, --vss and --vcom go together"));
    return wanted;
}

Wanted wantedBy(const CommandLine &line)
{
    Wanted wanted{.rails = railsOf(line)};
    if (line.isSet(QStringLiteral("range"))) {
        const int nanoamperes = line.value(QStringLiteral("range")).toInt();
        wanted.gear = std::find_if(CurrentRange::gears.begin(), CurrentRange::gears.end(),
                                   [=](const auto &gear) { return gear.nanoamperes == nanoamperes; });
    }
    if (wanted.gear == nullptr && !wanted.rails)
        CommandLine::refuse(QStringLiteral("set needs --range, or all four voltages"));
    return wanted;
}

/// Sends what is wanted, in the order and with the words of the settings page.
class Download
{
public:
    Download(DetectorSession &session, QJsonArray &done) : m_session(session), m_done(done) {}

    RunResult run(const Wanted &wanted)
    {
        const auto stored = [&](const QString &key, const QVariant &otherwise) -> QVariant {
            if (wanted.gear != nullptr && key == ParameterKeys::pcRange)
                return AdcLists::indexOf(AdcLists::pcRanges, wanted.gear->pcRange);
            return storedValue(m_settings, key, otherwise);
        };
        RunResult result;
        if (wanted.gear != nullptr) {
            result = send(ParameterDownload::timing(wanted.gear->integrationTime), "timing",
                          "set time sequence fail");
            if (result.problem.isEmpty())
                result = send(ParameterDownload::adc(stored), "adc", "set adc fail");
        }
        if (wanted.rails && result.problem.isEmpty())
            result = send(ParameterDownload::voltages(*wanted.rails, stored), "voltages", "set voltage fail");
        return result;
    }

private:
    RunResult send(const QByteArray &packet, const char *what, const char *failure)
    {
        if (TerminationSignals::received() != 0)
            return {QString::fromLatin1(EndReason::signal), ExitStatus::failed};
        if (!Conversation::download(m_session.link(), packet))
            return m_session.failure(QString::fromLatin1(failure));
        m_done.append(QString::fromLatin1(what));
        return {};
    }

    DetectorSession &m_session;
    QJsonArray &m_done;
    const QSettings m_settings{QStringLiteral("./config.ini"), QSettings::IniFormat}; ///< only read
};

RunResult setInto(QJsonObject &summary, const Wanted &wanted, const CommandLine &line, StandardOutput &output)
{
    const D2xxLibrary library = D2xxLibrary::load(line.value(QStringLiteral("library")));
    if (RunResult result = DetectorSession::check(library); !result.problem.isEmpty())
        return result;
    DetectorSession::tellWhetherSimulated(library, output);
    DetectorSession session(library);
    QJsonArray done;
    RunResult result = session.open(line.value(QStringLiteral("serial")));
    if (result.problem.isEmpty())
        result =
            session.ask([&] { return Download(session, done).run(wanted); }, [&] { return !done.isEmpty(); });
    Summary::addSource(summary, library, session.serial());
    summary[QLatin1String("set")] = done;
    if (result.problem.isEmpty())
        output.print(QStringLiteral("set success"));
    return result;
}

} // namespace

RunResult Commands::set(const CommandLine &line, StandardOutput &output)
{
    const Wanted wanted = wantedBy(line);
    return Summary::tell(
        line.isSet(QStringLiteral("json")), output,
        [&](QJsonObject &summary, StandardOutput &told) { return setInto(summary, wanted, line, told); });
}
