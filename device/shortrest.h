#pragma once

#include <QtGlobal>

#include <memory>

/// Rests of about a millisecond, on every system. Windows' own sleep lasts until the next tick of the
/// system's clock, 15.6 ms by default, which over the 32 blocks of a frame would add up to half a second.
///
/// On Windows it holds a timer of high resolution (Windows 10 from version 1803 on); where there is none it
/// raises the resolution of the system's clock to 1 ms while it lives. Made and used on one thread.
class ShortRest
{
public:
    ShortRest();
    ~ShortRest();
    Q_DISABLE_COPY_MOVE(ShortRest)

    /// Blocks for a millisecond, rarely longer.
    void oneMillisecond();

private:
    struct System;
    std::unique_ptr<System> m_system;
};
