#pragma once

#include <QObject>
#include <QPointF>
#include <QPointer>
#include <QRect>
#include <QRubberBand>

#include <optional>

class QMouseEvent;
class QWidget;

/// Tells which part of a picture somebody drags over with the left button; a rubber band shows it meanwhile.
/// The events reach the picture all the same: a press picks its pixel as ever. GUI thread only.
class RegionDrag : public QObject
{
    Q_OBJECT

public:
    /// `picture` fills its widget with a whole frame.
    explicit RegionDrag(QWidget &picture, QObject *parent = nullptr);
    ~RegionDrag() override;

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    /// The button was let go: the part in the frame's pixels, one at least, within the frame.
    void chosen(const QRect &region);

private:
    void press(const QMouseEvent &event);
    void move(const QMouseEvent &event);
    void release(const QMouseEvent &event);
    void endBand();
    /// From the press to `place`, cut at the picture's edges.
    [[nodiscard]] QRect draggedTo(QPointF place) const;

    QWidget &m_picture;
    std::optional<QPointF> m_pressed; ///< where the left button went down
    QPointer<QRubberBand> m_band;     ///< the picture's child, while a part is dragged over
};
