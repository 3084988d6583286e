#include "device/portmanager.h"
#include "tools/commands.h"
#include "tools/detectorsession.h"
#include "tools/standardoutput.h"
#include "tools/summary.h"

#include <QJsonArray>
#include <QJsonObject>

namespace {

/// A list does not tell what other programs hold. Opening it does, and changes nothing of a detector that
/// nobody uses; others' bridges are left alone.
bool isInUse(D2xx &driver, const AttachedBridge &bridge)
{
    if (bridge.isOpen || !bridge.isDetector)
        return bridge.isOpen;
    d2xx::Handle handle = nullptr;
    if (driver.open(bridge.serialNumber.toUtf8().constData(), &handle) != d2xx::Status::Ok)
        return true;
    driver.close(handle);
    return false;
}

RunResult listInto(QJsonObject &summary, const CommandLine &line, StandardOutput &output)
{
    const D2xxLibrary library = D2xxLibrary::load(line.value(QStringLiteral("library")));
    if (RunResult result = DetectorSession::check(library); !result.problem.isEmpty())
        return result;
    DetectorSession session(library);
    Summary::addSource(summary, library, {});
    const bool isAny = !session.link().listDevices().isEmpty();
    if (!session.link().isListed())
        return {QStringLiteral("what is attached cannot be listed"), ExitStatus::failed};
    if (!isAny)
        output.print(QStringLiteral("no detector found"));
    QJsonArray detectors;
    for (const AttachedBridge &bridge : session.link().bridges()) {
        const bool isBusy = isInUse(*library.driver, bridge);
        output.print(QStringLiteral("%1  %2%3%4%5")
                         .arg(bridge.serialNumber, bridge.description,
                              bridge.isDetector ? QString() : QStringLiteral(" (other bridge)"),
                              library.isVirtual ? QStringLiteral(" (simulated)") : QString(),
                              isBusy ? QStringLiteral(" (in use)") : QString()));
        detectors.append(QJsonObject{{QStringLiteral("serial"), bridge.serialNumber},
                                     {QStringLiteral("description"), bridge.description},
                                     {QStringLiteral("detector"), bridge.isDetector},
                                     {QStringLiteral("simulated"), library.isVirtual},
                                     {QStringLiteral("inUse"), isBusy}});
    }
    summary[QLatin1String("detectors")] = detectors;
    return {};
}

} // namespace

RunResult Commands::list(const CommandLine &line, StandardOutput &output)
{
    return Summary::tell(
        line.isSet(QStringLiteral("json")), output,
        [&line](QJsonObject &summary, StandardOutput &told) { return listInto(summary, line, told); });
}
