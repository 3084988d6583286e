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
#include <optional>
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
/// waits, and a call that hangs by the settings. Neither holds up any other call, nor does making image data.
///
/// What the calls mean and take is told in d2xx/calls.h and d2xx/arguments.h.
class Bridge
{
public:
    /// `clock` must outlive it. A relative folder is looked up in the working directory each time.
    explicit Bridge(Clock &clock, const QString &folder = QStringLiteral("."));
    /// Ends the calls that hang.
    ~Bridge();
    Q_DISABLE_COPY_MOVE(Bridge)

    /// Makes the list of the attached detectors that getDeviceInfoList() tells.
    Status createDeviceInfoList(quint32 *count);
    /// `records` has room for `*count`; more are not filled in. Tells how many were.
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
            : serialNumber(number), firmware(number, eepromPath, settings)
        {
        }

        QString serialNumber;
        Firmware firmware;
        Sensor sensor;
        Handle handle = nullptr; ///< null when it is not open
        bool isAttached = false;
        std::optional<Nanoseconds> pullAt; ///< its removal was told early
        std::optional<Nanoseconds> plugAt; ///< it comes back by itself
    };
    struct Connection
    {
        Device *device = nullptr;
        bool isLost = false; ///< its cable was pulled
        Milliseconds readTimeout{0};
    };

    void catchUp(Nanoseconds now);
    void apply(Settings settings);
    [[nodiscard]] Device &deviceOf(const QString &serialNumber);
    [[nodiscard]] Device *attachedDevice(const QString &serialNumber);
    void attach(const QString &serialNumber);
    void unplug(Device &device);
    void detach(Device &device);
    void scheduleReplug(Device &device);
    void moveCables(Nanoseconds now);
    [[nodiscard]] Status find(Handle handle, Nanoseconds now, Connection *&connection);
    [[nodiscard]] Status enter(std::unique_lock<std::mutex> &lock, Call call, Handle handle,
                               Connection *&connection);
    template <typename Work>
    Status onOpen(Call call, Handle handle, Work work);

    void hang(std::unique_lock<std::mutex> &lock, Call call);
    [[nodiscard]] bool fails(Call call);

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
    std::vector<Nanoseconds> m_removalsToTell;
    std::vector<DeviceRecord> m_records;
    d2xx::HandleSource m_handles{0x51560000};
    int m_hanging = 0; // calls
    bool m_ended = false;

    DeviceEvents m_events;
};

template <typename Work>
Status Bridge::onOpen(Call call, Handle handle, Work work)
{
    std::unique_lock lock(m_mutex);
    Connection *connection = nullptr;
    const Status status = enter(lock, call, handle, connection);
    return status == Status::Ok ? work(*connection, m_clock.now()) : status;
}

} // namespace simulator
