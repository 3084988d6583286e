#pragma once

#include "ui/framelesshelper.h"

#include <QApplication>
#include <QHoverEvent>
#include <QList>
#include <QMouseEvent>
#include <QRubberBand>
#include <QWidget>

#include <algorithm>

/// A frameless window of 800 x 600 at (100, 100) that is served by a helper as the program sets it up:
/// 3-pixel edges and a 40-pixel title strip. Events are sent to it as if they came from the mouse, and it
/// keeps the types of those that reach it.
class ChromeWindow : public QWidget
{
public:
    explicit ChromeWindow(bool shown = true)
    {
        setWindowFlags(Qt::Window | Qt::FramelessWindowHint);
        setGeometry(100, 100, 800, 600);
        setMinimumSize(400, 300);
        helper.attachWindow(this);
        helper.setEdgeWidth(3);
        helper.setTitleBarHeight(40);
        if (shown)
            show();
        received.clear();
    }

    /// Sends a mouse event at a global point.
    void mouse(QEvent::Type type, QPoint global, Qt::MouseButton button = Qt::LeftButton)
    {
        const QPoint local = global - geometry().topLeft();
        const auto changed = type == QEvent::MouseMove ? Qt::NoButton : button;
        QMouseEvent event(type, local, global, changed, button, Qt::NoModifier);
        QApplication::sendEvent(this, &event);
    }

    void press(QPoint global, Qt::MouseButton button = Qt::LeftButton)
    {
        mouse(QEvent::MouseButtonPress, global, button);
    }
    void moveTo(QPoint global, Qt::MouseButton button = Qt::LeftButton)
    {
        mouse(QEvent::MouseMove, global, button);
    }
    /// A mouse move alone: through the application a hover move comes with it.
    void moveOnlyTo(QPoint global, Qt::MouseButton button = Qt::NoButton)
    {
        QMouseEvent event(QEvent::MouseMove, global - geometry().topLeft(), global, Qt::NoButton, button,
                          Qt::NoModifier);
        static_cast<QObject &>(helper).eventFilter(this, &event);
    }
    void release(QPoint global, Qt::MouseButton button = Qt::LeftButton)
    {
        mouse(QEvent::MouseButtonRelease, global, button);
    }
    void doubleClick(QPoint global, Qt::MouseButton button = Qt::LeftButton)
    {
        mouse(QEvent::MouseButtonDblClick, global, button);
    }
    void hover(QPoint global)
    {
        const QPoint local = global - geometry().topLeft();
        QHoverEvent event(QEvent::HoverMove, local, global, local);
        QApplication::sendEvent(this, &event);
    }
    void leave()
    {
        QEvent event(QEvent::Leave);
        QApplication::sendEvent(this, &event);
    }

    /// A top-level window without a cursor of its own has the arrow.
    [[nodiscard]] bool hasCursor() const { return cursor().shape() != Qt::ArrowCursor; }

    /// The rubber band of the helper; null when there is none.
    [[nodiscard]] static QRubberBand *band()
    {
        const auto widgets = QApplication::topLevelWidgets();
        const auto found = std::find_if(widgets.begin(), widgets.end(),
                                        [](QWidget *widget) { return qobject_cast<QRubberBand *>(widget); });
        return found == widgets.end() ? nullptr : qobject_cast<QRubberBand *>(*found);
    }

    QList<QEvent::Type> received;
    FramelessHelper helper{nullptr}; // goes first: it sends events to the window once more

protected:
    bool event(QEvent *event) override
    {
        received.append(event->type());
        return QWidget::event(event);
    }
};
