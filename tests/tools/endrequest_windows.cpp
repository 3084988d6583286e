#include "tests/tools/endrequest.h"

#include "tests/support/console_windows.h"

QList<EndRequest> EndRequest::all()
{
    return {{CTRL_C_EVENT, "CtrlC"}, {CTRL_BREAK_EVENT, "CtrlBreak"}};
}

void EndRequest::prepare(QProcess &process)
{
    static const OwnConsole console;
    // The test itself goes on after an event.
    static const PHANDLER_ROUTINE goOn = [](DWORD) -> BOOL {
        return TRUE;
    };
    ASSERT_TRUE(SetConsoleCtrlHandler(goOn, TRUE)) << GetLastError();
    // Qt would start the program on a console of its own if this one had no window.
    process.setCreateProcessArgumentsModifier(
        [](QProcess::CreateProcessArguments *arguments) { arguments->flags &= ~DWORD{CREATE_NO_WINDOW}; });
}

void EndRequest::send(const QProcess &) const
{
    OwnConsole::raise(static_cast<DWORD>(m_number));
}

bool EndRequest::ended(const QProcess &process) const
{
    return process.exitStatus() == QProcess::CrashExit &&
           static_cast<quint32>(process.exitCode()) == exitByConsole;
}
