#pragma once

#include <QApplication>
#include <QWheelEvent>
#include <QWidget>
#include <QtTest/qtestspontaneevent.h>

/// Turns the wheel over the middle of a widget, as the system tells it: only then a widget may get the focus
/// by it. `angle`: 120 for a notch away from the operator. True when it was taken.
inline bool turnWheel(QWidget *widget, int angle)
{
    const QPoint middle = widget->rect().center();
    QWheelEvent event(middle, widget->mapToGlobal(middle), {}, {0, angle}, Qt::NoButton, {},
                      Qt::NoScrollPhase, false);
    QSpontaneKeyEvent::setSpontaneous(&event);
    QApplication::sendEvent(widget, &event);
    return event.isAccepted();
}
