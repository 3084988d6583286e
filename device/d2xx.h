#pragma once

#include "d2xx/functions.h"

#include <QString>

#include <array>
#include <atomic>
#include <chrono>
#include <optional>

/// The door to the hardware: the calls of a driver library, made safe to use from two threads.
///
/// A call on a handle that is null or no longer open returns InvalidHandle and does not reach the
/// library; close() waits until the calls that are under way have returned (each is bounded by the
/// link's 10 ms time-outs). So a device may be closed while another thread polls it, whatever the library
/// does about stale handles. Without functions every call returns DeviceNotFound.
///
/// A call that hangs holds up close() for closingLimit at most. Then the handle is left behind, open in the
/// library, and closed for everybody here; a line in the log tells it. When the call comes back after all,
/// the library closes the handle, and the device can be opened again.
///
/// All members may be called from any thread.
class D2xx
{
public:
    D2xx() = default;
    explicit D2xx(const d2xx::Functions &functions) : m_functions(functions), m_usable(true) {}
    /// Tries once more to close a handle that the library had failed to close.
    ~D2xx();
    Q_DISABLE_COPY_MOVE(D2xx)

    static constexpr std::chrono::milliseconds closingLimit{2000};

    [[nodiscard]] bool isUsable() const { return m_usable; }
    [[nodiscard]] const d2xx::Functions &functions() const { return m_functions; }

    d2xx::Status createDeviceInfoList(quint32 *count) const;
    d2xx::Status getDeviceInfoList(d2xx::DeviceRecord *records, quint32 *count) const;
    /// Opens by serial number (NUL-terminated UTF-8). One device can be open at a time. What the library
    /// leaves in `handle` counts as open, also when it says that it failed. When it fails and the library had
    /// failed to close the handle before, both are tried once more.
    d2xx::Status open(const char *serialNumber, d2xx::Handle *handle);
    /// Blocks for closingLimit at most; OtherError when the handle was left behind.
    d2xx::Status close(d2xx::Handle handle);

    d2xx::Status resetDevice(d2xx::Handle handle);
    d2xx::Status setBitMode(d2xx::Handle handle, quint8 mask, quint8 mode);
    d2xx::Status setLatencyTimer(d2xx::Handle handle, quint8 milliseconds);
    d2xx::Status setUsbParameters(d2xx::Handle handle, quint32 inSize, quint32 outSize);
    d2xx::Status setFlowControl(d2xx::Handle handle, quint16 flow, quint8 xOn, quint8 xOff);
    d2xx::Status purge(d2xx::Handle handle, quint32 mask);
    d2xx::Status setTimeouts(d2xx::Handle handle, quint32 readMs, quint32 writeMs);
    d2xx::Status getStatus(d2xx::Handle handle, quint32 *rxBytes, quint32 *txBytes, quint32 *events);
    d2xx::Status read(d2xx::Handle handle, void *buffer, quint32 length, quint32 *bytesRead);
    d2xx::Status write(d2xx::Handle handle, const void *buffer, quint32 length, quint32 *bytesWritten);

    /// In words why the open device is gone, or with a null handle why the last one was not opened. Empty
    /// when the library has nothing to tell, or cannot tell such things.
    [[nodiscard]] QString problem(d2xx::Handle handle);
    /// Whether the library lists every bridge of the maker, so that the detectors among them have to be told
    /// from the others.
    [[nodiscard]] bool listsAllBridges() const { return m_functions.listsAllBridges != nullptr; }
    /// How often the bridge said, since it was opened, that it had lost bytes; none when the library does not
    /// know.
    [[nodiscard]] std::optional<quint32> losses(d2xx::Handle handle);

private:
    template <typename Call>
    d2xx::Status onOpenHandle(d2xx::Handle handle, Call call);
    /// What goes on with one of the handles that were opened.
    struct Use
    {
        std::atomic<int> callsUnderWay{0};
        std::atomic<d2xx::Handle> left{nullptr}; ///< to be closed by the last of these calls
    };
    [[nodiscard]] Use &useOf(std::size_t opened);
    void closeLeft(Use &use);
    /// False when the library has closed every handle.
    bool closeUnclosed();

    d2xx::Functions m_functions;
    bool m_usable = false;
    std::atomic<d2xx::Handle> m_open{nullptr};
    std::atomic<d2xx::Handle> m_unclosed{nullptr}; ///< the library failed to close it
    std::atomic<std::size_t> m_opened{0};          ///< how often a handle was opened
    /// Of each of the last handles, so that one call that hangs does not hold up the closing of later ones.
    std::array<Use, 16> m_uses{};
};
