#pragma once

#include <QObject>

/// Tells of the system's key for help (F1) wherever in the program it is pressed: in a window, in its dialogs
/// and in message boxes, which keep shortcuts of the window below from working. GUI thread only.
class HelpKey : public QObject
{
    Q_OBJECT

public:
    /// Works as long as it lives.
    explicit HelpKey(QObject *parent);

    bool eventFilter(QObject *receiver, QEvent *event) override;

Q_SIGNALS:
    /// Once a press, however long the key is held down.
    void pressed();
};
