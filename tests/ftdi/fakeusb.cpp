#include "tests/ftdi/fakeusb.h"

#include <algorithm>
#include <utility>

void FakeChip::deliver(Bytes piece)
{
    const std::lock_guard lock(m_mutex);
    m_pieces.push_back(std::move(piece));
    m_changed.notify_all();
}

void FakeChip::unplug()
{
    const std::lock_guard lock(m_mutex);
    m_isUnplugged = true;
    m_changed.notify_all();
}

void FakeChip::unlist()
{
    const std::lock_guard lock(m_mutex);
    m_isListed = false;
}

void FakeChip::loseBytes()
{
    const std::lock_guard lock(m_mutex);
    ++m_losses;
}

void FakeChip::takeAtMost(std::size_t bytes)
{
    const std::lock_guard lock(m_mutex);
    m_takesAtMost = bytes;
    m_changed.notify_all();
}

void FakeChip::refuse()
{
    const std::lock_guard lock(m_mutex);
    m_refuses = true;
}

FakeChip::Bytes FakeChip::sent() const
{
    const std::lock_guard lock(m_mutex);
    return m_sent;
}

std::vector<std::string> FakeChip::requests() const
{
    const std::lock_guard lock(m_mutex);
    return m_requests;
}

std::size_t FakeChip::undelivered() const
{
    const std::lock_guard lock(m_mutex);
    return m_pieces.size();
}

bool FakeChip::isOpen() const
{
    const std::lock_guard lock(m_mutex);
    return m_isOpen;
}

std::size_t FakeChip::writesBegun() const
{
    const std::lock_guard lock(m_mutex);
    return m_writesBegun;
}

FakePort::FakePort(std::shared_ptr<FakeChip> chip) : m_chip(std::move(chip))
{
    const std::lock_guard lock(m_chip->m_mutex);
    m_chip->m_isOpen = true;
}

FakePort::~FakePort()
{
    const std::lock_guard lock(m_chip->m_mutex);
    m_chip->m_isOpen = false;
}

bool FakePort::note(const std::string &request)
{
    const std::lock_guard lock(m_chip->m_mutex);
    m_chip->m_requests.push_back(request);
    return !m_chip->m_refuses && !m_chip->m_isUnplugged;
}

bool FakePort::reset()
{
    return note("reset");
}

bool FakePort::setBitMode(std::uint8_t mask, std::uint8_t mode)
{
    return note("bit mode " + std::to_string(mask) + ' ' + std::to_string(mode));
}

bool FakePort::setLatencyTimer(std::uint8_t milliseconds)
{
    return note("latency " + std::to_string(milliseconds));
}

bool FakePort::setFlowControl(std::uint16_t flow, std::uint8_t xOn, std::uint8_t xOff)
{
    return note("flow " + std::to_string(flow) + ' ' + std::to_string(xOn) + ' ' + std::to_string(xOff));
}

bool FakePort::purge(bool received, bool sent)
{
    return note(std::string("purge") + (received ? " received" : "") + (sent ? " sent" : ""));
}

void FakePort::setTransferSizes(std::size_t in, std::size_t out)
{
    note("sizes " + std::to_string(in) + ' ' + std::to_string(out));
}

std::optional<std::span<const std::uint8_t>> FakePort::read(std::chrono::milliseconds patience)
{
    std::unique_lock lock(m_chip->m_mutex);
    FakeChip &chip = *m_chip;
    chip.m_changed.wait_for(lock, patience, [&] { return chip.m_isUnplugged || !chip.m_pieces.empty(); });
    if (chip.m_isUnplugged && chip.m_pieces.empty())
        return {};
    m_lastPiece.clear();
    if (!chip.m_pieces.empty()) {
        m_lastPiece = std::move(chip.m_pieces.front());
        chip.m_pieces.pop_front();
    }
    return m_lastPiece;
}

bool FakePort::isGone()
{
    const std::lock_guard lock(m_chip->m_mutex);
    return m_chip->m_isUnplugged;
}

bool FakePort::isPluggedIn() const
{
    const std::lock_guard lock(m_chip->m_mutex);
    return m_chip->m_isListed;
}

std::uint32_t FakePort::losses() const
{
    const std::lock_guard lock(m_chip->m_mutex);
    return m_chip->m_losses;
}

void FakePort::stopReading()
{
    note("stop reading");
    const std::lock_guard lock(m_chip->m_mutex);
    m_chip->m_pieces.clear();
}

std::optional<std::size_t> FakePort::write(std::span<const std::uint8_t> bytes,
                                           std::chrono::milliseconds patience)
{
    std::unique_lock lock(m_chip->m_mutex);
    FakeChip &chip = *m_chip;
    ++chip.m_writesBegun;
    chip.m_changed.wait_for(lock, patience, [&] { return chip.m_isUnplugged || chip.m_takesAtMost > 0; });
    if (chip.m_isUnplugged || chip.m_refuses)
        return {};
    const auto leaving = bytes.first(std::min(bytes.size(), chip.m_takesAtMost));
    chip.m_sent.insert(chip.m_sent.end(), leaving.begin(), leaving.end());
    return leaving.size();
}

std::optional<std::vector<ftdi::BridgeInfo>> FakeBus::list()
{
    if (!isUsable)
        return {};
    std::vector<ftdi::BridgeInfo> infos;
    for (const Entry &entry : entries)
        infos.push_back(entry.info);
    return infos;
}

ftdi::Refusal FakeBus::open(const std::string &serialNumber, std::unique_ptr<ftdi::UsbPort> &port)
{
    const auto found = std::find_if(entries.begin(), entries.end(), [&](const Entry &entry) {
        return entry.info.serialNumber == serialNumber;
    });
    if (found == entries.end())
        return {d2xx::Status::DeviceNotFound, "not there"};
    if (isHeldElsewhere)
        return {d2xx::Status::DeviceNotOpened, "held elsewhere"};
    port = std::make_unique<FakePort>(found->chip);
    return {};
}

std::shared_ptr<FakeChip> FakeBus::plugIn(const std::string &serialNumber)
{
    ftdi::BridgeInfo info;
    info.serialNumber = serialNumber;
    info.description = "Detector";
    info.type = 8;
    info.id = 0x04036014;
    info.locationId = static_cast<std::uint32_t>(entries.size()) + 1;
    info.isHighSpeed = true;
    entries.push_back({info, std::make_shared<FakeChip>()});
    return entries.back().chip;
}
