#pragma once

#include <QtGlobal>

#include <atomic>

/// The D2XX interface of the USB-to-FIFO bridge: the fourteen calls that the program uses, written here from
/// the interface's public description. Widths are those of the interface on every platform.
namespace ftdi {

using DWORD = quint32;
using USHORT = quint16;
using UCHAR = quint8;
using FT_HANDLE = void *;
using FT_STATUS = quint32;

inline constexpr FT_STATUS FT_OK = 0;
inline constexpr FT_STATUS FT_INVALID_HANDLE = 1;
inline constexpr FT_STATUS FT_DEVICE_NOT_FOUND = 2;
inline constexpr FT_STATUS FT_DEVICE_NOT_OPENED = 3;
inline constexpr FT_STATUS FT_IO_ERROR = 4;
inline constexpr FT_STATUS FT_OTHER_ERROR = 18;

inline constexpr DWORD FT_OPEN_BY_SERIAL_NUMBER = 1;
inline constexpr UCHAR FT_BITMODE_SYNC_FIFO = 0x40;
inline constexpr USHORT FT_FLOW_RTS_CTS = 0x0100;
inline constexpr DWORD FT_PURGE_RX_AND_TX = 3;

/// One attached device, as FT_GetDeviceInfoList fills it in: 104 bytes.
struct DeviceRecord
{
    DWORD flags;
    DWORD type;
    DWORD id;
    DWORD locationId;
    char serialNumber[16]; ///< NUL-terminated
    char description[64];  ///< NUL-terminated
    FT_HANDLE handle;
};
static_assert(sizeof(void *) != 8 || sizeof(DeviceRecord) == 104);

#ifdef Q_OS_WIN
#define QV1K_D2XX_CALL __stdcall
#else
#define QV1K_D2XX_CALL
#endif

/// The library's functions, resolved by name. All are set, or the table is of no use.
struct Functions
{
    FT_STATUS(QV1K_D2XX_CALL *createDeviceInfoList)(DWORD *count) = nullptr;
    FT_STATUS(QV1K_D2XX_CALL *getDeviceInfoList)(DeviceRecord *records, DWORD *count) = nullptr;
    FT_STATUS(QV1K_D2XX_CALL *openEx)(void *key, DWORD flags, FT_HANDLE *handle) = nullptr;
    FT_STATUS(QV1K_D2XX_CALL *close)(FT_HANDLE handle) = nullptr;
    FT_STATUS(QV1K_D2XX_CALL *resetDevice)(FT_HANDLE handle) = nullptr;
    FT_STATUS(QV1K_D2XX_CALL *setBitMode)(FT_HANDLE handle, UCHAR mask, UCHAR mode) = nullptr;
    FT_STATUS(QV1K_D2XX_CALL *setLatencyTimer)(FT_HANDLE handle, UCHAR milliseconds) = nullptr;
    FT_STATUS(QV1K_D2XX_CALL *setUsbParameters)(FT_HANDLE handle, DWORD inSize, DWORD outSize) = nullptr;
    FT_STATUS(QV1K_D2XX_CALL *setFlowControl)(FT_HANDLE handle, USHORT flow, UCHAR xOn, UCHAR xOff) = nullptr;
    FT_STATUS(QV1K_D2XX_CALL *purge)(FT_HANDLE handle, DWORD mask) = nullptr;
    FT_STATUS(QV1K_D2XX_CALL *setTimeouts)(FT_HANDLE handle, DWORD readMs, DWORD writeMs) = nullptr;
    FT_STATUS(QV1K_D2XX_CALL *getStatus)
    (FT_HANDLE handle, DWORD *rxBytes, DWORD *txBytes, DWORD *events) = nullptr;
    FT_STATUS(QV1K_D2XX_CALL *read)(FT_HANDLE handle, void *buffer, DWORD length, DWORD *read) = nullptr;
    FT_STATUS(QV1K_D2XX_CALL *write)(FT_HANDLE handle, void *buffer, DWORD length, DWORD *written) = nullptr;

    /// Optional: plugging and unplugging as the library sees it (arrived 1 or 0), on a thread of its own.
    /// A null callback ends the reports.
    void (*setDeviceEventCallback)(void (*callback)(void *context, int arrived), void *context) = nullptr;
};

} // namespace ftdi

/// The door to the hardware: the calls of a driver library, made safe to use from two threads.
///
/// A call on a handle that is null or no longer open returns FT_INVALID_HANDLE and does not reach the
/// library; close() waits until the calls that are under way have returned (each is bounded by the
/// link's 10 ms time-outs). So a device may be closed while another thread polls it, whatever the library
/// does about stale handles. Without functions every call returns FT_DEVICE_NOT_FOUND.
///
/// All members may be called from any thread.
class D2xx
{
public:
    D2xx() = default;
    explicit D2xx(const ftdi::Functions &functions) : m_functions(functions), m_usable(true) {}
    Q_DISABLE_COPY_MOVE(D2xx)

    [[nodiscard]] bool isUsable() const { return m_usable; }
    [[nodiscard]] const ftdi::Functions &functions() const { return m_functions; }

    ftdi::FT_STATUS createDeviceInfoList(ftdi::DWORD *count) const;
    ftdi::FT_STATUS getDeviceInfoList(ftdi::DeviceRecord *records, ftdi::DWORD *count) const;
    /// Opens by serial number (NUL-terminated UTF-8). One device can be open at a time.
    ftdi::FT_STATUS open(const char *serialNumber, ftdi::FT_HANDLE *handle);
    ftdi::FT_STATUS close(ftdi::FT_HANDLE handle);

    ftdi::FT_STATUS resetDevice(ftdi::FT_HANDLE handle);
    ftdi::FT_STATUS setBitMode(ftdi::FT_HANDLE handle, ftdi::UCHAR mask, ftdi::UCHAR mode);
    ftdi::FT_STATUS setLatencyTimer(ftdi::FT_HANDLE handle, ftdi::UCHAR milliseconds);
    ftdi::FT_STATUS setUsbParameters(ftdi::FT_HANDLE handle, ftdi::DWORD inSize, ftdi::DWORD outSize);
    ftdi::FT_STATUS setFlowControl(ftdi::FT_HANDLE handle, ftdi::USHORT flow, ftdi::UCHAR xOn,
                                   ftdi::UCHAR xOff);
    ftdi::FT_STATUS purge(ftdi::FT_HANDLE handle, ftdi::DWORD mask);
    ftdi::FT_STATUS setTimeouts(ftdi::FT_HANDLE handle, ftdi::DWORD readMs, ftdi::DWORD writeMs);
    ftdi::FT_STATUS getStatus(ftdi::FT_HANDLE handle, ftdi::DWORD *rxBytes, ftdi::DWORD *txBytes,
                              ftdi::DWORD *events);
    ftdi::FT_STATUS read(ftdi::FT_HANDLE handle, void *buffer, ftdi::DWORD length, ftdi::DWORD *bytesRead);
    ftdi::FT_STATUS write(ftdi::FT_HANDLE handle, const void *buffer, ftdi::DWORD length,
                          ftdi::DWORD *bytesWritten);

private:
    template <typename Call>
    ftdi::FT_STATUS onOpenHandle(ftdi::FT_HANDLE handle, Call call);

    ftdi::Functions m_functions;
    bool m_usable = false;
    std::atomic<ftdi::FT_HANDLE> m_open{nullptr};
    std::atomic<int> m_callsUnderWay{0};
};
