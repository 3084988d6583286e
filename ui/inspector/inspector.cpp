#include "ui/inspector/inspector.h"

#include "device/protocol/frameformat.h"
#include "ui/chrome/wheelguard.h"
#include "ui_inspector.h"

#include <algorithm>
#include <utility>

namespace {

QString nanoamperes(double current)
{
    return QStringLiteral("%1 nA").arg(current, 0, 'f', 4);
}

QString shareOf(std::size_t part, std::size_t all)
{
    return QStringLiteral("%1 (%2 %)")
        .arg(part)
        .arg(100.0 * static_cast<double>(part) / static_cast<double>(all), 0, 'f', 2);
}

/// "(3, 40) (512, 7) …" when there are more than are listed.
QString textOf(const std::vector<FrameStatistics::Outliers::Place> &places, std::size_t all)
{
    QStringList texts;
    for (const auto &[row, column] : places)
        texts << QStringLiteral("(%1,\u00a0%2)").arg(row).arg(column);
    if (all > places.size())
        texts << QStringLiteral("…");
    return texts.join(u' ');
}

/// The pixels from the lower of two fields to the higher.
struct Stretch
{
    Stretch(const QSpinBox &one, const QSpinBox &other)
        : first(std::min(one.value(), other.value())), count(std::abs(one.value() - other.value()) + 1)
    {
    }

    int first;
    int count;
};

Plot::Content profile(const std::vector<double> &currents, int first, int picked)
{
    const auto last = static_cast<double>(first) + static_cast<double>(currents.size()) - 1;
    // A single pixel has room around it.
    const double beside = currents.size() == 1 ? 0.5 : 0;
    return {.across = {first - beside, last + beside}, .values = currents, .mark = picked};
}

} // namespace

Inspector::Inspector(InspectionRunner::Source source, InspectionRunner::Clock clock,
                     std::function<FrameCounts()> counts, QWidget *parent)
    : QDialog(parent), ui(std::make_unique<Ui::Inspector>()), m_counts(std::move(counts)),
      m_runner(std::move(source), std::move(clock))
{
    ui->setupUi(this);
    new WheelGuard(*this);
    ui->plot_histogram->setContent({.form = Plot::Form::Columns});
    ui->label_note->setText(tr("No frame yet"));
    for (const QSpinBox *box :
         {ui->spinBox_first_rows, ui->spinBox_last_rows, ui->spinBox_first_columns, ui->spinBox_last_columns})
        connect(box, &QSpinBox::valueChanged, this, &Inspector::ask);
    connect(ui->pushButton_whole, &QPushButton::clicked, this, [this] {
        chooseRegion({0, 0, FrameFormat::side, FrameFormat::side});
    });
    connect(&m_runner, &InspectionRunner::inspected, this, &Inspector::showFigures);
    connect(&m_runner, &InspectionRunner::failed, this,
            [this] { ui->label_note->setText(tr("The memory does not suffice for these figures")); });
    ask();
    showCounts();
}

Inspector::~Inspector() = default;

void Inspector::pick(int row, int column)
{
    m_inquiry.row = std::clamp(row, 0, FrameFormat::side - 1);
    m_inquiry.column = std::clamp(column, 0, FrameFormat::side - 1);
    m_runner.ask(m_inquiry);
}

void Inspector::ask()
{
    const Stretch rows(*ui->spinBox_first_rows, *ui->spinBox_last_rows);
    const Stretch columns(*ui->spinBox_first_columns, *ui->spinBox_last_columns);
    m_inquiry.region = {rows.first, columns.first, rows.count, columns.count};
    m_runner.ask(m_inquiry);
}

void Inspector::chooseRegion(const QRect &region)
{
    const std::pair<QSpinBox *, int> values[] = {{ui->spinBox_first_rows, region.top()},
                                                 {ui->spinBox_last_rows, region.bottom()},
                                                 {ui->spinBox_first_columns, region.left()},
                                                 {ui->spinBox_last_columns, region.right()}};
    for (const auto &[box, value] : values) {
        const QSignalBlocker together(box);
        box->setValue(value);
    }
    ask();
}

void Inspector::showFigures(const Inspection &inspection)
{
    ui->label_note->clear();
    showCurrents(inspection);
    showNoise(inspection);
    showOutliers(inspection.outliers);
    showPlots(inspection);
    showCounts();
}

void Inspector::showCurrents(const Inspection &inspection)
{
    const FrameStatistics::Summary &summary = inspection.summary;
    ui->value_pixel->setText(QStringLiteral("(%1,\u00a0%2) %3")
                                 .arg(inspection.inquiry.row)
                                 .arg(inspection.inquiry.column)
                                 .arg(nanoamperes(inspection.current)));
    ui->value_minimum->setText(nanoamperes(summary.minimum));
    ui->value_mean->setText(nanoamperes(summary.mean));
    ui->value_maximum->setText(nanoamperes(summary.maximum));
    ui->value_deviation->setText(nanoamperes(summary.deviation));
    ui->value_clipped_below->setText(shareOf(summary.clippedBelow, summary.count));
    ui->value_clipped_above->setText(shareOf(summary.clippedAbove, summary.count));
}

void Inspector::showNoise(const Inspection &inspection)
{
    const auto text = [&](double FrameStatistics::Noise::*noise) {
        return inspection.noise ? nanoamperes((*inspection.noise).*noise) : QStringLiteral("–");
    };
    ui->value_temporal->setText(text(&FrameStatistics::Noise::temporal));
    ui->value_spatial->setText(text(&FrameStatistics::Noise::spatial));
}

void Inspector::showOutliers(const FrameStatistics::Outliers &outliers)
{
    ui->value_hot->setText(QString::number(outliers.hot));
    ui->value_hot_places->setText(textOf(outliers.firstHot, outliers.hot));
    ui->value_dead->setText(QString::number(outliers.dead));
    ui->value_dead_places->setText(textOf(outliers.firstDead, outliers.dead));
}

void Inspector::showPlots(const Inspection &inspection)
{
    const Inspection::Histogram &histogram = inspection.histogram;
    ui->group_histogram->setTitle(
        histogram.beyond == 0 ? tr("Currents") : tr("Currents (%1 pixels beyond)").arg(histogram.beyond));
    ui->plot_histogram->setContent(
        {.form = Plot::Form::Columns,
         .across = {histogram.ends.lowest, histogram.ends.highest},
         .values = {histogram.counts.begin(), histogram.counts.end()},
         .mark = inspection.current,
         .limits = PlotScale::Span{inspection.range.lowest, inspection.range.highest},
         .isClippedBelow = inspection.summary.clippedBelow > 0,
         .isClippedAbove = inspection.summary.clippedAbove > 0});
    const auto &[region, row, column] = inspection.inquiry;
    ui->group_row->setTitle(tr("Row %1").arg(row));
    ui->plot_row->setContent(profile(inspection.rowProfile, region.firstColumn, column));
    ui->group_column->setTitle(tr("Column %1").arg(column));
    ui->plot_column->setContent(profile(inspection.columnProfile, region.firstRow, row));
}

void Inspector::showCounts()
{
    const FrameCounts counts = m_counts();
    ui->value_received->setText(QString::number(counts.received));
    ui->value_waiting->setText(QString::number(counts.waiting));
    ui->value_recorded->setText(counts.wanted > 0 ? tr("%1 of %2").arg(counts.recorded).arg(counts.wanted)
                                                  : QStringLiteral("–"));
    ui->value_losses->setText(QString::number(counts.losses));
}
