// A driver library as the program loads it, by file name: the virtual detector's behind a wire that one thing
// can go wrong on. What it exports beside the calls is told in arming.h.

#include "d2xx/exports.h"
#include "tests/matrix/arming.h"
#include "tests/matrix/baddisk.h"
#include "tests/matrix/wire.h"
#include "tests/support/providercalls.h"
#include "tests/support/virtualcalls.h"

namespace {

d2xx::Functions faultyCalls();

Arming armingOfEnvironment()
{
    const QByteArray name = qgetenv("QV1K_MATRIX_FAULT");
    return {.fault = faultNamed(std::string_view(name.constData(), static_cast<std::size_t>(name.size()))),
            .command = qgetenv("QV1K_MATRIX_COMMAND").toUShort(nullptr, 16),
            .imageBytes = qgetenv("QV1K_MATRIX_IMAGE_BYTES").toLongLong(),
            .lateMs = qEnvironmentVariableIntValue("QV1K_MATRIX_LATE_MS")};
}

/// The disk that qv1k-acquire records on.
class RecordingDisk
{
public:
    /// What goes wrong at once goes wrong before the first call: the program looks at its folder by then.
    RecordingDisk()
    {
        if (m_arming.command == 0)
            spoil();
    }

    void noteWrite(QByteArrayView frame)
    {
        if (Wire::commandOf(frame) == m_arming.command)
            spoil();
    }

private:
    void spoil()
    {
        if (isOfTheDisk(m_arming.fault) && !m_bad)
            m_bad.emplace(m_arming.fault, QStringLiteral("out"));
    }

    const Arming m_arming = armingOfEnvironment();
    std::optional<BadDisk> m_bad;
};

RecordingDisk recordingDisk;

struct Library
{
    Library() { wire.arm(armingOfEnvironment()); }

    const d2xx::Functions detector = callsOfVirtualDetector(QStringLiteral(QV1K_VIRTUAL_LIBRARY));
    Wire wire{detector};
    d2xx::Functions calls = faultyCalls();
};

Library &library()
{
    static Library instance;
    return instance;
}

d2xx::Status QV1K_D2XX_CALL createList(std::uint32_t *count)
{
    return library().wire.createDeviceInfoList(count);
}

d2xx::Status QV1K_D2XX_CALL getList(d2xx::DeviceRecord *records, std::uint32_t *count)
{
    return library().wire.getDeviceInfoList(records, count);
}

d2xx::Status QV1K_D2XX_CALL openEx(void *key, std::uint32_t flags, d2xx::Handle *handle)
{
    return library().wire.openEx(key, flags, handle);
}

d2xx::Status QV1K_D2XX_CALL close(d2xx::Handle handle)
{
    return library().wire.close(handle);
}

d2xx::Status QV1K_D2XX_CALL getStatus(d2xx::Handle handle, std::uint32_t *rxBytes, std::uint32_t *txBytes,
                                      std::uint32_t *events)
{
    return library().wire.getStatus(handle, rxBytes, txBytes, events);
}

d2xx::Status QV1K_D2XX_CALL read(d2xx::Handle handle, void *buffer, std::uint32_t length,
                                 std::uint32_t *bytesRead)
{
    return library().wire.read(handle, buffer, length, bytesRead);
}

d2xx::Status QV1K_D2XX_CALL write(d2xx::Handle handle, void *buffer, std::uint32_t length,
                                  std::uint32_t *bytesWritten)
{
    const QByteArrayView frame(static_cast<const char *>(buffer), static_cast<qsizetype>(length));
    recordingDisk.noteWrite(frame);
    return library().wire.write(handle, buffer, length, bytesWritten);
}

/// Those that set the bridge up go to the virtual detector as they are.
d2xx::Functions faultyCalls()
{
    d2xx::Functions calls = callsOfVirtualDetector(QStringLiteral(QV1K_VIRTUAL_LIBRARY));
    calls.createDeviceInfoList = &createList;
    calls.getDeviceInfoList = &getList;
    calls.openEx = &openEx;
    calls.close = &close;
    calls.getStatus = &getStatus;
    calls.read = &read;
    calls.write = &write;
    return calls;
}

} // namespace

d2xx::Functions &providerCalls()
{
    return library().calls;
}

extern "C" {

QV1K_D2XX_EXPORT FaultyLibrary::Arm Matrix_arm;
QV1K_D2XX_EXPORT FaultyLibrary::Heal Matrix_heal;
QV1K_D2XX_EXPORT FaultyLibrary::Happened Matrix_happened;
QV1K_D2XX_EXPORT FaultyLibrary::Report Matrix_report;

void Matrix_arm(const Arming *arming)
{
    library().wire.arm(*arming);
}

void Matrix_heal()
{
    library().wire.heal();
}

int Matrix_happened()
{
    return library().wire.happened();
}

void Matrix_report(int arrived)
{
    library().wire.report(arrived != 0);
}

} // extern "C"

void QV1K_SetDeviceEventCallback(d2xx::DeviceEventCallback callback, void *context)
{
    library().wire.setDeviceEventCallback(callback, context);
}
