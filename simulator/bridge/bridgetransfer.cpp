#include "simulator/bridge/bridge.h"

#include <algorithm>

namespace simulator {

Status Bridge::write(Handle handle, const void *buffer, quint32 length, quint32 *bytesWritten)
{
    return onOpen(handle, [=, this](Connection &connection, Nanoseconds now) {
        if (buffer == nullptr || bytesWritten == nullptr)
            return Status::InvalidParameter;
        *bytesWritten = 0;
        if (m_settings.faults.failWrites > 0) {
            --m_settings.faults.failWrites;
            return Status::IoError;
        }
        connection.device->firmware.write({static_cast<const char *>(buffer), qsizetype{length}}, now);
        *bytesWritten = length;
        m_wake.notify_all();
        return Status::Ok;
    });
}

Status Bridge::read(Handle handle, void *buffer, quint32 length, quint32 *bytesRead)
{
    std::unique_lock lock(m_mutex);
    Connection *connection = nullptr;
    Status status = find(handle, m_clock.now(), connection);
    if (status != Status::Ok)
        return status;
    if (buffer == nullptr || bytesRead == nullptr)
        return Status::InvalidParameter;
    *bytesRead = 0;
    if (m_settings.faults.failReads > 0) {
        --m_settings.faults.failReads;
        return Status::IoError;
    }
    qsizetype ready = 0;
    status = waitForBytes(lock, handle, length, ready);
    std::span out(static_cast<uchar *>(buffer), static_cast<std::size_t>(ready));
    while (status == Status::Ok && !out.empty()) {
        SendQueue::Chunk chunk;
        Device *device = nullptr;
        status = takeChunk(handle, std::ssize(out), chunk, device);
        if (status != Status::Ok || chunk.length == 0)
            break; // another thread took or purged the rest, or the cable was pulled
        const auto size = static_cast<std::size_t>(chunk.length);
        lock.unlock(); // devices live as long as the bridge
        if (chunk.isImage)
            device->sensor.read(chunk.recipe, chunk.offset, out.first(size));
        else
            std::copy(chunk.bytes.cbegin(), chunk.bytes.cend(), out.begin());
        lock.lock();
        out = out.subspan(size);
        *bytesRead += static_cast<quint32>(size);
    }
    return *bytesRead > 0 ? Status::Ok : status;
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
    const qint64 beforePull = pullAt ? qMax<qint64>(0, *pullAt - queue.imageBytesTaken()) : longest;
    chunk = queue.take(longest, static_cast<qsizetype>(beforePull), now);
    if (!pullAt || !chunk.isImage || queue.imageBytesTaken() < *pullAt)
        return Status::Ok;
    pullAt.reset();
    detach(*device);
    return chunk.length > 0 ? Status::Ok : Status::IoError;
}

} // namespace simulator
