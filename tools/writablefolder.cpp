#include "tools/writablefolder.h"

#include <QDir>
#include <QTemporaryFile>

QString WritableFolder::check(const QString &folder)
{
    if (!QDir().mkpath(folder))
        return QStringLiteral("the folder %1 cannot be created").arg(folder);
    QTemporaryFile probe(folder + QStringLiteral("/.qv1k-XXXXXX"));
    if (!probe.open())
        return QStringLiteral("the folder %1 is not writable: %2").arg(folder, probe.errorString());
    return {};
}
