#include "ui/inspector/plot.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

const QColor ink(0x33, 0x33, 0x33);
const QColor frameColor(0xc8, 0xc8, 0xc8);
const QColor gridColor(0xec, 0xee, 0xf0);
const QColor curveColor(0x89, 0x68, 0x27);
const QColor markColor(0x41, 0x69, 0xe1);
const QColor clippedColor(0xe6, 0x00, 0x12);

constexpr int gap = 5; ///< between the frame and what stands beside it
constexpr int ticksAcross = 9;
constexpr int ticksUp = 5;
constexpr double tallestDecade = 7; ///< a frame has 10^6 pixels

/// A column of one is to be seen: it stands on a half.
constexpr double leastCount = 0.5;

double logOf(double count)
{
    return std::log10(std::max(count, leastCount));
}

} // namespace

/// One diagram being painted.
class Plot::Painting
{
public:
    Painting(Plot &plot, QPainter &painter)
        : m_plot(plot), m_content(plot.m_content), m_painter(painter), m_up(upwards())
    {
        const QFontMetrics metrics = painter.fontMetrics();
        const int label = metrics.horizontalAdvance(QStringLiteral("-000.000"));
        m_field = QRectF(plot.rect())
                      .adjusted(label + metrics.height() + gap, metrics.height() / 2.0,
                                -2.0 * gap - metrics.averageCharWidth(), -2.0 * metrics.height() - gap);
    }

    void all()
    {
        m_painter.fillRect(m_field, Qt::white);
        ticksBelow();
        ticksBeside();
        names();
        m_painter.save();
        m_painter.setClipRect(m_field);
        if (m_content.form == Form::Columns)
            columns();
        else
            curve();
        lines();
        m_painter.restore();
        m_painter.setPen(frameColor);
        m_painter.setBrush(Qt::NoBrush);
        m_painter.drawRect(m_field);
    }

private:
    [[nodiscard]] PlotScale::Span upwards() const
    {
        if (m_content.form == Form::Curve)
            return PlotScale::around(m_content.values);
        const double most = m_content.values.empty()
                                ? 1
                                : *std::max_element(m_content.values.begin(), m_content.values.end());
        return {logOf(0), std::clamp(std::ceil(logOf(most) + 0.1), 1.0, tallestDecade)};
    }

    [[nodiscard]] double x(double value) const
    {
        const PlotScale::Span &span = m_content.across;
        return m_field.left() + (value - span.begin) / (span.end - span.begin) * m_field.width();
    }
    [[nodiscard]] double y(double value) const
    {
        return m_field.bottom() - (value - m_up.begin) / (m_up.end - m_up.begin) * m_field.height();
    }

    void ticksBelow()
    {
        const std::vector<double> ticks = PlotScale::ticks(m_content.across, ticksAcross);
        const double distance = ticks.size() > 1 ? ticks[1] - ticks[0] : 1;
        const double height = m_painter.fontMetrics().height();
        for (const double tick : ticks) {
            const double place = x(tick);
            m_painter.setPen(gridColor);
            m_painter.drawLine(QPointF(place, m_field.top()), QPointF(place, m_field.bottom()));
            m_painter.setPen(ink);
            m_painter.drawLine(QPointF(place, m_field.bottom()), QPointF(place, m_field.bottom() + gap - 1));
            m_painter.drawText(QRectF(place - 60, m_field.bottom() + gap, 120, height), Qt::AlignHCenter,
                               PlotScale::text(tick, distance));
        }
    }

    void ticksBeside()
    {
        const bool isLogarithmic = m_content.form == Form::Columns;
        const std::vector<double> ticks = PlotScale::ticks(m_up, isLogarithmic ? 4 : ticksUp);
        const double distance = ticks.size() > 1 ? ticks[1] - ticks[0] : 1;
        for (const double tick : ticks) {
            if (isLogarithmic && tick != std::floor(tick))
                continue;
            const double place = y(tick);
            m_painter.setPen(gridColor);
            m_painter.drawLine(QPointF(m_field.left(), place), QPointF(m_field.right(), place));
            m_painter.setPen(ink);
            m_painter.drawLine(QPointF(m_field.left() - gap + 1, place), QPointF(m_field.left(), place));
            const QString text = isLogarithmic ? QString::number(std::llround(std::pow(10, tick)))
                                               : PlotScale::text(tick, distance);
            m_painter.drawText(QRectF(0, place - 20, m_field.left() - gap - 1, 40),
                               Qt::AlignRight | Qt::AlignVCenter, text);
        }
    }

    void names()
    {
        const double height = m_painter.fontMetrics().height();
        m_painter.setPen(ink);
        m_painter.drawText(QRectF(m_field.left(), m_plot.height() - height, m_field.width(), height),
                           Qt::AlignHCenter, m_plot.m_across);
        m_painter.save();
        m_painter.translate(0, m_field.bottom());
        m_painter.rotate(-90);
        m_painter.drawText(QRectF(0, 0, m_field.height(), height), Qt::AlignHCenter, m_plot.m_upwards);
        m_painter.restore();
    }

    [[nodiscard]] bool isClipped(double begin, double end) const
    {
        return m_content.limits && ((m_content.isClippedBelow && begin <= m_content.limits->begin) ||
                                    (m_content.isClippedAbove && end >= m_content.limits->end));
    }

    void columns()
    {
        m_painter.setPen(Qt::NoPen);
        const PlotScale::Span &span = m_content.across;
        const double width = (span.end - span.begin) / static_cast<double>(m_content.values.size());
        for (std::size_t i = 0; i < m_content.values.size(); ++i) {
            if (m_content.values[i] <= 0)
                continue;
            const double begin = span.begin + static_cast<double>(i) * width;
            const double left = x(begin);
            const double right = std::max(x(begin + width), left + 1);
            m_painter.setBrush(isClipped(begin, begin + width) ? clippedColor : curveColor);
            m_painter.drawRect(
                QRectF(QPointF(left, y(logOf(m_content.values[i]))), QPointF(right, m_field.bottom())));
        }
    }

    void curve()
    {
        QPolygonF line;
        const PlotScale::Span &span = m_content.across;
        const auto last = static_cast<double>(m_content.values.size()) - 1;
        for (std::size_t i = 0; i < m_content.values.size(); ++i) {
            const double share = last > 0 ? static_cast<double>(i) / last : 0.5;
            line << QPointF(x(span.begin + share * (span.end - span.begin)), y(m_content.values[i]));
        }
        m_painter.setRenderHint(QPainter::Antialiasing);
        m_painter.setPen(QPen(curveColor, 1.2));
        if (line.size() == 1)
            m_painter.drawEllipse(line.front(), 2, 2);
        m_painter.drawPolyline(line);
        m_painter.setRenderHint(QPainter::Antialiasing, false);
    }

    void line(double place, const QColor &color)
    {
        if (place < m_content.across.begin || place > m_content.across.end)
            return;
        m_painter.setPen(QPen(color, 1, Qt::DashLine));
        m_painter.drawLine(QPointF(x(place), m_field.top()), QPointF(x(place), m_field.bottom()));
    }

    void lines()
    {
        if (m_content.limits) {
            line(m_content.limits->begin, clippedColor);
            line(m_content.limits->end, clippedColor);
        }
        if (m_content.mark)
            line(*m_content.mark, markColor);
    }

    Plot &m_plot;
    const Content &m_content;
    QPainter &m_painter;
    PlotScale::Span m_up;
    QRectF m_field; ///< within the axes
};

void Plot::setContent(Content content)
{
    m_content = std::move(content);
    update();
}

void Plot::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    Painting(*this, painter).all();
}
