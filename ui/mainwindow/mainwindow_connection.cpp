#include "ui/mainwindow.h"

#include "device/portmanager.h"
#include "device/protocol/commandframes.h"
#include "ui/mainwindow/mainwindow_rules.h"
#include "ui/mainwindow/stylesheets.h"
#include "ui_mainwindow.h"

#include <QDebug>
#include <QMessageBox>
#include <QSpacerItem>

namespace {

// The connect button's own text is the state.
const QString connectText = QStringLiteral("Connect");
const QString disconnectText = QStringLiteral("Disconnect");

/// The detector's fixed device name.
const QString detectorName = QStringLiteral("QV1K");

constexpr int statusIntervalMs = 120000;
constexpr int statusTimeoutMs = 500;
constexpr int lowLevel = 20;

} // namespace

bool mainwindow::isConnected() const
{
    return ui->pushButton_Connect->text() != connectText;
}

void mainwindow::on_pushButton_Connect_clicked()
{
    if (isConnected())
        disconnectDevice();
    else
        connectDevice();
}

void mainwindow::connectDevice()
{
    const QString serialNumber = ui->comboBox_port->currentText();
    if (serialNumber.isEmpty()) {
        QMessageBox::critical(this, tr("Error"), tr("Device not found"));
        return;
    }
    if (!PortManager::instance()->openDevice(serialNumber)) {
        QMessageBox::critical(this, tr("Error"), tr("Device connect failed"));
        return;
    }
    check_lower_computer_status();
    startStatusTimer();
    ui->pushButton_Connect->setText(disconnectText);
}

void mainwindow::disconnectDevice()
{
    if (m_isSampling == 1) {
        QMessageBox::critical(this, tr("Error"), tr("Device is running,Please stop sample first"));
        return;
    }
    m_statusTimer.stop();
    PortManager::instance()->closeDevice();
    ui->pushButton_Connect->setText(connectText);
}

void mainwindow::startStatusTimer()
{
    m_statusTimer.start(statusIntervalMs);
}

QByteArray mainwindow::exchange(const QByteArray &frame, int timeoutMs)
{
    PortManager *link = PortManager::instance();
    link->write(frame);
    return link->wait_for_read(timeoutMs, AckFrame::commandBytes);
}

void mainwindow::check_lower_computer_status()
{
    const QByteArray reply = exchange(CommandFrame::levelQuery(), statusTimeoutMs);
    if (reply.isEmpty())
        return;
    const int level = AckFrame::level(reply);
    const QSize gauge = ui->widget_battery->size();
    ui->batterySpacer->changeSize(MainWindowRules::batteryGap(gauge.width(), level), gauge.height(),
                                  QSizePolicy::Fixed, QSizePolicy::Fixed);
    ui->widget_battery->layout()->invalidate();
    ui->battery_color->setStyleSheet(level >= lowLevel ? StyleSheets::batteryFull : StyleSheets::batteryLow);
}

void mainwindow::fillPortList(const QList<QString> &serialNumbers)
{
    ui->comboBox_port->clear();
    ui->comboBox_port->addItems(serialNumbers);
}

void mainwindow::deviceArrived()
{
    PortManager::instance()->listDevices();
    fillPortList({detectorName});
}

void mainwindow::deviceRemoved()
{
    qDebug("device remove");
    const QList<QString> serialNumbers = PortManager::instance()->listDevices();
    fillPortList(serialNumbers);
    if (serialNumbers.isEmpty())
        returnToDisconnected();
}

void mainwindow::returnToDisconnected()
{
    m_statusTimer.stop();
    PortManager::instance()->closeDevice();
    ui->pushButton_Connect->setText(connectText);
    if (m_isSampling != 1)
        return;
    PortManager::instance()->pauseReceive();
    endRecording();
    leaveSampling(StyleSheets::playRemoved);
}
