#include "device/d2xx.h"

#include <thread>

using namespace ftdi;

// Counted in before the handle is compared, and the handle taken back before the count is awaited: of a
// call and a close that meet, one sees the other.
template <typename Call>
FT_STATUS D2xx::onOpenHandle(FT_HANDLE handle, Call call)
{
    ++m_callsUnderWay;
    FT_STATUS status = FT_INVALID_HANDLE;
    if (handle != nullptr && handle == m_open)
        status = call();
    --m_callsUnderWay;
    return status;
}

FT_STATUS D2xx::createDeviceInfoList(DWORD *count) const
{
    return m_usable ? m_functions.createDeviceInfoList(count) : FT_DEVICE_NOT_FOUND;
}

FT_STATUS D2xx::getDeviceInfoList(DeviceRecord *records, DWORD *count) const
{
    return m_usable ? m_functions.getDeviceInfoList(records, count) : FT_DEVICE_NOT_FOUND;
}

FT_STATUS D2xx::open(const char *serialNumber, FT_HANDLE *handle)
{
    if (!m_usable)
        return FT_DEVICE_NOT_FOUND;
    const FT_STATUS status =
        m_functions.openEx(const_cast<char *>(serialNumber), FT_OPEN_BY_SERIAL_NUMBER, handle);
    if (status == FT_OK)
        m_open = *handle;
    return status;
}

FT_STATUS D2xx::close(FT_HANDLE handle)
{
    FT_HANDLE expected = handle;
    if (handle == nullptr || !m_open.compare_exchange_strong(expected, nullptr))
        return FT_INVALID_HANDLE;
    while (m_callsUnderWay != 0)
        std::this_thread::yield();
    return m_functions.close(handle);
}

FT_STATUS D2xx::resetDevice(FT_HANDLE handle)
{
    return onOpenHandle(handle, [&] { return m_functions.resetDevice(handle); });
}

FT_STATUS D2xx::setBitMode(FT_HANDLE handle, UCHAR mask, UCHAR mode)
{
    return onOpenHandle(handle, [&] { return m_functions.setBitMode(handle, mask, mode); });
}

FT_STATUS D2xx::setLatencyTimer(FT_HANDLE handle, UCHAR milliseconds)
{
    return onOpenHandle(handle, [&] { return m_functions.setLatencyTimer(handle, milliseconds); });
}

FT_STATUS D2xx::setUsbParameters(FT_HANDLE handle, DWORD inSize, DWORD outSize)
{
    return onOpenHandle(handle, [&] { return m_functions.setUsbParameters(handle, inSize, outSize); });
}

FT_STATUS D2xx::setFlowControl(FT_HANDLE handle, USHORT flow, UCHAR xOn, UCHAR xOff)
{
    return onOpenHandle(handle, [&] { return m_functions.setFlowControl(handle, flow, xOn, xOff); });
}

FT_STATUS D2xx::purge(FT_HANDLE handle, DWORD mask)
{
    return onOpenHandle(handle, [&] { return m_functions.purge(handle, mask); });
}

FT_STATUS D2xx::setTimeouts(FT_HANDLE handle, DWORD readMs, DWORD writeMs)
{
    return onOpenHandle(handle, [&] { return m_functions.setTimeouts(handle, readMs, writeMs); });
}

FT_STATUS D2xx::getStatus(FT_HANDLE handle, DWORD *rxBytes, DWORD *txBytes, DWORD *events)
{
    return onOpenHandle(handle, [&] { return m_functions.getStatus(handle, rxBytes, txBytes, events); });
}

FT_STATUS D2xx::read(FT_HANDLE handle, void *buffer, DWORD length, DWORD *bytesRead)
{
    return onOpenHandle(handle, [&] { return m_functions.read(handle, buffer, length, bytesRead); });
}

FT_STATUS D2xx::write(FT_HANDLE handle, const void *buffer, DWORD length, DWORD *bytesWritten)
{
    return onOpenHandle(
        handle, [&] { return m_functions.write(handle, const_cast<void *>(buffer), length, bytesWritten); });
}
