#include "device/exchange.h"

#include "device/portmanager.h"

QByteArray Exchange::run(PortManager &link, const QByteArray &frame, Wait wait)
{
    if (!link.isSettled())
        link.dropWaiting();
    link.write(frame);
    return reply(link, frame, wait);
}

QByteArray Exchange::reply(PortManager &link, const QByteArray &frame, Wait wait)
{
    QByteArray bytes = link.wait_for_read(wait.timeoutMs, wait.bytes);
    if (AckFrame::answersAnother(bytes, frame))
        link.unsettle();
    return bytes;
}
