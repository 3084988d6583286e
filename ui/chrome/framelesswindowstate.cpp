#include "ui/chrome/framelesswindowstate.h"

#include "ui/chrome/systemdrag.h"

#include <QGuiApplication>
#include <QHoverEvent>
#include <QMouseEvent>
#include <QWidget>
#include <QWindow>

namespace {

/// `rect` with what fell below the minimum taken back: the edge that moved returns to where it started.
QRect keepingMinimum(QRect rect, const QRect &start, QSize minimum)
{
    if (minimum.width() > rect.width()) {
        if (rect.left() == start.left())
            rect.setRight(start.right());
        else
            rect.setLeft(start.left());
    }
    if (minimum.height() > rect.height()) {
        if (rect.top() == start.top())
            rect.setBottom(start.bottom());
        else
            rect.setTop(start.top());
    }
    return rect;
}

} // namespace

FramelessWindowState::FramelessWindowState(const FramelessHelperPrivate *owner, QWidget *servedWindow)
    : helper(owner), window(servedWindow), savedFlags(servedWindow->windowFlags())
{
    window->setAttribute(Qt::WA_MouseTracking, true);
    window->setAttribute(Qt::WA_Hover, true);
    updateRubberBand();
}

void FramelessWindowState::restoreWindow()
{
    window->setAttribute(Qt::WA_MouseTracking, false);
    window->setWindowFlags(savedFlags);
    window->setAttribute(Qt::WA_Hover, false);
}

void FramelessWindowState::updateRubberBand()
{
    if (!isOn(FramelessOption::RubberBandForResize) && !isOn(FramelessOption::RubberBandForDrag))
        rubberBand.reset();
    else if (!rubberBand)
        rubberBand = std::make_unique<QRubberBand>(QRubberBand::Rectangle);
}

bool FramelessWindowState::handleEvent(QEvent *event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress:
        press(static_cast<const QMouseEvent &>(*event));
        return true;
    case QEvent::MouseButtonRelease:
        release(static_cast<const QMouseEvent &>(*event));
        return true;
    case QEvent::MouseButtonDblClick:
        doubleClick(static_cast<const QMouseEvent &>(*event));
        return true;
    case QEvent::MouseMove:
        move(static_cast<const QMouseEvent &>(*event));
        return true;
    case QEvent::Leave:
        leave();
        return true;
    case QEvent::HoverMove:
        hover(static_cast<const QHoverEvent &>(*event));
        return true;
    case QEvent::Timer:
        return true;
    default:
        return false;
    }
}

void FramelessWindowState::press(const QMouseEvent &event)
{
    if (event.button() != Qt::LeftButton)
        return;
    const QPoint global = event.globalPosition().toPoint();
    const QRect frame = window->frameGeometry();
    leftPressed = true;
    titlePressed = event.position().toPoint().y() < FramelessHelperPrivate::titleBarHeight;
    pressRegion = EdgeRegion(global, frame, FramelessHelperPrivate::edgeWidth);
    dragOffset = global - frame.topLeft();

    const auto needed =
        pressRegion.onAnyEdge ? FramelessOption::RubberBandForResize : FramelessOption::RubberBandForDrag;
    if (isOn(needed)) {
        rubberBand->setGeometry(frame);
        rubberBand->show();
    }
}

void FramelessWindowState::release(const QMouseEvent &event)
{
    if (event.button() != Qt::LeftButton)
        return;
    leftPressed = false;
    titlePressed = false;
    pressRegion = {};
    if (rubberBand && rubberBand->isVisible()) {
        rubberBand->hide();
        window->setGeometry(rubberBand->geometry());
    }
}

void FramelessWindowState::doubleClick(const QMouseEvent &event)
{
    if (event.button() != Qt::LeftButton)
        return;
    titlePressed = event.position().toPoint().y() < FramelessHelperPrivate::titleBarHeight;
    if (!titlePressed)
        return;
    if (window->isMaximized())
        window->showNormal();
    else
        window->showMaximized();
}

void FramelessWindowState::move(const QMouseEvent &event)
{
    const QPoint global = event.globalPosition().toPoint();
    if (!leftPressed) {
        if (isOn(FramelessOption::Resize))
            updateCursor(global);
        return;
    }
    if (handToSystem())
        return;
    if (isOn(FramelessOption::Resize) && pressRegion.onAnyEdge) {
        resizeTo(global);
        return;
    }
    if (isOn(FramelessOption::Drag) && titlePressed) {
        if (isOn(FramelessOption::RubberBandForDrag))
            rubberBand->move(global - dragOffset);
        else
            window->move(global - dragOffset);
    }
}

bool FramelessWindowState::handToSystem()
{
    // With the first move, not the press: a press may become a double click.
    const SystemDrag drag =
        SystemDrag::of(QGuiApplication::platformName(), helper->m_options, pressRegion, titlePressed);
    QWindow *handle = window->windowHandle();
    if (drag == SystemDrag() || handle == nullptr)
        return false;
    const bool isTaken = drag.moves ? handle->startSystemMove() : handle->startSystemResize(drag.resizes);
    if (isTaken) {
        // The release goes to the system.
        leftPressed = false;
        titlePressed = false;
        pressRegion = {};
    }
    return isTaken;
}

void FramelessWindowState::leave()
{
    if (!leftPressed)
        window->unsetCursor();
}

void FramelessWindowState::hover(const QHoverEvent &event)
{
    if (isOn(FramelessOption::Resize))
        updateCursor(window->mapToGlobal(event.position().toPoint()));
}

void FramelessWindowState::updateCursor(QPoint global)
{
    if (window->isFullScreen() || window->isMaximized()) {
        if (cursorChanged)
            window->unsetCursor();
        return;
    }
    const auto show = [this](Qt::CursorShape shape) {
        window->setCursor(shape);
        cursorChanged = true;
    };
    hoverRegion = EdgeRegion(global, window->frameGeometry(), FramelessHelperPrivate::edgeWidth);
    if (hoverRegion.topLeft || hoverRegion.bottomRight) {
        show(Qt::SizeFDiagCursor);
    } else if (hoverRegion.topRight || hoverRegion.bottomLeft) {
        show(Qt::SizeBDiagCursor);
    } else if (hoverRegion.onLeft || hoverRegion.onRight) {
        show(Qt::SizeHorCursor);
    } else if (hoverRegion.onTop || hoverRegion.onBottom) {
        show(Qt::SizeVerCursor);
    } else if (cursorChanged) {
        window->unsetCursor();
        cursorChanged = false;
    }
}

bool FramelessWindowState::showsResizeCursorAt(QPoint global) const
{
    return isOn(FramelessOption::Resize) && !window->isFullScreen() && !window->isMaximized() &&
           EdgeRegion(global, window->frameGeometry(), FramelessHelperPrivate::edgeWidth).onAnyEdge;
}

QRect FramelessWindowState::withEdgesAt(QRect start, QPoint global) const
{
    if (pressRegion.topLeft)
        start.setTopLeft(global);
    else if (pressRegion.bottomLeft)
        start.setBottomLeft(global);
    else if (pressRegion.topRight)
        start.setTopRight(global);
    else if (pressRegion.bottomRight)
        start.setBottomRight(global);
    else if (pressRegion.onLeft)
        start.setLeft(global.x());
    else if (pressRegion.onRight)
        start.setRight(global.x());
    else if (pressRegion.onTop)
        start.setTop(global.y());
    else if (pressRegion.onBottom)
        start.setBottom(global.y());
    return start;
}

void FramelessWindowState::resizeTo(QPoint global)
{
    const bool onBand = isOn(FramelessOption::RubberBandForResize);
    const QRect start = onBand ? rubberBand->frameGeometry() : window->frameGeometry();
    const QRect wanted = withEdgesAt(start, global);
    if (!wanted.isValid())
        return;
    const QRect result = keepingMinimum(wanted, start, window->minimumSize());
    if (onBand)
        rubberBand->setGeometry(result);
    else
        window->setGeometry(result);
}
