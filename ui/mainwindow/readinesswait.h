#pragma once

#include "ui/parameters/inputblock.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QPointer>

class QDialog;
class QWidget;

/// The window's wait for a detector that is not ready yet. While it lives the window takes no input, and from
/// two seconds on a dialog with a Cancel button stands over it. The dialog is not modal: a modal one would
/// keep the system's close away from the window.
class ReadinessWait
{
public:
    explicit ReadinessWait(QWidget &window);
    ~ReadinessWait();
    Q_DISABLE_COPY_MOVE(ReadinessWait)

    /// Handles events for a second, or until the wait ends. False when it has ended.
    bool rest();

    /// Ends the wait.
    void end();

private:
    void showDialog();

    QWidget &m_window;
    InputBlock m_block;
    QElapsedTimer m_clock;
    QEventLoop m_loop;
    QPointer<QDialog> m_dialog; ///< a child of the window
    bool m_hasEnded = false;
};
