#pragma once

#include <QtGlobal>

/// While it lives, what the process writes to a console of Windows is UTF-8, as it is everywhere else; then
/// the console, which outlives the process, is as it was. Nothing on other systems, nor without a console.
class Utf8Console
{
public:
    Utf8Console();
    ~Utf8Console();
    Q_DISABLE_COPY_MOVE(Utf8Console)

private:
    [[maybe_unused]] quint32 m_before = 0; ///< the console's code page; 0 when there is none
};
