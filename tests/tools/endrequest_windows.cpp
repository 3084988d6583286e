#include "tests/tools/endrequest.h"

#include <qt_windows.h>

namespace {

/// Ctrl+C comes to every program on a console, Ctrl+Break also to the programs of one group alone.
constexpr DWORD everyProgram = 0;

/// What a program ends with that a console's event ended (STATUS_CONTROL_C_EXIT).
constexpr quint32 exitByConsole = 0xC000013A;

} // namespace

QList<EndRequest> EndRequest::all()
{
    return {{CTRL_C_EVENT, "CtrlC"}, {CTRL_BREAK_EVENT, "CtrlBreak"}};
}

void EndRequest::prepare(QProcess &process)
{
    // A console that no one else is on. The test itself goes on after an event.
    static const PHANDLER_ROUTINE goOn = [](DWORD) -> BOOL {
        return TRUE;
    };
    FreeConsole();
    ASSERT_TRUE(AllocConsole() && SetConsoleCtrlHandler(goOn, TRUE)) << GetLastError();
    // Qt would start the program on a console of its own if this one had no window.
    process.setCreateProcessArgumentsModifier(
        [](QProcess::CreateProcessArguments *arguments) { arguments->flags &= ~DWORD{CREATE_NO_WINDOW}; });
}

void EndRequest::send(const QProcess &) const
{
    ASSERT_TRUE(GenerateConsoleCtrlEvent(static_cast<DWORD>(m_number), everyProgram)) << GetLastError();
}

bool EndRequest::ended(const QProcess &process) const
{
    return process.exitStatus() == QProcess::CrashExit &&
           static_cast<quint32>(process.exitCode()) == exitByConsole;
}
