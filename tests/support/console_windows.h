#pragma once

#include <gtest/gtest.h>

#include <QtGlobal>

#include <qt_windows.h>

/// A console on which this process is alone with the programs that it starts from then on. Its events come to
/// all of them.
class OwnConsole
{
public:
    OwnConsole()
    {
        FreeConsole();
        EXPECT_TRUE(AllocConsole()) << GetLastError();
    }
    ~OwnConsole() { FreeConsole(); }
    Q_DISABLE_COPY_MOVE(OwnConsole)

    static void raise(DWORD event)
    {
        constexpr DWORD allPrograms = 0;
        EXPECT_TRUE(GenerateConsoleCtrlEvent(event, allPrograms)) << GetLastError();
    }
};

/// What a program ends with that an event of its console ended (STATUS_CONTROL_C_EXIT).
inline constexpr quint32 exitByConsole = 0xC000013A;
