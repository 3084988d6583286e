#include "ui/chrome/wheelguard.h"

#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QComboBox>
#include <QEvent>
#include <QScrollBar>
#include <QWidget>

namespace {

/// A scroll bar is there to be turned; it holds no value.
bool isField(const QWidget *widget)
{
    return qobject_cast<const QAbstractSpinBox *>(widget) != nullptr ||
           qobject_cast<const QComboBox *>(widget) != nullptr ||
           (qobject_cast<const QAbstractSlider *>(widget) != nullptr &&
            qobject_cast<const QScrollBar *>(widget) == nullptr);
}

} // namespace

WheelGuard::WheelGuard(QWidget &window) : QObject(&window)
{
    for (QWidget *widget : window.findChildren<QWidget *>()) {
        if (!isField(widget))
            continue;
        // Or the wheel itself would give it the focus first.
        if (widget->focusPolicy() == Qt::WheelFocus)
            widget->setFocusPolicy(Qt::StrongFocus);
        widget->installEventFilter(this);
    }
}

bool WheelGuard::eventFilter(QObject *watched, QEvent *event)
{
    const auto *field = qobject_cast<QWidget *>(watched);
    if (event->type() != QEvent::Wheel || field == nullptr || field->hasFocus())
        return QObject::eventFilter(watched, event);
    event->ignore(); // and so it goes on to the parent
    return true;
}
