#include "ui/chrome/helpkey.h"

#include <QCoreApplication>
#include <QKeyEvent>

HelpKey::HelpKey(QObject *parent) : QObject(parent)
{
    QCoreApplication::instance()->installEventFilter(this);
}

bool HelpKey::eventFilter(QObject *receiver, QEvent *event)
{
    // The system's window gets the press first and hands it to its widget: one of the two is enough, and who
    // keeps input away from a widget keeps this key away too.
    if (event->type() != QEvent::KeyPress || !receiver->isWidgetType())
        return false;
    const auto *key = static_cast<const QKeyEvent *>(event);
    if (!key->matches(QKeySequence::HelpContents))
        return false;
    if (!key->isAutoRepeat())
        Q_EMIT pressed();
    return true;
}
