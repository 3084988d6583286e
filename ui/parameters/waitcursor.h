#pragma once

#include <QCursor>
#include <QGuiApplication>

/// Shows the waiting cursor while it lives: the window does not answer until an exchange is over.
class WaitCursor
{
public:
    WaitCursor() { QGuiApplication::setOverrideCursor(Qt::WaitCursor); }
    ~WaitCursor() { QGuiApplication::restoreOverrideCursor(); }
    Q_DISABLE_COPY_MOVE(WaitCursor)
};
