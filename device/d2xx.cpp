#include "device/d2xx.h"

#include "d2xx/arguments.h"
#include "log/logmanager.h"

#include <future>
#include <thread>

using namespace d2xx;

namespace {

void tellLog(const QString &line)
{
    if (LogManager *log = LogManager::instance())
        log->writeLog(line);
}

Status leaveBehind()
{
    tellLog(QStringLiteral("串口关闭超时，句柄未释放"));
    return Status::OtherError;
}

/// On a thread of its own: a library may hang in this call too. Nothing when it did not return in time.
std::optional<Status> closeWithin(Close *close, Handle handle, std::chrono::steady_clock::time_point deadline)
{
    std::future<Status> result;
    try {
        std::packaged_task<Status()> closing([=] { return close(handle); });
        result = closing.get_future();
        std::thread(std::move(closing)).detach();
    } catch (const std::exception &) {
        return close(handle); // no thread to be had
    }
    if (result.wait_until(deadline) != std::future_status::ready)
        return std::nullopt;
    return result.get();
}

} // namespace

D2xx::~D2xx()
{
    closeUnclosed();
}

bool D2xx::closeUnclosed()
{
    const Handle unclosed = m_unclosed.exchange(nullptr);
    if (unclosed == nullptr)
        return false;
    closeWithin(m_functions.close, unclosed, std::chrono::steady_clock::now() + closingLimit);
    return true;
}

// Counted in before the handle is compared, and the handle taken back before the count is awaited: of a
// call and a close that meet, one sees the other. A call that meets a close and the next open is refused.
template <typename Call>
Status D2xx::onOpenHandle(Handle handle, Call call)
{
    const std::size_t opened = m_opened;
    Use &use = useOf(opened);
    ++use.callsUnderWay;
    Status status = Status::InvalidHandle;
    if (handle != nullptr && handle == m_open && opened == m_opened)
        status = call();
    if (--use.callsUnderWay == 0)
        closeLeft(use);
    return status;
}

D2xx::Use &D2xx::useOf(std::size_t opened)
{
    return m_uses[opened % m_uses.size()];
}

// By the last call that returns, or by the close that left it, whichever sees the other.
void D2xx::closeLeft(Use &use)
{
    const Handle left = use.left.exchange(nullptr);
    if (left == nullptr || left == m_open)
        return;
    m_functions.close(left);
    tellLog(QStringLiteral("串口句柄已释放"));
}

Status D2xx::createDeviceInfoList(quint32 *count) const
{
    return m_usable ? m_functions.createDeviceInfoList(count) : Status::DeviceNotFound;
}

Status D2xx::getDeviceInfoList(DeviceRecord *records, quint32 *count) const
{
    return m_usable ? m_functions.getDeviceInfoList(records, count) : Status::DeviceNotFound;
}

Status D2xx::open(const char *serialNumber, Handle *handle)
{
    if (!m_usable)
        return Status::DeviceNotFound;
    const auto openNow = [&] {
        return m_functions.openEx(const_cast<char *>(serialNumber), openBySerialNumber, handle);
    };
    Status status = openNow();
    if (status == Status::Ok)
        m_unclosed = nullptr;
    else if (closeUnclosed())
        status = openNow();
    if (status == Status::Ok || *handle != m_open) {
        ++m_opened;
        m_open = *handle;
    }
    return status;
}

Status D2xx::close(Handle handle)
{
    Handle expected = handle;
    if (handle == nullptr || !m_open.compare_exchange_strong(expected, nullptr))
        return Status::InvalidHandle;
    const auto deadline = std::chrono::steady_clock::now() + closingLimit;
    Use &use = useOf(m_opened);
    while (use.callsUnderWay != 0) {
        if (std::chrono::steady_clock::now() < deadline) {
            std::this_thread::yield();
            continue;
        }
        use.left = handle;
        if (use.callsUnderWay == 0)
            closeLeft(use);
        return leaveBehind();
    }
    const std::optional<Status> status = closeWithin(m_functions.close, handle, deadline);
    if (!status)
        return leaveBehind();
    m_unclosed = *status == Status::Ok ? nullptr : handle;
    return *status;
}

Status D2xx::resetDevice(Handle handle)
{
    return onOpenHandle(handle, [&] { return m_functions.resetDevice(handle); });
}

Status D2xx::setBitMode(Handle handle, quint8 mask, quint8 mode)
{
    return onOpenHandle(handle, [&] { return m_functions.setBitMode(handle, mask, mode); });
}

Status D2xx::setLatencyTimer(Handle handle, quint8 milliseconds)
{
    return onOpenHandle(handle, [&] { return m_functions.setLatencyTimer(handle, milliseconds); });
}

Status D2xx::setUsbParameters(Handle handle, quint32 inSize, quint32 outSize)
{
    return onOpenHandle(handle, [&] { return m_functions.setUsbParameters(handle, inSize, outSize); });
}

Status D2xx::setFlowControl(Handle handle, quint16 flow, quint8 xOn, quint8 xOff)
{
    return onOpenHandle(handle, [&] { return m_functions.setFlowControl(handle, flow, xOn, xOff); });
}

Status D2xx::purge(Handle handle, quint32 mask)
{
    return onOpenHandle(handle, [&] { return m_functions.purge(handle, mask); });
}

Status D2xx::setTimeouts(Handle handle, quint32 readMs, quint32 writeMs)
{
    return onOpenHandle(handle, [&] { return m_functions.setTimeouts(handle, readMs, writeMs); });
}

Status D2xx::getStatus(Handle handle, quint32 *rxBytes, quint32 *txBytes, quint32 *events)
{
    return onOpenHandle(handle, [&] { return m_functions.getStatus(handle, rxBytes, txBytes, events); });
}

Status D2xx::read(Handle handle, void *buffer, quint32 length, quint32 *bytesRead)
{
    return onOpenHandle(handle, [&] { return m_functions.read(handle, buffer, length, bytesRead); });
}

Status D2xx::write(Handle handle, const void *buffer, quint32 length, quint32 *bytesWritten)
{
    return onOpenHandle(
        handle, [&] { return m_functions.write(handle, const_cast<void *>(buffer), length, bytesWritten); });
}

QString D2xx::problem(Handle handle)
{
    if (m_functions.tellProblem == nullptr)
        return {};
    std::array<char, 512> text{};
    const auto tell = [&] {
        return m_functions.tellProblem(handle, text.data(), static_cast<quint32>(text.size()));
    };
    const Status status = handle == nullptr ? tell() : onOpenHandle(handle, tell);
    return status == Status::Ok ? QString::fromUtf8(text.data()) : QString();
}

std::optional<quint32> D2xx::losses(Handle handle)
{
    if (m_functions.countLosses == nullptr)
        return std::nullopt;
    quint32 count = 0;
    const Status status = onOpenHandle(handle, [&] { return m_functions.countLosses(handle, &count); });
    return status == Status::Ok ? std::optional(count) : std::nullopt;
}
