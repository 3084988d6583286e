#include "tests/soak/processfigures.h"

#include <QDir>
#include <QFile>
#include <QPixmapCache>

#include <cstddef>
#include <cstdio>
#include <cstdlib>

#include <malloc.h>

namespace {

/// Caches of libraries, and what the virtual library keeps of a second detector once it has shown a picture:
/// 20 MiB.
constexpr qint64 cachedKiB = 32 * 1024;

/// As the heap tells of itself, all of its arenas together; nothing under AddressSanitizer, whose heap is
/// another.
qint64 heapBytes()
{
    char *text = nullptr;
    std::size_t length = 0;
    std::FILE *stream = open_memstream(&text, &length);
    malloc_info(0, stream);
    std::fclose(stream);
    const QByteArray told(text, static_cast<qsizetype>(length));
    std::free(text);
    // The sums stand behind the arenas.
    const QByteArray sums = told.mid(told.lastIndexOf("</heap>"));
    const auto size = [&sums](const QByteArray &name) {
        const qsizetype line = sums.indexOf(name);
        const qsizetype number = sums.indexOf("size=\"", line) + 6;
        return line < 0 ? 0 : sums.mid(number, sums.indexOf('"', number) - number).toLongLong();
    };
    return size("<system type=\"current\"") + size("<total type=\"mmap\"") - size("<total type=\"fast\"") -
           size("<total type=\"rest\"");
}

qsizetype entries(const QString &folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot).size();
}

} // namespace

ProcessFigures ProcessFigures::now()
{
    QPixmapCache::clear(); // icons in each size that was ever drawn, until it is full at 10 MiB
    malloc_trim(0);
    ProcessFigures figures;
    QFile status(QStringLiteral("/proc/self/status"));
    if (status.open(QIODevice::ReadOnly)) {
        const QByteArrayList lines = status.readAll().split('\n');
        for (const QByteArray &line : lines) {
            if (line.startsWith("RssAnon:"))
                figures.memoryKiB = line.mid(8).trimmed().split(' ').first().toLongLong();
        }
    }
    status.close();
    figures.heapKiB = heapBytes() / 1024;
    figures.threads = entries(QStringLiteral("/proc/self/task"));
    figures.handles = entries(QStringLiteral("/proc/self/fd"));
    return figures;
}

ProcessFigures ProcessFigures::most(const ProcessFigures &other) const
{
    return {qMax(memoryKiB, other.memoryKiB), qMax(heapKiB, other.heapKiB), qMax(threads, other.threads),
            qMax(handles, other.handles)};
}

bool ProcessFigures::holdsMoreThan(const ProcessFigures &before) const
{
    return heapKiB > before.heapKiB + cachedKiB || threads > before.threads || handles > before.handles;
}

QString ProcessFigures::text() const
{
    return QStringLiteral("%1 MiB (%2 MiB of them asked for), %3 threads, %4 handles")
        .arg(memoryKiB / 1024)
        .arg(heapKiB / 1024)
        .arg(threads)
        .arg(handles);
}
