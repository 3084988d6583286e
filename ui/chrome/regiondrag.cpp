#include "ui/chrome/regiondrag.h"

#include "ui/chrome/pictureplace.h"

#include <QApplication>
#include <QMouseEvent>
#include <QWidget>

#include <algorithm>

RegionDrag::RegionDrag(QWidget &picture, QObject *parent) : QObject(parent), m_picture(picture)
{
    picture.installEventFilter(this);
}

RegionDrag::~RegionDrag()
{
    endBand();
}

bool RegionDrag::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress:
        press(static_cast<const QMouseEvent &>(*event));
        break;
    case QEvent::MouseMove:
        move(static_cast<const QMouseEvent &>(*event));
        break;
    case QEvent::MouseButtonRelease:
        release(static_cast<const QMouseEvent &>(*event));
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

void RegionDrag::press(const QMouseEvent &event)
{
    // Another button breaks it off.
    endBand();
    m_pressed.reset();
    if (event.buttons() == Qt::LeftButton)
        m_pressed = event.position();
}

void RegionDrag::move(const QMouseEvent &event)
{
    if (!m_pressed)
        return;
    const bool isDragged =
        (event.position() - *m_pressed).manhattanLength() >= QApplication::startDragDistance();
    if (!m_band && isDragged)
        m_band = new QRubberBand(QRubberBand::Rectangle, &m_picture);
    if (!m_band)
        return;
    m_band->setGeometry(draggedTo(event.position()));
    m_band->show();
}

void RegionDrag::release(const QMouseEvent &event)
{
    const bool isChosen = m_band && event.button() == Qt::LeftButton;
    endBand();
    if (isChosen) {
        const QSizeF size = m_picture.size();
        const QRect part = draggedTo(event.position());
        Q_EMIT chosen({framePixelAt(part.topLeft(), size), lastFramePixelUnder(part.bottomRight(), size)});
    }
    m_pressed.reset();
}

void RegionDrag::endBand()
{
    delete m_band;
}

QRect RegionDrag::draggedTo(QPointF place) const
{
    const QRect all = m_picture.rect();
    const auto within = [&all](QPointF point) {
        return QRect(std::clamp(static_cast<int>(point.x()), all.left(), all.right()),
                     std::clamp(static_cast<int>(point.y()), all.top(), all.bottom()), 1, 1);
    };
    return within(*m_pressed) | within(place);
}
