#include "imaging/failurelog.h"

#include "log/logmanager.h"

#include <QDebug>

QString failureLine(const QString &what, const QString &path, const QString &reason)
{
    return QStringLiteral("%1：%2（%3）").arg(what, path, reason);
}

QString reasonOf(const std::exception &exception)
{
    return QString::fromLocal8Bit(exception.what()).simplified();
}

void reportFailure(const QString &line)
{
    // A log that runs repeats every line on the debug output; one whose file did not open has ended.
    LogManager *log = LogManager::instance();
    if (log != nullptr && log->isRunning())
        log->writeLog(line);
    else
        qWarning().noquote() << line;
}
