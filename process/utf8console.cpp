#include "process/utf8console.h"

#ifdef Q_OS_WIN
#include <qt_windows.h>
#endif

Utf8Console::Utf8Console()
{
#ifdef Q_OS_WIN
    m_before = GetConsoleOutputCP();
    if (m_before != 0)
        SetConsoleOutputCP(CP_UTF8);
#endif
}

Utf8Console::~Utf8Console()
{
#ifdef Q_OS_WIN
    if (m_before != 0)
        SetConsoleOutputCP(m_before);
#endif
}
