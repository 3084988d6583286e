#include "device/exchange.h"

#include "device/portmanager.h"

QByteArray Exchange::run(PortManager &link, const QByteArray &frame, Wait wait)
{
    if (!link.isSettled())
        link.dropWaiting();
    link.write(frame);
    return reply(link, wait);
}

QByteArray Exchange::reply(PortManager &link, Wait wait)
{
    return link.wait_for_read(wait.timeoutMs, wait.bytes);
}
