// Connecting and disconnecting, and what is plugged in.

#include "ui/mainwindow.h"

#include "device/portmanager.h"
#include "ui_mainwindow.h"

#include <QDebug>
#include <QMessageBox>

namespace {

/// The detector's fixed device name.
const QString detectorName = QStringLiteral("QV1K");

} // namespace

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
    if (!m_link->openDevice(serialNumber)) {
        QMessageBox::critical(this, tr("Error"), tr("Device connect failed"));
        return;
    }
    check_lower_computer_status();
    enterConnected();
}

void mainwindow::disconnectDevice()
{
    if (m_isSampling == 1) {
        QMessageBox::critical(this, tr("Error"), tr("Device is running,Please stop sample first"));
        return;
    }
    enterDisconnected();
}

void mainwindow::fillPortList(const QList<QString> &serialNumbers)
{
    ui->comboBox_port->clear();
    ui->comboBox_port->addItems(serialNumbers);
}

void mainwindow::deviceArrived()
{
    m_link->listDevices();
    fillPortList({detectorName});
}

void mainwindow::deviceRemoved()
{
    qDebug("device remove");
    const QList<QString> serialNumbers = m_link->listDevices();
    fillPortList(serialNumbers);
    if (serialNumbers.isEmpty())
        enterDisconnected();
}
