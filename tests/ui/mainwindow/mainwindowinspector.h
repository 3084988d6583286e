#pragma once

#include "ui/mainwindow.h"

/// What of a window's inner state can be told neither from its widgets nor from the link.
class MainWindowInspector
{
public:
    static const QTimer &statusTimer(const mainwindow &window) { return window.m_statusTimer; }
    static ProcessImage &pipeline(mainwindow &window) { return *window.m_process; }
    static qint64 frameCount(const mainwindow &window) { return window.m_frameCount; }
    static qint64 elapsedMs(const mainwindow &window) { return window.m_elapsedMs; }
    static void keep(mainwindow &window, const QString &key, const QVariant &value)
    {
        window.setValue(key, value);
    }
    /// Where the window looks for its manual.
    static void setManualFolders(mainwindow &window, const QStringList &folders)
    {
        window.m_manualFolders = folders;
    }
    static double rotation(const mainwindow &window) { return window.m_rotation; }
};
