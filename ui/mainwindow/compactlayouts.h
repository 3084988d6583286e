#pragma once

#include <QMargins>
#include <QSize>

#include <vector>

class QLayout;

namespace Ui {
class mainwindow;
}

/// Has the main window's layouts give way where the window is smaller than they would like it: the empty
/// space between the controls, and the row of the read-out, which becomes a column. No text changes, and
/// nothing is hidden. GUI thread.
class CompactLayouts
{
public:
    /// To be made while the form is as it was designed: that is what a window of enough size has.
    explicit CompactLayouts(const Ui::mainwindow &ui);

    /// To be called whenever the window's size has changed.
    void fit(QSize window);

private:
    /// What a layout leaves empty: as it was designed, and between its rows in the lowest window.
    struct Space
    {
        QLayout *layout;
        QMargins margins;
        int betweenRows;
        int leastBetweenRows;
    };

    void addSpace(QLayout *layout, int leastBetweenRows);
    void arrangeReadout();
    void applySpaces();

    const Ui::mainwindow &m_ui;
    std::vector<Space> m_spaces;
    int m_readoutSpacing; ///< of the read-out, as designed, and how high its labels are
    int m_readoutHeight;
    int m_leastHeight; ///< of the window
    int m_widthForRow; ///< of the window, from which on the read-out is a row
    bool m_isNarrow = false;
    int m_missingHeight = 0; ///< of the window, for the spaces as they were designed
};
