#pragma once

#include "ui/chrome/edgeregion.h"

#include <QFlags>
#include <QHash>
#include <QPoint>
#include <QRubberBand>

#include <memory>

class FramelessWindowState;
class QEvent;
class QHoverEvent;
class QMouseEvent;
class QWidget;

enum class FramelessOption : quint8 {
    Drag = 1,
    Resize = 2,
    RubberBandForResize = 4,
    RubberBandForDrag = 8,
};
Q_DECLARE_FLAGS(FramelessOptions, FramelessOption)
Q_DECLARE_OPERATORS_FOR_FLAGS(FramelessOptions)

/// Private data of a FramelessHelper: the windows that it serves and how.
struct FramelessHelperPrivate
{
    QHash<QWidget *, FramelessWindowState *> m_windows; ///< owned
    FramelessOptions m_options = FramelessOption::Drag | FramelessOption::Resize;

    inline static int edgeWidth = 5;       ///< pixels; shared by all helpers
    inline static int titleBarHeight = 30; ///< pixels; shared by all helpers
};

/// One served window: turns its mouse events into moves, resizes and cursor shapes. GUI thread.
class FramelessWindowState
{
public:
    FramelessWindowState(const FramelessHelperPrivate *owner, QWidget *servedWindow);
    Q_DISABLE_COPY_MOVE(FramelessWindowState)
    ~FramelessWindowState() = default;

    /// True when the event was one of those that the helper keeps for itself.
    bool handleEvent(QEvent *event);

    /// Whether the pointer at that place has the shape that promises a resize.
    [[nodiscard]] bool showsResizeCursorAt(QPoint global) const;

    /// Makes or drops the rubber band as the options ask.
    void updateRubberBand();

    /// Gives the window back as it was when it was attached.
    void restoreWindow();

private:
    void press(const QMouseEvent &event);
    void release(const QMouseEvent &event);
    void doubleClick(const QMouseEvent &event);
    void move(const QMouseEvent &event);
    /// True when the system moves or resizes the window from here on.
    bool handToSystem();
    void leave();
    void hover(const QHoverEvent &event);
    void updateCursor(QPoint global);
    void resizeTo(QPoint global);
    [[nodiscard]] QRect withEdgesAt(QRect start, QPoint global) const;
    [[nodiscard]] bool isOn(FramelessOption option) const { return helper->m_options.testFlag(option); }

    const FramelessHelperPrivate *helper;
    std::unique_ptr<QRubberBand> rubberBand; ///< only while one of the rubber-band options is on
    QWidget *window;
    QPoint dragOffset; ///< from the frame's top-left to the press, global
    EdgeRegion pressRegion;
    EdgeRegion hoverRegion;
    bool leftPressed = false;
    bool cursorChanged = false; ///< a resize cursor was set on the window
    bool titlePressed = false;  ///< the left press or double click was inside the title strip
    Qt::WindowFlags savedFlags; ///< at attachment
};
