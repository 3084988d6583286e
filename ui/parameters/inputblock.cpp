#include "ui/parameters/inputblock.h"

#include <QCoreApplication>
#include <QEvent>
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
    const auto *widget = qobject_cast<QWidget *>(receiver);
    return widget != nullptr && widget->window() == &m_window && isInput(event->type());
}
