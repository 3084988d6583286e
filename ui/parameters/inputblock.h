#pragma once

#include <QObject>

class QWidget;

/// While it lives, what the operator presses, types and turns in a window goes nowhere: it is not carried out
/// later either. Everything else goes on: painting, timers, the window's own moving and closing by the
/// system.
class InputBlock : public QObject
{
public:
    /// `window` must outlive it. Its dialogs take input.
    explicit InputBlock(const QWidget &window);
    ~InputBlock() override;

    /// Takes away what was pressed and typed while the window was not answering. Handles waiting events.
    static void discardQueuedInput(const QWidget &window);

    bool eventFilter(QObject *receiver, QEvent *event) override;

private:
    const QWidget &m_window;
};
