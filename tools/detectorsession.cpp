#include "tools/detectorsession.h"

#include "device/conversations.h"
#include "device/portmanager.h"
#include "log/logmanager.h"
#include "tools/standardoutput.h"

DetectorSession::DetectorSession(const D2xxLibrary &library)
{
    LogManager::createInstance();
    PortManager::setDriver(library.driver);
    PortManager::createInstance();
    LogManager::instance()->writeLog(library.provenance());
}

DetectorSession::~DetectorSession()
{
    PortManager::destroyInstance();
    LogManager::destroyInstance();
}

RunResult DetectorSession::check(const D2xxLibrary &library)
{
    if (library.driver->isUsable())
        return {};
    return {QStringLiteral("no driver library: %1").arg(library.problem), ExitStatus::failed};
}

void DetectorSession::tellWhetherSimulated(const D2xxLibrary &library, StandardOutput &output)
{
    if (library.isVirtual)
        output.print(QStringLiteral("Virtual detector: what follows is simulated, not measured."));
}

PortManager &DetectorSession::link() const
{
    return *PortManager::instance();
}

RunResult DetectorSession::open(const QString &serial)
{
    const QStringList attached = link().listDevices();
    const QStringList detectors = link().detectors();
    const QString numbers = attached.join(QStringLiteral(", "));
    if (attached.isEmpty())
        return {QStringLiteral("no detector found"), ExitStatus::failed};
    if (serial.isEmpty() && detectors.isEmpty())
        return {QStringLiteral("no detector found, but other bridges; --serial names one all the same: ") +
                    numbers,
                ExitStatus::failed};
    if (serial.isEmpty() && detectors.size() > 1)
        return {QStringLiteral("several detectors are attached, choose one with --serial: ") +
                    detectors.join(QStringLiteral(", ")),
                ExitStatus::wrongUsage};
    m_serial = serial.isEmpty() ? detectors.constFirst() : serial;
    if (!attached.contains(m_serial))
        return {QStringLiteral("no detector %1 found; attached: %2").arg(m_serial, numbers),
                ExitStatus::failed};
    if (link().openDevice(m_serial))
        return {};
    const QString told = link().problem();
    const QString reason = told.isEmpty() ? QStringLiteral("another program may hold it") : told;
    return {QStringLiteral("the detector %1 cannot be opened; %2").arg(m_serial, reason), ExitStatus::failed};
}

RunResult DetectorSession::ask(const std::function<RunResult()> &work,
                               const std::function<bool()> &wasAnswered)
{
    RunResult result = work();
    if (result.problem.isEmpty() || wasAnswered() || link().isLost() || TerminationSignals::received() != 0)
        return result;
    link().setMayBeStreaming(true);
    Conversation::haltIfStreaming(link());
    return work();
}

RunResult DetectorSession::failure(const QString &problem) const
{
    if (link().checkLost())
        return {QString::fromLatin1(EndReason::unplugged), ExitStatus::failed};
    return {problem, ExitStatus::failed};
}
