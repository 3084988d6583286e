#include "ui/parameters/parameterexchange.h"

#include "device/portmanager.h"
#include "device/protocol/commandframes.h"
#include "ui/parameters/waitcursor.h"

namespace {

constexpr int commandTimeoutMs = 2000;
constexpr int readBackTimeoutMs = 5000;

QByteArray exchange(const QByteArray &frame, int timeoutMs, int bytes)
{
    const WaitCursor cursor;
    PortManager *link = PortManager::instance();
    link->write(frame);
    return link->wait_for_read(timeoutMs, bytes);
}

} // namespace

namespace ParameterExchange {

QByteArray command(const QByteArray &frame)
{
    return exchange(frame, commandTimeoutMs, AckFrame::commandBytes);
}

QByteArray readBack(const QByteArray &frame, int bytes)
{
    return exchange(frame, readBackTimeoutMs, bytes);
}

} // namespace ParameterExchange
