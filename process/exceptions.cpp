#include "process/exceptions.h"

#include "log/logmanager.h"

#include <QDebug>

#include <exception>

namespace {

const char *whatWasThrown() noexcept
{
    // The standard's way to look at the exception at hand.
    try {
        throw;
    } catch (const std::exception &exception) {
        return exception.what();
    } catch (...) {
        return "unknown";
    }
}

} // namespace

void reportException() noexcept
{
    const char *what = whatWasThrown();
    try {
        const QString line = QStringLiteral("程序异常：") + QString::fromLocal8Bit(what);
        LogManager *log = LogManager::instance();
        if (log != nullptr && log->isRunning())
            log->writeLog(line);
        else
            qWarning().noquote() << line;
    } catch (...) {
        // Without memory for a line there is none.
        return;
    }
}
