#include "ui/mainwindow/compactlayouts.h"

#include "ui_mainwindow.h"

#include <algorithm>
#include <array>

namespace {

/// Of the window, for the page that needs most, the display page of an engineer who calibrates, with the
/// spaces as they were designed.
constexpr int heightForPages = 446;
/// What stays empty at the sides of a narrow window, and above and below in a low one.
constexpr int narrowMargin = 8;
constexpr int lowMargin = 4;
/// The labels of the read-out as a column.
constexpr int columnHeight = 24;
constexpr int columnSpacing = 4;

int rowSpacing(const QLayout *layout)
{
    if (const auto *grid = qobject_cast<const QGridLayout *>(layout))
        return grid->verticalSpacing();
    if (const auto *form = qobject_cast<const QFormLayout *>(layout))
        return form->verticalSpacing();
    return layout->spacing();
}

void setRowSpacing(QLayout *layout, int spacing)
{
    if (auto *grid = qobject_cast<QGridLayout *>(layout))
        grid->setVerticalSpacing(spacing);
    else if (auto *form = qobject_cast<QFormLayout *>(layout))
        form->setVerticalSpacing(spacing);
    else
        layout->setSpacing(spacing);
}

} // namespace

CompactLayouts::CompactLayouts(const Ui::mainwindow &ui)
    : m_ui(ui), m_readoutSpacing(ui.horizontalLayout_readout->spacing()),
      m_readoutHeight(ui.label_fps->minimumHeight()),
      m_leastHeight(ui.centralwidget->window()->minimumHeight()),
      m_widthForRow(ui.widget_19->maximumWidth() + ui.stackedWidget->maximumWidth())
{
    for (QLayout *page : std::initializer_list<QLayout *>{
             ui.verticalLayout_system, ui.verticalLayout_settings, ui.verticalLayout_display,
             ui.verticalLayout_save, ui.verticalLayout_about})
        addSpace(page, 3);
    for (QLayout *rows :
         std::initializer_list<QLayout *>{ui.gridLayout_range, ui.gridLayout_voltage, ui.gridLayout_cali,
                                          ui.gridLayout_tests, ui.formLayout_save})
        addSpace(rows, 2);
    addSpace(ui.verticalLayout_left, 4);
    addSpace(ui.verticalLayout_view, 6);

    const std::array<QLabel *, 3> labels{ui.label_fps, ui.label_coor, ui.label_current};
    for (const QLabel *label : labels)
        m_widthForRow += label->minimumWidth();
    m_widthForRow += 2 * m_readoutSpacing;
    for (const QLayout *around : {ui.verticalLayout_view, ui.verticalLayout_window})
        m_widthForRow += around->contentsMargins().left() + around->contentsMargins().right();
}

void CompactLayouts::addSpace(QLayout *layout, int leastBetweenRows)
{
    m_spaces.push_back({layout, layout->contentsMargins(), rowSpacing(layout), leastBetweenRows});
}

void CompactLayouts::fit(QSize window)
{
    const bool isNarrow = window.width() < m_widthForRow;
    const int missingHeight = heightForPages - std::clamp(window.height(), m_leastHeight, heightForPages);
    if (isNarrow == m_isNarrow && missingHeight == m_missingHeight)
        return;
    m_isNarrow = isNarrow;
    m_missingHeight = missingHeight;
    arrangeReadout();
    applySpaces();
    // Now, or the window would be painted once as it was.
    m_ui.verticalLayout_window->activate();
    for (const Space &space : m_spaces)
        space.layout->activate();
}

void CompactLayouts::arrangeReadout()
{
    m_ui.horizontalLayout_readout->setDirection(m_isNarrow ? QBoxLayout::TopToBottom
                                                           : QBoxLayout::LeftToRight);
    m_ui.horizontalLayout_readout->setSpacing(m_isNarrow ? columnSpacing : m_readoutSpacing);
    for (QLabel *label : {m_ui.label_fps, m_ui.label_coor, m_ui.label_current})
        label->setMinimumHeight(m_isNarrow ? columnHeight : m_readoutHeight);
}

void CompactLayouts::applySpaces()
{
    // Rounded down: the sum is never more than the window has.
    const auto lowered = [this](int designed, int least) {
        const int dispensable = std::max(0, designed - least);
        const int range = heightForPages - m_leastHeight;
        return designed - (dispensable * m_missingHeight + range - 1) / range;
    };
    for (const Space &space : m_spaces) {
        QMargins margins = space.margins;
        margins.setTop(lowered(margins.top(), lowMargin));
        margins.setBottom(lowered(margins.bottom(), lowMargin));
        if (m_isNarrow) {
            margins.setLeft(std::min(margins.left(), narrowMargin));
            margins.setRight(std::min(margins.right(), narrowMargin));
        }
        space.layout->setContentsMargins(margins);
        setRowSpacing(space.layout, lowered(space.betweenRows, space.leastBetweenRows));
    }
}
