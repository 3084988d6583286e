#include "ui/parameters/inputblock.h"

#include <QCoreApplication>
#include <QEvent>
#include <QShortcut>
#include <QWidget>

namespace {

bool isInput(QEvent::Type type)
{
    switch (type) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::Shortcut:
    case QEvent::ShortcutOverride:
    case QEvent::ContextMenu:
    case QEvent::InputMethod:
    case QEvent::TabletPress:
    case QEvent::TabletMove:
    case QEvent::TabletRelease:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::NativeGesture:
    case QEvent::Drop:
        return true;
    default:
        return false;
    }
}

} // namespace

InputBlock::InputBlock(const QWidget &window) : m_window(window)
{
    QCoreApplication::instance()->installEventFilter(this);
}

InputBlock::~InputBlock()
{
    QCoreApplication::instance()->removeEventFilter(this);
}

void InputBlock::discardQueuedInput(const QWidget &window)
{
    const InputBlock block(window);
    QCoreApplication::processEvents();
}

bool InputBlock::eventFilter(QObject *receiver, QEvent *event)
{
    // A shortcut of the window's gets what was pressed itself.
    const QObject *owner = qobject_cast<QShortcut *>(receiver) != nullptr ? receiver->parent() : receiver;
    const auto *widget = qobject_cast<const QWidget *>(owner);
    return widget != nullptr && widget->window() == &m_window && isInput(event->type());
}
