#pragma once

#include "d2xx/functions.h"
#include "tests/matrix/arming.h"

#include <QByteArray>

#include <chrono>
#include <mutex>
#include <optional>
#include <set>
#include <vector>

/// Stands between the program and the virtual detector's library, and lets one fault happen. Without one it
/// hands on what it gets. Thread-safe; each call is told in d2xx/calls.h.
///
/// What arrives is taken from the detector at each look, goes through the fault, and waits in an inbox.
class Wire
{
public:
    explicit Wire(const d2xx::Functions &detector) : m_detector(detector) {}

    /// Class and code of what is written, the class being 0 for a block request.
    [[nodiscard]] static std::uint16_t commandOf(QByteArrayView frame);

    void arm(const Arming &arming);
    void heal();
    [[nodiscard]] int happened() const;

    d2xx::Status createDeviceInfoList(std::uint32_t *count);
    d2xx::Status getDeviceInfoList(d2xx::DeviceRecord *records, std::uint32_t *count);
    d2xx::Status openEx(void *key, std::uint32_t flags, d2xx::Handle *handle);
    d2xx::Status close(d2xx::Handle handle);
    d2xx::Status getStatus(d2xx::Handle handle, std::uint32_t *rxBytes, std::uint32_t *txBytes,
                           std::uint32_t *events);
    d2xx::Status read(d2xx::Handle handle, void *buffer, std::uint32_t length, std::uint32_t *bytesRead);
    d2xx::Status write(d2xx::Handle handle, void *buffer, std::uint32_t length, std::uint32_t *bytesWritten);

    void setDeviceEventCallback(d2xx::DeviceEventCallback callback, void *context);
    void report(bool arrived);

private:
    using Clock = std::chrono::steady_clock;

    [[nodiscard]] bool happens(Fault once, Fault forEver = Fault::None);
    [[nodiscard]] bool isActive(Fault fault) const { return m_isActive && m_arming.fault == fault; }
    void begin();
    void unplug();
    void pull(d2xx::Handle handle);
    void takeImage(QByteArrayView bytes);
    [[nodiscard]] QByteArray spoilt(QByteArrayView piece, qsizetype place);
    void takeReply(const QByteArray &bytes);
    [[nodiscard]] QByteArray replyWithFault(QByteArray bytes);
    void noteCommand(std::uint16_t command);

    const d2xx::Functions m_detector;
    mutable std::mutex m_mutex; // guards what follows
    Arming m_arming;
    bool m_isActive = false;
    int m_happened = 0;
    std::vector<d2xx::DeviceRecord> m_records;
    bool m_isPullDue = false;
    bool m_isGone = false;         ///< not in the list any more
    std::set<d2xx::Handle> m_dead; ///< whose cable was pulled
    d2xx::Handle m_open = nullptr;
    QByteArray m_inbox;
    QByteArray m_late;
    std::optional<Clock::time_point> m_lateDue;
    std::uint16_t m_command = 0; ///< the last that was not a block request
    bool m_isSpoilt = false;     ///< the block that arrives now
    bool m_isImage = false;      ///< what arrives now
    std::int64_t m_imageBytes = 0;
    std::int64_t m_armedAt = 0; ///< image bytes by then
    QByteArray m_block;         ///< what of the block has arrived

    std::mutex m_eventMutex; // guards what follows
    d2xx::DeviceEventCallback m_callback = nullptr;
    void *m_context = nullptr;
};
