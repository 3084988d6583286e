#include "simulator/bridge/bridge.h"

#include "d2xx/arguments.h"
#include "d2xx/families.h"

#include <algorithm>

namespace simulator {

namespace {

/// Looks, reads and writes: their faults may begin in the middle of the stream.
bool isTransfer(Call call)
{
    return call == Call::GetStatus || call == Call::Read || call == Call::Write;
}

} // namespace

Bridge::Bridge(Clock &clock, const QString &folder)
    : m_clock(clock), m_folder(folder), m_settingsFile(folder + QStringLiteral("/virtual-detector.ini")),
      m_events([this] {
          const std::lock_guard lock(m_mutex);
          if (auto settings = m_settingsFile.changedNow(m_clock.now()))
              apply(std::move(*settings));
          moveCables(m_clock.now());
      })
{
    const std::lock_guard lock(m_mutex);
    catchUp(m_clock.now());
}

Bridge::~Bridge()
{
    std::unique_lock lock(m_mutex);
    m_ended = true;
    m_wake.notify_all();
    m_wake.wait(lock, [this] { return m_hanging == 0; });
}

void Bridge::setDeviceEventCallback(DeviceEvents::Callback callback, void *context)
{
    { // what happened before is no news
        const std::lock_guard lock(m_mutex);
        catchUp(m_clock.now());
    }
    m_events.setCallback(callback, context);
}

Status Bridge::createDeviceInfoList(quint32 *count)
{
    if (count == nullptr)
        return Status::InvalidParameter;
    const std::lock_guard lock(m_mutex);
    catchUp(m_clock.now());
    m_records.clear();
    for (const QString &serialNumber : std::as_const(m_settings.serialNumbers)) {
        const Device *device = attachedDevice(serialNumber);
        if (device == nullptr)
            continue;
        DeviceRecord record{};
        record.flags = d2xx::flagHighSpeed | (device->handle != nullptr ? d2xx::flagOpened : 0);
        record.type = d2xx::family232H.type;
        record.id = d2xx::recordId(d2xx::family232H);
        record.locationId = static_cast<quint32>(m_records.size() + 1);
        record.handle = device->handle;
        d2xx::setText(record.serialNumber, serialNumber.toStdString());
        d2xx::setText(record.description, "QV1K virtual detector");
        m_records.push_back(record);
    }
    *count = m_settings.faults.claimedDevices.value_or(static_cast<quint32>(m_records.size()));
    return Status::Ok;
}

Status Bridge::getDeviceInfoList(DeviceRecord *records, quint32 *count)
{
    if (records == nullptr || count == nullptr)
        return Status::InvalidParameter;
    const std::lock_guard lock(m_mutex);
    *count = std::min(*count, static_cast<quint32>(m_records.size()));
    std::copy_n(m_records.begin(), *count, records);
    return Status::Ok;
}

Status Bridge::openEx(const void *serialNumber, quint32 flags, Handle *handle)
{
    if (serialNumber == nullptr || handle == nullptr || flags != d2xx::openBySerialNumber)
        return Status::InvalidParameter;
    std::unique_lock lock(m_mutex);
    catchUp(m_clock.now());
    hang(lock, Call::Open);
    if (happens(m_settings.faults.failOpens))
        return static_cast<Status>(m_settings.faults.openStatus);
    Device *device = attachedDevice(QString::fromUtf8(static_cast<const char *>(serialNumber)));
    if (device == nullptr)
        return Status::DeviceNotFound;
    if (device->handle != nullptr)
        return Status::DeviceNotOpened;
    device->handle = m_handles.next();
    m_connections[device->handle] = {device};
    *handle = device->handle;
    return Status::Ok;
}

Status Bridge::close(Handle handle)
{
    std::unique_lock lock(m_mutex);
    catchUp(m_clock.now());
    hang(lock, Call::Close);
    const auto found = m_connections.find(handle);
    if (found == m_connections.end())
        return Status::InvalidHandle;
    if (fails(Call::Close))
        return Status::IoError;
    if (!found->second.isLost) {
        Device &device = *found->second.device;
        device.firmware.hostLost();
        device.handle = nullptr;
    }
    m_connections.erase(found);
    m_wake.notify_all();
    return Status::Ok;
}

Status Bridge::find(Handle handle, Nanoseconds now, Connection *&connection)
{
    catchUp(now);
    const auto found = m_connections.find(handle);
    if (found == m_connections.end())
        return Status::InvalidHandle;
    connection = &found->second;
    return connection->isLost ? Status::IoError : Status::Ok;
}

Status Bridge::enter(std::unique_lock<std::mutex> &lock, Call call, Handle handle, Connection *&connection)
{
    Status status = find(handle, m_clock.now(), connection);
    if (status != Status::Ok || (isTransfer(call) && !faultsHaveBegun(*connection->device)))
        return status;
    hang(lock, call);
    status = find(handle, m_clock.now(), connection); // much may have happened meanwhile
    return status == Status::Ok && fails(call) ? Status::IoError : status;
}

void Bridge::hang(std::unique_lock<std::mutex> &lock, Call call)
{
    Faults &faults = m_settings.faults;
    if (!faults.hangingCalls.contains(call) || !happens(faults.hangCalls))
        return;
    const Nanoseconds end = m_clock.now() + faults.hangTime;
    ++m_hanging;
    while (!m_ended && m_clock.now() < end)
        m_clock.wait(lock, m_wake, end);
    --m_hanging;
    m_wake.notify_all();
}

bool Bridge::fails(Call call)
{
    Faults &faults = m_settings.faults;
    return faults.failingCalls.contains(call) && happens(faults.failCalls);
}

Status Bridge::resetDevice(Handle handle)
{
    return onOpen(Call::ResetDevice, handle, [](Connection &connection, Nanoseconds now) {
        connection.device->firmware.sendQueue().purge(now);
        return Status::Ok;
    });
}

Status Bridge::setBitMode(Handle handle, quint8 mask, quint8 mode)
{
    return onOpen(Call::SetBitMode, handle, [=](Connection &connection, Nanoseconds) {
        if (!d2xx::isBitMode(mode))
            return Status::InvalidParameter;
        connection.device->firmware.setSynchronous(mask == d2xx::allDataLines &&
                                                   mode == d2xx::bitModeSyncFifo);
        return Status::Ok;
    });
}

Status Bridge::setLatencyTimer(Handle handle, quint8 milliseconds)
{
    return onOpen(Call::SetLatencyTimer, handle, [=](Connection &connection, Nanoseconds) {
        if (!d2xx::isLatency(milliseconds))
            return Status::InvalidParameter;
        connection.device->firmware.sendQueue().setLatency(Milliseconds(milliseconds));
        return Status::Ok;
    });
}

Status Bridge::setUsbParameters(Handle handle, quint32 inSize, quint32 outSize)
{
    return onOpen(Call::SetUsbParameters, handle, [=](Connection &, Nanoseconds) {
        const bool fits = d2xx::isTransferSize(inSize) && d2xx::isTransferSize(outSize);
        return fits ? Status::Ok : Status::InvalidParameter;
    });
}

Status Bridge::setFlowControl(Handle handle, quint16 flow, quint8 /*xOn*/, quint8 /*xOff*/)
{
    return onOpen(Call::SetFlowControl, handle, [=](Connection &, Nanoseconds) {
        return d2xx::isFlowControl(flow) ? Status::Ok : Status::InvalidParameter;
    });
}

Status Bridge::purge(Handle handle, quint32 mask)
{
    return onOpen(Call::Purge, handle, [=](Connection &connection, Nanoseconds now) {
        if (!d2xx::isPurgeMask(mask))
            return Status::InvalidParameter;
        if ((mask & d2xx::purgeReceived) != 0)
            connection.device->firmware.sendQueue().purge(now);
        return Status::Ok;
    });
}

Status Bridge::setTimeouts(Handle handle, quint32 readMs, quint32 /*writeMs*/)
{
    return onOpen(Call::SetTimeouts, handle, [=](Connection &connection, Nanoseconds) {
        connection.readTimeout = Milliseconds(readMs);
        return Status::Ok;
    });
}

} // namespace simulator
