// The battery gauge in the title bar.

#include "ui/mainwindow.h"

#include "device/conversations.h"
#include "ui/mainwindow/mainwindow_rules.h"
#include "ui/mainwindow/readinesswait.h"
#include "ui/mainwindow/stylesheets.h"
#include "ui/parameters/waitcursor.h"
#include "ui_mainwindow.h"

#include <QSpacerItem>

namespace {

constexpr int lowLevel = 20; ///< percent

} // namespace

void mainwindow::check_lower_computer_status()
{
    if (m_readinessWait)
        return; // the timer's turn comes again
    const std::optional<int> level = [this] {
        const WaitCursor cursor;
        return Conversation::batteryLevel(*m_link);
    }();
    if (!level)
        return;
    m_batteryLevel = level;
    showBattery();
    const QSize gauge = ui->widget_battery->size();
    ui->batterySpacer->changeSize(MainWindowRules::batteryGap(gauge.width(), *level), gauge.height(),
                                  QSizePolicy::Fixed, QSizePolicy::Fixed);
    ui->widget_battery->layout()->invalidate();
    ui->battery_color->setStyleSheet(*level >= lowLevel ? StyleSheets::batteryFull : StyleSheets::batteryLow);
}

void mainwindow::showBattery()
{
    QString text = tr("Battery charge: no detector is connected");
    if (m_batteryLevel)
        text = tr("Battery charge: %1 %").arg(*m_batteryLevel);
    else if (isConnected())
        text = tr("Battery charge: the detector has not told it");
    ui->widget_battery->setToolTip(text);
    ui->widget_battery->setAccessibleDescription(text);
}
