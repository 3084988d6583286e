#include "ui/keepratiowidget.h"

#include "device/protocol/frameformat.h"
#include "imaging/screenpicture.h"
#include "ui/chrome/pictureplace.h"

#include <QColorSpace>
#include <QDebug>
#include <QHBoxLayout>
#include <QHash>
#include <QImage>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QPixmap>
#include <QResizeEvent>

#include <algorithm>

namespace {

constexpr int contentMargin = 2;
constexpr int largeStep = 16; ///< pixels

/// From this many pixels on Qt scales pictures of every format as 32-bit pixels.
constexpr qint64 largePicture = 1 << 20;

QImage scaledTo(const QImage &image, QSize size)
{
    return image.scaled(size, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

bool isLargeAndGrey(const QImage &image)
{
    return image.format() == QImage::Format_Grayscale8 && !image.colorSpace().isValid() &&
           qint64{image.width()} * image.height() >= largePicture;
}

/// The one channel of a picture that is grey throughout.
QImage greyChannel(const QImage &rgb)
{
    QImage grey(rgb.size(), QImage::Format_Grayscale8);
    for (int y = 0; y < rgb.height(); ++y) {
        const auto *source = reinterpret_cast<const QRgb *>(rgb.constScanLine(y));
        std::transform(source, source + rgb.width(), grey.scanLine(y),
                       [](QRgb pixel) { return static_cast<uchar>(qBlue(pixel)); });
    }
    grey.setDevicePixelRatio(rgb.devicePixelRatio());
    grey.setDotsPerMeterX(rgb.dotsPerMeterX());
    grey.setDotsPerMeterY(rgb.dotsPerMeterY());
    return grey;
}

} // namespace

KeepRatioWidget::KeepRatioWidget(QWidget *parent)
    : QFrame(parent), m_content(new QWidget(this)), m_layout(new QHBoxLayout(m_content)),
      m_label(new QLabel(m_content))
{
    m_layout->addWidget(m_label);
    m_layout->setContentsMargins(contentMargin, contentMargin, contentMargin, contentMargin);
    m_label->installEventFilter(this);
    qDebug() << m_content->size();
}

void KeepRatioWidget::setRatio(int width, int height)
{
    m_ratioWidth = width;
    m_ratioHeight = height;
}

QWidget &KeepRatioWidget::picture() const
{
    return *m_label;
}

void KeepRatioWidget::setImage(QImage &image)
{
    m_picture = image;
    image = showPicture();
}

QImage KeepRatioWidget::showPicture()
{
    const QSize size = m_label->size();
    if (m_picture.isNull() || size.isEmpty()) {
        m_label->setPixmap(QPixmap());
        return {};
    }
    if (const qreal ratio = devicePixelRatioF(); ratio != 1.0)
        return showSharp(ratio);
    if (isLargeAndGrey(m_picture)) {
        // Scaling and showing both work on 32-bit pixels. Staying there until the end, instead of going back
        // to grey in between, saves about half of the time and gives the same pixels.
        const QImage rgb = scaledTo(m_picture.convertToFormat(QImage::Format_RGB32), size);
        m_label->setPixmap(QPixmap::fromImage(rgb));
        return greyChannel(rgb);
    }
    QImage scaled = scaledTo(m_picture, size);
    m_label->setPixmap(QPixmap::fromImage(scaled));
    return scaled;
}

QImage KeepRatioWidget::showSharp(qreal ratio)
{
    // Scaled to the desktop's pixels, the picture would be scaled once more when it is painted, and be soft.
    const QSize size =
        m_picture.size().scaled((QSizeF(m_label->size()) * ratio).toSize(), Qt::KeepAspectRatio);
    const bool isGrey = m_picture.format() == QImage::Format_Grayscale8 && !m_picture.colorSpace().isValid();
    QImage scaled = isGrey ? ScreenPicture::scaled(m_picture, size) : scaledTo(m_picture, size);
    scaled.setDevicePixelRatio(ratio);
    m_label->setPixmap(QPixmap::fromImage(scaled));
    return scaled;
}

bool KeepRatioWidget::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_label && event->type() == QEvent::MouseButtonPress)
        reportClick(static_cast<const QMouseEvent &>(*event));
    // Clicks are mapped by the label's size: the picture goes on filling it.
    // On another screen, it goes on being sharp.
    if (watched == m_label &&
        (event->type() == QEvent::Resize || event->type() == QEvent::ScreenChangeInternal))
        showPicture();
    return QFrame::eventFilter(watched, event);
}

void KeepRatioWidget::reportClick(const QMouseEvent &press)
{
    const QSizeF size = m_label->size();
    if (press.button() != Qt::LeftButton || size.isEmpty())
        return;
    pick(framePixelAt(press.position(), size));
}

void KeepRatioWidget::pick(QPoint place)
{
    m_picked = place;
    Q_EMIT click_coor(place.x(), place.y());
}

void KeepRatioWidget::keyPressEvent(QKeyEvent *event)
{
    static const QHash<int, QPoint> directions{
        {Qt::Key_Left, {-1, 0}}, {Qt::Key_Right, {1, 0}}, {Qt::Key_Up, {0, -1}}, {Qt::Key_Down, {0, 1}}};
    const auto direction = directions.constFind(event->key());
    if (direction == directions.constEnd())
        return QFrame::keyPressEvent(event);
    const QPoint place = m_picked + *direction * (event->modifiers() & Qt::ShiftModifier ? largeStep : 1);
    pick({std::clamp(place.x(), 0, FrameFormat::side - 1), std::clamp(place.y(), 0, FrameFormat::side - 1)});
}

void KeepRatioWidget::resizeEvent(QResizeEvent *event)
{
    const QSize frame = event->size();
    const int fullHeightWidth = frame.height() * m_ratioWidth / m_ratioHeight;
    if (frame.width() >= fullHeightWidth) {
        m_content->move((frame.width() - fullHeightWidth) / 2, 0);
        m_content->resize(fullHeightWidth, frame.height());
    } else {
        const int fullWidthHeight = frame.width() * m_ratioHeight / m_ratioWidth;
        m_content->move(0, (frame.height() - fullWidthHeight) / 2);
        m_content->resize(frame.width(), fullWidthHeight);
    }
}
