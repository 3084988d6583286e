#pragma once

#include "d2xx/handlesource.h"
#include "d2xx/types.h"
#include "simulator/bridge/deviceevents.h"
#include "simulator/firmware/firmware.h"
#include "simulator/sensor/sensor.h"
#include "simulator/settings/settings.h"

#include <map>
#include <memory>
#include <mutex>
#include <span>
#include <vector>

namespace simulator {

using d2xx::DeviceRecord;
using d2xx::Handle;
using d2xx::Status;

/// The USB bridges and the detectors behind them, as the D2XX calls see them.
///
/// Reads `virtual-detector.ini` in `folder` and notices within 200 ms of the clock when it was changed.
/// Detectors keep their parameters as long as this object lives, plugged in or not. Thread-safe; only read()
/// waits, and it holds up no other call while it waits or makes image data.
///
/// What the calls mean and take is told in d2xx/calls.h and d2xx/arguments.h.
class Bridge
{
public:
    /// `clock` must outlive it. A relative folder is looked up in the working directory each time.
    explicit Bridge(Clock &clock, const QString &folder = QStringLiteral("."));
    Q_DISABLE_COPY_MOVE(Bridge)

    /// Makes the list of the attached detectors that getDeviceInfoList() tells.
    Status createDeviceInfoList(quint32 *count);
    /// `records` has room for as many as createDeviceInfoList() counted.
    Status getDeviceInfoList(DeviceRecord *records, quint32 *count);

    /// A status code of the settings when opening is to fail.
    Status openEx(const void *serialNumber, quint32 flags, Handle *handle);
    /// Ends an acquisition that is under way, and drops what was not read.
    Status close(Handle handle);

    /// Drops what was not read.
    Status resetDevice(Handle handle);
    Status setBitMode(Handle handle, quint8 mask, quint8 mode);
    Status setLatencyTimer(Handle handle, quint8 milliseconds);
    Status setUsbParameters(Handle handle, quint32 inSize, quint32 outSize);
    Status setFlowControl(Handle handle, quint16 flow, quint8 xOn, quint8 xOff);
    Status purge(Handle handle, quint32 mask);
    /// 0 waits without limit.
    Status setTimeouts(Handle handle, quint32 readMs, quint32 writeMs);
    Status getStatus(Handle handle, quint32 *rxBytes, quint32 *txBytes, quint32 *events);

    /// Waits until `length` bytes have arrived, for the read time-out at most, and returns what there is.
    Status read(Handle handle, void *buffer, quint32 length, quint32 *bytesRead);
    Status write(Handle handle, const void *buffer, quint32 length, quint32 *bytesWritten);

    /// See DeviceEvents::setCallback().
    void setDeviceEventCallback(DeviceEvents::Callback callback, void *context);

private:
    struct Device
    {
        Device(const QString &number, const QString &eepromPath, Settings &settings)
            : firmware(number, eepromPath, settings)
        {
        }

        Firmware firmware;
        Sensor sensor;
        Handle handle = nullptr; ///< null when it is not open
        bool isAttached = false;
    };
    struct Connection
    {
        Device *device = nullptr;
        bool isLost = false; ///< its cable was pulled
        Milliseconds readTimeout{0};
    };

    void checkSettings(Nanoseconds now);
    void apply(Settings settings);
    void attach(const QString &serialNumber);
    void detach(Device &device);
    [[nodiscard]] Device *attachedDevice(const QString &serialNumber);
    [[nodiscard]] Status find(Handle handle, Nanoseconds now, Connection *&connection);
    template <typename Call>
    Status onOpen(Handle handle, Call call);

    [[nodiscard]] bool faultsHaveBegun(Device &device) const;
    [[nodiscard]] Status waitForBytes(std::unique_lock<std::mutex> &lock, Handle handle, quint32 length,
                                      qsizetype &ready);
    [[nodiscard]] Status fill(std::unique_lock<std::mutex> &lock, Handle handle, std::span<uchar> out,
                              quint32 &bytesRead);
    void lose(Handle handle, qsizetype length);
    [[nodiscard]] Status takeChunk(Handle handle, qsizetype longest, SendQueue::Chunk &chunk,
                                   Device *&device);

    Clock &m_clock;
    QString m_folder;
    std::mutex m_mutex; // guards what follows
    std::condition_variable m_wake;
    SettingsFile m_settingsFile;
    Settings m_settings;
    std::map<QString, std::unique_ptr<Device>> m_devices; // all that there ever were
    std::map<Handle, Connection> m_connections;
    std::vector<DeviceRecord> m_records;
    d2xx::HandleSource m_handles{0x51560000};

    DeviceEvents m_events;
};

template <typename Call>
Status Bridge::onOpen(Handle handle, Call call)
{
    const std::lock_guard lock(m_mutex);
    const Nanoseconds now = m_clock.now();
    Connection *connection = nullptr;
    const Status status = find(handle, now, connection);
    return status == Status::Ok ? call(*connection, now) : status;
}

} // namespace simulator
