#include "tests/soak/processfigures.h"

#include <QDir>
#include <QFile>

#include <malloc.h>

namespace {

constexpr qint64 scatteredKiB = 128 * 1024;

#ifdef __SANITIZE_ADDRESS__
constexpr bool isMemoryTold = false;
#else
constexpr bool isMemoryTold = true;
#endif

qsizetype entries(const QString &folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot).size();
}

} // namespace

ProcessFigures ProcessFigures::now()
{
    malloc_trim(0);
    ProcessFigures figures;
    QFile status(QStringLiteral("/proc/self/status"));
    if (status.open(QIODevice::ReadOnly)) {
        const QByteArrayList lines = status.readAll().split('\n');
        for (const QByteArray &line : lines) {
            if (line.startsWith("VmRSS:"))
                figures.memoryKiB = line.mid(6).trimmed().split(' ').first().toLongLong();
        }
    }
    status.close();
    figures.threads = entries(QStringLiteral("/proc/self/task"));
    figures.handles = entries(QStringLiteral("/proc/self/fd"));
    return figures;
}

ProcessFigures ProcessFigures::most(const ProcessFigures &other) const
{
    return {qMax(memoryKiB, other.memoryKiB), qMax(threads, other.threads), qMax(handles, other.handles)};
}

bool ProcessFigures::hasMoreMemoryThan(const ProcessFigures &before) const
{
    return isMemoryTold && memoryKiB > before.memoryKiB + scatteredKiB;
}

QString ProcessFigures::text() const
{
    return QStringLiteral("%1 MiB, %2 threads, %3 handles").arg(memoryKiB / 1024).arg(threads).arg(handles);
}
