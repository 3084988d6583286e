#include "tests/tools/endrequest.h"

#include <csignal>

QList<EndRequest> EndRequest::all()
{
    return {{SIGINT, "SIGINT"}, {SIGTERM, "SIGTERM"}, {SIGHUP, "SIGHUP"}};
}

void EndRequest::prepare(QProcess &) {}

void EndRequest::send(const QProcess &process) const
{
    ASSERT_EQ(kill(static_cast<pid_t>(process.processId()), m_number), 0);
}

bool EndRequest::ended(const QProcess &process) const
{
    return process.exitStatus() == QProcess::CrashExit && process.exitCode() == m_number;
}
