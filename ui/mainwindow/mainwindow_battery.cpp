// The battery gauge in the title bar.

#include "ui/mainwindow.h"

#include "device/conversations.h"
#include "ui/mainwindow/mainwindow_rules.h"
#include "ui/mainwindow/readinesswait.h"
#include "ui/mainwindow/stylesheets.h"
#include "ui_mainwindow.h"

#include <QSpacerItem>

namespace {

constexpr int lowLevel = 20; ///< percent

} // namespace

void mainwindow::check_lower_computer_status()
{
    if (m_readinessWait)
        return; // the timer's turn comes again
    const std::optional<int> level = Conversation::batteryLevel(*m_link);
    if (!level)
        return;
    const QSize gauge = ui->widget_battery->size();
    ui->batterySpacer->changeSize(MainWindowRules::batteryGap(gauge.width(), *level), gauge.height(),
                                  QSizePolicy::Fixed, QSizePolicy::Fixed);
    ui->widget_battery->layout()->invalidate();
    ui->battery_color->setStyleSheet(*level >= lowLevel ? StyleSheets::batteryFull : StyleSheets::batteryLow);
}
