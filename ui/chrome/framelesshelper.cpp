#include "ui/framelesshelper.h"

#include "ui/chrome/framelesswindowstate.h"

#include <QAbstractButton>
#include <QEvent>
#include <QMouseEvent>
#include <QWidget>

#include <utility>

FramelessHelper::FramelessHelper(QObject *parent)
    : QObject(parent), d(std::make_unique<FramelessHelperPrivate>())
{
}

FramelessHelper::~FramelessHelper()
{
    const auto windows = std::exchange(d->m_windows, {});
    for (FramelessWindowState *state : windows) {
        state->restoreWindow();
        delete state;
    }
}

void FramelessHelper::attachWindow(QWidget *window)
{
    if (d->m_windows.contains(window))
        return;
    d->m_windows.insert(window, new FramelessWindowState(d.get(), window));
    window->installEventFilter(this);
    for (QAbstractButton *button : window->findChildren<QAbstractButton *>())
        button->installEventFilter(this);
    // A window that goes first, as a parent of its helper does, takes its record along.
    connect(window, &QObject::destroyed, this, [this, window] {
        window->removeEventFilter(this);
        delete d->m_windows.take(window);
    });
}

void FramelessHelper::setEdgeWidth(int pixels)
{
    if (pixels != 0)
        FramelessHelperPrivate::edgeWidth = pixels;
}

void FramelessHelper::setTitleBarHeight(int pixels)
{
    if (pixels != 0)
        FramelessHelperPrivate::titleBarHeight = pixels;
}

void FramelessHelper::setDragEnabled(bool enabled)
{
    d->m_options.setFlag(FramelessOption::Drag, enabled);
}

void FramelessHelper::setResizeEnabled(bool enabled)
{
    d->m_options.setFlag(FramelessOption::Resize, enabled);
}

void FramelessHelper::setRubberBandForDrag(bool enabled)
{
    d->m_options.setFlag(FramelessOption::RubberBandForDrag, enabled);
    updateRubberBands();
}

void FramelessHelper::setRubberBandForResize(bool enabled)
{
    d->m_options.setFlag(FramelessOption::RubberBandForResize, enabled);
    updateRubberBands();
}

void FramelessHelper::updateRubberBands()
{
    for (FramelessWindowState *state : std::as_const(d->m_windows))
        state->updateRubberBand();
}

bool FramelessHelper::eventFilter(QObject *watched, QEvent *event)
{
    if (isTakenByEdge(watched, event)) {
        event->ignore(); // and so it goes on to the window
        return true;
    }
    FramelessWindowState *state = d->m_windows.value(qobject_cast<QWidget *>(watched));
    return (state != nullptr && state->handleEvent(event)) || QObject::eventFilter(watched, event);
}

bool FramelessHelper::isTakenByEdge(const QObject *watched, const QEvent *event) const
{
    if (event->type() != QEvent::MouseButtonPress && event->type() != QEvent::MouseButtonDblClick)
        return false;
    const auto *button = qobject_cast<const QAbstractButton *>(watched);
    const FramelessWindowState *state =
        button == nullptr ? nullptr : d->m_windows.value(button->window(), nullptr);
    return state != nullptr &&
           state->showsResizeCursorAt(static_cast<const QMouseEvent *>(event)->globalPosition().toPoint());
}
