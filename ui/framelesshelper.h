#pragma once

#include <QObject>

#include <memory>

class QWidget;
struct FramelessHelperPrivate;

/// Gives windows without a system frame the behaviour of one: dragging by a title strip along the top, a
/// double click there to maximise or restore, resizing from every edge and corner with the matching cursors.
///
/// Works as an event filter on each window that it serves: mouse, leave, hover-move and timer events of the
/// window itself end here and never reach it. Children keep theirs, but for buttons that reach into the edge:
/// a press where the resize cursor shows is the window's. The window's flags are left alone
/// until the helper is destroyed, which gives each window back the flags that it had when it was attached.
/// GUI thread only.
class FramelessHelper : public QObject
{
    Q_OBJECT

public:
    /// Dragging and resizing on, rubber bands off.
    explicit FramelessHelper(QObject *parent);
    ~FramelessHelper() override;

    /// Serves `window`, with the buttons that it has now, until one of the two is destroyed. A window already
    /// served is left as it is.
    void attachWindow(QWidget *window);

    /// Width of the resize grip in pixels, for all helpers; at first 5. 0 is ignored.
    void setEdgeWidth(int pixels);
    /// Height of the title strip in pixels, for all helpers; at first 30. 0 is ignored.
    void setTitleBarHeight(int pixels);

    void setDragEnabled(bool enabled);
    void setResizeEnabled(bool enabled);

    /// Moves a rubber band, and the window only when the button is released.
    void setRubberBandForDrag(bool enabled);
    /// Resizes a rubber band, and the window only when the button is released.
    void setRubberBandForResize(bool enabled);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void updateRubberBands();
    /// True when the event is a press on a button of a served window that the window's edge takes.
    [[nodiscard]] bool isTakenByEdge(const QObject *watched, const QEvent *event) const;

    const std::unique_ptr<FramelessHelperPrivate> d;
};
