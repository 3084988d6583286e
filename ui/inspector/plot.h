#pragma once

#include "ui/inspector/plotscale.h"

#include <QWidget>

#include <optional>
#include <vector>

/// A diagram with axes: a curve, or columns on a logarithmic scale of counts. GUI thread only.
class Plot : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(QString across MEMBER m_across)
    Q_PROPERTY(QString upwards MEMBER m_upwards)

public:
    enum class Form {
        Curve,   ///< a line through the values
        Columns, ///< from nothing up, on a logarithmic scale
    };

    /// What is shown.
    struct Content
    {
        Form form = Form::Curve;
        /// A curve's first value is at the begin and its last at the end; columns share it out.
        PlotScale::Span across{};
        std::vector<double> values{};            ///< finite; those of columns are counts
        std::optional<double> mark{};            ///< a place across that is pointed out
        std::optional<PlotScale::Span> limits{}; ///< drawn as lines where they are seen
        bool isClippedBelow = false; ///< the column at the lower limit is drawn so, and all before
        bool isClippedAbove = false; ///< the column at the upper limit, and all behind
    };

    explicit Plot(QWidget *parent = nullptr) : QWidget(parent) {}

    void setContent(Content content);
    [[nodiscard]] const Content &content() const { return m_content; }

    [[nodiscard]] QSize minimumSizeHint() const override { return {320, 130}; }
    [[nodiscard]] QSize sizeHint() const override { return {560, 190}; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    class Painting;

    QString m_across;  ///< what goes to the right, with its unit
    QString m_upwards; ///< what goes up
    Content m_content;
};
