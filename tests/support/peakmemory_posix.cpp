#include "tests/support/peakmemory.h"

#include <QFile>
#include <QRegularExpression>

int peakMemoryMiB()
{
    QFile status(QStringLiteral("/proc/self/status"));
    static const QRegularExpression line(QStringLiteral("VmHWM:\\s+(\\d+) kB"));
    const bool isOpen = status.open(QIODevice::ReadOnly);
    const QString kib = line.match(QString::fromLatin1(status.readAll())).captured(1);
    if (!isOpen || kib.isEmpty())
        qFatal("the system does not tell how much memory was used");
    return kib.toInt() / 1024;
}
