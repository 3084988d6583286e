#include "tests/matrix/wire.h"

#include "simulator/geometry.h"

#include <algorithm>
#include <chrono>
#include <thread>

using d2xx::Status;

namespace {

constexpr std::uint16_t startCommand = 0x03A0;
constexpr std::uint16_t readinessCommand = 0x03AA;
constexpr std::uint32_t bytesOfCutWrite = 3;
constexpr std::uint32_t bytesOfPiece = 997;
constexpr int tornBytes = 512;
constexpr int busyAnswers = 3;
constexpr std::string_view detectorName = "QV1K";
constexpr char oldEcho[] = "\xFF\xBB\x03\xA1\x0D\xEB";
constexpr qsizetype echoBytes = 6;

bool isBlockRequest(std::uint16_t command)
{
    return command >> 8U == 0;
}

bool pullsCable(Fault fault)
{
    return fault == Fault::Unplug || fault == Fault::Replug || fault == Fault::UnplugBesideOther;
}

} // namespace

std::uint16_t Wire::commandOf(QByteArrayView frame)
{
    if (frame.size() < 4)
        return 0;
    return static_cast<std::uint16_t>(static_cast<uchar>(frame[2]) << 8U | static_cast<uchar>(frame[3]));
}

void Wire::arm(const Arming &arming)
{
    const std::lock_guard lock(m_mutex);
    m_arming = arming;
    m_isActive = false;
    m_happened = 0;
    m_armedAt = m_imageBytes;
    if (arming.command == 0 && arming.imageBytes == 0)
        begin();
}

void Wire::heal()
{
    const std::lock_guard lock(m_mutex);
    m_arming = {};
    m_isActive = false;
    m_inbox += std::exchange(m_late, {});
    if (std::exchange(m_isGone, false))
        report(true);
}

int Wire::happened() const
{
    const std::lock_guard lock(m_mutex);
    return m_happened;
}

void Wire::begin()
{
    m_isActive = m_arming.fault != Fault::None;
    // In the stream between two looks: a read that fails in between would be a matter of chance.
    m_isPullDue = pullsCable(m_arming.fault);
    if (m_isPullDue && !m_isImage)
        unplug();
}

bool Wire::happens(Fault once, Fault forEver)
{
    const bool isDue = (isActive(once) && m_happened == 0) || isActive(forEver);
    m_happened += isDue ? 1 : 0;
    return isDue;
}

void Wire::unplug()
{
    ++m_happened;
    m_isPullDue = false;
    if (m_open != nullptr) {
        m_dead.insert(m_open);
        m_detector.close(m_open);
        m_open = nullptr;
    }
    m_inbox.clear();
    m_isGone = m_arming.fault != Fault::Replug;
    report(false);
    if (!m_isGone)
        report(true);
}

void Wire::pull(d2xx::Handle handle)
{
    if (!m_late.isEmpty() && Clock::now() >= m_lateDue)
        m_inbox += std::exchange(m_late, {});
    if (isActive(Fault::LeftOver) && !m_inbox.isEmpty())
        return; // it is read by itself, however late it is looked for
    std::uint32_t waiting = 0;
    std::uint32_t unsent = 0;
    std::uint32_t events = 0;
    if (m_detector.getStatus(handle, &waiting, &unsent, &events) != Status::Ok || waiting == 0)
        return;
    QByteArray bytes(static_cast<qsizetype>(waiting), Qt::Uninitialized);
    std::uint32_t count = 0;
    if (m_detector.read(handle, bytes.data(), waiting, &count) != Status::Ok)
        return;
    bytes.truncate(static_cast<qsizetype>(count));
    if (m_isImage)
        takeImage(bytes);
    else
        takeReply(bytes);
}

void Wire::takeImage(QByteArrayView bytes)
{
    while (!bytes.empty()) {
        const qsizetype place = static_cast<qsizetype>(m_imageBytes % simulator::blockBytes);
        const QByteArrayView piece =
            bytes.first(std::min<qsizetype>(bytes.size(), simulator::blockBytes - place));
        bytes = bytes.sliced(piece.size());
        if (place == 0)
            m_isSpoilt = m_isActive && m_happened == 0;
        m_imageBytes += piece.size();
        m_inbox += m_isSpoilt ? spoilt(piece, place) : piece.toByteArray();
        if (!m_isActive && m_arming.imageBytes > 0 && m_imageBytes - m_armedAt >= m_arming.imageBytes)
            begin();
    }
}

/// A piece of the block that goes wrong, which begins at that place of it.
QByteArray Wire::spoilt(QByteArrayView piece, qsizetype place)
{
    const bool isEnd = place + piece.size() == simulator::blockBytes;
    const auto upTo = [&](qsizetype end) {
        m_happened += isEnd ? 1 : 0;
        return piece.first(std::clamp<qsizetype>(end - place, 0, piece.size())).toByteArray();
    };
    switch (m_arming.fault) {
    case Fault::Stall:
        return upTo(simulator::blockBytes / 2);
    case Fault::BlockLost:
        return upTo(0);
    case Fault::BlockTorn:
        return upTo(simulator::blockBytes - tornBytes);
    case Fault::BlockDoubled:
        m_block += piece;
        m_happened += isEnd ? 1 : 0;
        return isEnd ? piece.toByteArray() + std::exchange(m_block, {}) : piece.toByteArray();
    default:
        return piece.toByteArray();
    }
}

void Wire::takeReply(const QByteArray &bytes)
{
    const bool isMeant = m_isActive && (m_arming.command == 0 || m_arming.command == m_command);
    const int most = m_arming.fault == Fault::NotReady ? busyAnswers : 1;
    if (!isMeant || m_happened >= most)
        m_inbox += bytes;
    else
        m_inbox += replyWithFault(bytes);
}

QByteArray Wire::replyWithFault(QByteArray bytes)
{
    ++m_happened;
    switch (m_arming.fault) {
    case Fault::ReplyLate:
        m_late = bytes;
        m_lateDue = Clock::now() + std::chrono::milliseconds(m_arming.lateMs);
        return {};
    case Fault::ReplyShort:
        return bytes.chopped(1);
    case Fault::ReplyLong:
        return bytes + '\0';
    case Fault::ReplyDoubled:
        return bytes + bytes;
    case Fault::ReplyCorrupt:
        std::ranges::transform(bytes, bytes.begin(), [](char byte) { return static_cast<char>(~byte); });
        return bytes;
    case Fault::ReplyMissing:
        return {};
    case Fault::NotReady:
        if (m_command == readinessCommand)
            bytes[4] = '\0';
        return bytes;
    default:
        --m_happened;
        return bytes;
    }
}

Status Wire::createDeviceInfoList(std::uint32_t *count)
{
    const std::lock_guard lock(m_mutex);
    if (happens(Fault::None, Fault::ListFails))
        return Status::IoError;
    std::uint32_t attached = 0;
    if (const Status status = m_detector.createDeviceInfoList(&attached); status != Status::Ok)
        return status;
    m_records.resize(attached);
    if (const Status status = m_detector.getDeviceInfoList(m_records.data(), &attached); status != Status::Ok)
        return status;
    m_records.resize(attached);
    if (m_isGone)
        std::erase_if(m_records, [](const auto &r) { return d2xx::textOf(r.serialNumber) == detectorName; });
    *count = static_cast<std::uint32_t>(m_records.size());
    return Status::Ok;
}

Status Wire::getDeviceInfoList(d2xx::DeviceRecord *records, std::uint32_t *count)
{
    const std::lock_guard lock(m_mutex);
    *count = std::min(*count, static_cast<std::uint32_t>(m_records.size()));
    std::copy_n(m_records.begin(), *count, records);
    return Status::Ok;
}

Status Wire::openEx(void *key, std::uint32_t flags, d2xx::Handle *handle)
{
    const std::lock_guard lock(m_mutex);
    if (isActive(Fault::HeldElsewhere)) {
        ++m_happened;
        return Status::DeviceNotOpened;
    }
    if (m_isGone && detectorName == static_cast<const char *>(key))
        return Status::DeviceNotFound;
    const Status status = m_detector.openEx(key, flags, handle);
    if (status == Status::Ok) {
        m_open = *handle;
        m_inbox.clear();
        m_late.clear();
        m_isImage = false;
        m_command = 0;
    }
    return status;
}

Status Wire::close(d2xx::Handle handle)
{
    const std::lock_guard lock(m_mutex);
    if (m_dead.erase(handle) > 0)
        return Status::Ok;
    m_open = nullptr;
    return m_detector.close(handle);
}

Status Wire::getStatus(d2xx::Handle handle, std::uint32_t *rxBytes, std::uint32_t *txBytes,
                       std::uint32_t *events)
{
    {
        const std::lock_guard lock(m_mutex);
        if (m_isPullDue)
            unplug();
        if (m_dead.contains(handle) || happens(Fault::StatusFailsOnce, Fault::StatusFails))
            return Status::IoError;
        if (const Status status = m_detector.getStatus(handle, rxBytes, txBytes, events);
            status != Status::Ok)
            return status;
        pull(handle);
        *rxBytes = static_cast<std::uint32_t>(m_inbox.size());
        if (isActive(Fault::OddPieces))
            *rxBytes = std::min(*rxBytes, bytesOfPiece);
    }
    if (*rxBytes == 0)
        std::this_thread::yield(); // a look follows a look
    return Status::Ok;
}

Status Wire::read(d2xx::Handle handle, void *buffer, std::uint32_t length, std::uint32_t *bytesRead)
{
    const std::lock_guard lock(m_mutex);
    *bytesRead = 0;
    const qsizetype count = std::min<qsizetype>(m_inbox.size(), static_cast<qsizetype>(length));
    if (m_dead.contains(handle) || happens(Fault::ReadFailsOnce, Fault::ReadFails))
        return Status::IoError;
    const bool isLost = happens(Fault::ReadLoses);
    if (!isLost)
        std::copy_n(m_inbox.cbegin(), count, static_cast<char *>(buffer));
    m_inbox.remove(0, count);
    m_happened += isActive(Fault::OddPieces) ? 1 : 0;
    if (isLost)
        return Status::IoError;
    *bytesRead = static_cast<std::uint32_t>(count);
    return Status::Ok;
}

Status Wire::write(d2xx::Handle handle, void *buffer, std::uint32_t length, std::uint32_t *bytesWritten)
{
    const std::lock_guard lock(m_mutex);
    *bytesWritten = 0;
    if (m_dead.contains(handle))
        return Status::IoError;
    pull(handle); // what has left the detector belongs to what was said before
    const std::uint16_t command =
        commandOf({static_cast<const char *>(buffer), static_cast<qsizetype>(length)});
    if (!m_isActive && m_arming.command != 0 && m_arming.command == command)
        begin();
    if (m_isPullDue)
        unplug();
    if (m_dead.contains(handle) || happens(Fault::WriteFailsOnce, Fault::WriteFails))
        return Status::IoError;
    if (happens(Fault::LeftOver))
        m_inbox += QByteArray(oldEcho, echoBytes);
    noteCommand(command);
    if (happens(Fault::WriteCut))
        length = std::min(length, bytesOfCutWrite);
    return m_detector.write(handle, buffer, length, bytesWritten);
}

void Wire::noteCommand(std::uint16_t command)
{
    m_isImage = isBlockRequest(command);
    if (m_isImage)
        return;
    m_command = command;
    if (command == startCommand) {
        m_imageBytes = 0;
        m_armedAt = 0;
    }
}

void Wire::setDeviceEventCallback(d2xx::DeviceEventCallback callback, void *context)
{
    const std::lock_guard lock(m_eventMutex);
    m_callback = callback;
    m_context = context;
}

void Wire::report(bool arrived)
{
    const std::lock_guard lock(m_eventMutex);
    if (m_callback != nullptr)
        m_callback(m_context, arrived ? 1 : 0);
}
