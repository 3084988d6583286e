#include "imaging/failurelog.h"

#include "log/logmanager.h"

#include <QDebug>

void reportFailure(const QString &line)
{
    // A log that runs repeats every line on the debug output; one whose file did not open has ended.
    LogManager *log = LogManager::instance();
    if (log != nullptr && log->isRunning())
        log->writeLog(line);
    else
        qWarning().noquote() << line;
}
