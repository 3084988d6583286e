#include "simulator/bridge/bridge.h"

#include <algorithm>
#include <limits>

namespace simulator {

namespace {

/// As much as 32 bits can tell.
quint32 sumOf(quint32 count, quint32 more)
{
    return count + std::min(more, std::numeric_limits<quint32>::max() - count);
}

} // namespace

bool Bridge::faultsHaveBegun(Device &device) const
{
    return device.firmware.sendQueue().imageBytesTaken() >= m_settings.faults.fromByte.value_or(0);
}

Status Bridge::getStatus(Handle handle, quint32 *rxBytes, quint32 *txBytes, quint32 *events)
{
    return onOpen(Call::GetStatus, handle, [=, this](Connection &connection, Nanoseconds now) {
        if (rxBytes == nullptr || txBytes == nullptr || events == nullptr)
            return Status::InvalidParameter;
        Faults &faults = m_settings.faults;
        const bool begun = faultsHaveBegun(*connection.device);
        if (begun && happens(faults.failStatus))
            return Status::IoError;
        *rxBytes = static_cast<quint32>(connection.device->firmware.sendQueue().available(now));
        if (begun)
            *rxBytes = sumOf(*rxBytes, faults.claimedWaiting);
        *txBytes = 0;
        *events = 0;
        return Status::Ok;
    });
}

Status Bridge::write(Handle handle, const void *buffer, quint32 length, quint32 *bytesWritten)
{
    return onOpen(Call::Write, handle, [=, this](Connection &connection, Nanoseconds now) {
        if (buffer == nullptr || bytesWritten == nullptr)
            return Status::InvalidParameter;
        *bytesWritten = 0;
        Faults &faults = m_settings.faults;
        const bool begun = faultsHaveBegun(*connection.device);
        if (begun && happens(faults.failWrites))
            return Status::IoError;
        const bool isShort = begun && happens(faults.shortWrites);
        const quint32 sent = isShort ? std::min(length, faults.shortWriteBytes) : length;
        connection.device->firmware.write({static_cast<const char *>(buffer), qsizetype{sent}}, now);
        *bytesWritten = sent;
        m_wake.notify_all();
        return Status::Ok;
    });
}

Status Bridge::read(Handle handle, void *buffer, quint32 length, quint32 *bytesRead)
{
    std::unique_lock lock(m_mutex);
    Connection *connection = nullptr;
    Status status = enter(lock, Call::Read, handle, connection);
    if (status != Status::Ok)
        return status;
    if (buffer == nullptr || bytesRead == nullptr)
        return Status::InvalidParameter;
    *bytesRead = 0;
    Faults &faults = m_settings.faults;
    const bool begun = faultsHaveBegun(*connection->device);
    if (begun && happens(faults.failReads)) {
        if (faults.failedReadsTake)
            lose(handle, length);
        return Status::IoError;
    }
    const quint32 claimed = begun && faults.claimedRead > 0 ? sumOf(length, faults.claimedRead) : 0;
    if (begun && happens(faults.shortReads))
        length = std::min(length, faults.shortReadBytes);
    qsizetype ready = 0;
    status = waitForBytes(lock, handle, length, ready);
    if (status == Status::Ok)
        status =
            fill(lock, handle, {static_cast<uchar *>(buffer), static_cast<std::size_t>(ready)}, *bytesRead);
    if (*bytesRead > 0)
        status = Status::Ok;
    if (status == Status::Ok)
        *bytesRead = std::max(*bytesRead, claimed);
    return status;
}

void Bridge::lose(Handle handle, qsizetype length)
{
    SendQueue::Chunk chunk;
    do {
        Device *device = nullptr;
        if (takeChunk(handle, length, chunk, device) != Status::Ok)
            return;
        length -= chunk.length;
    } while (chunk.length > 0);
}

Status Bridge::fill(std::unique_lock<std::mutex> &lock, Handle handle, std::span<uchar> out,
                    quint32 &bytesRead)
{
    while (!out.empty()) {
        SendQueue::Chunk chunk;
        Device *device = nullptr;
        const Status status = takeChunk(handle, std::ssize(out), chunk, device);
        if (status != Status::Ok || chunk.length == 0)
            return status; // another thread took or purged the rest, or the cable was pulled
        const auto size = static_cast<std::size_t>(chunk.length);
        lock.unlock(); // devices live as long as the bridge
        if (chunk.isImage)
            device->sensor.read(chunk.recipe, chunk.offset, out.first(size));
        else
            std::copy(chunk.bytes.cbegin(), chunk.bytes.cend(), out.begin());
        lock.lock();
        out = out.subspan(size);
        bytesRead += static_cast<quint32>(size);
        if (chunk.isImage && m_settings.faults.fromByte == device->firmware.sendQueue().imageBytesTaken())
            break; // what goes wrong from here on goes wrong in the next call
    }
    return Status::Ok;
}

Status Bridge::waitForBytes(std::unique_lock<std::mutex> &lock, Handle handle, quint32 length,
                            qsizetype &ready)
{
    const Nanoseconds begin = m_clock.now();
    while (true) {
        const Nanoseconds now = m_clock.now();
        Connection *connection = nullptr;
        if (const Status status = find(handle, now, connection); status != Status::Ok)
            return status;
        const SendQueue &queue = connection->device->firmware.sendQueue();
        ready = std::min<qsizetype>(queue.available(now), length);
        const bool hasDeadline = connection->readTimeout > Milliseconds(0);
        const Nanoseconds deadline = begin + connection->readTimeout;
        if (ready == length || (hasDeadline && now >= deadline))
            return Status::Ok;
        Nanoseconds until = now + SettingsFile::checkInterval;
        if (hasDeadline)
            until = std::min(until, deadline);
        if (const auto arrival = queue.nextArrival(now))
            until = std::min(until, *arrival);
        m_clock.wait(lock, m_wake, until);
    }
}

Status Bridge::takeChunk(Handle handle, qsizetype longest, SendQueue::Chunk &chunk, Device *&device)
{
    const Nanoseconds now = m_clock.now();
    Connection *connection = nullptr;
    if (const Status status = find(handle, now, connection); status != Status::Ok)
        return status;
    device = connection->device;
    std::optional<qint64> &pullAt = m_settings.faults.unplugAtByte;
    SendQueue &queue = device->firmware.sendQueue();
    qint64 longestImage = longest;
    if (pullAt)
        longestImage = std::clamp<qint64>(*pullAt - queue.imageBytesTaken(), 0, longestImage);
    if (!faultsHaveBegun(*device))
        longestImage = std::min(longestImage, *m_settings.faults.fromByte - queue.imageBytesTaken());
    chunk = queue.take(longest, static_cast<qsizetype>(longestImage), now);
    if (!pullAt || !chunk.isImage || queue.imageBytesTaken() < *pullAt)
        return Status::Ok;
    pullAt.reset();
    unplug(*device);
    if (!device->isAttached)
        return chunk.length > 0 ? Status::Ok : Status::IoError;
    if (chunk.length == 0) // told early, still alive
        chunk = queue.take(longest, longest, now);
    return Status::Ok;
}

} // namespace simulator
