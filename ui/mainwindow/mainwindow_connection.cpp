// Connecting and disconnecting, and what is plugged in.

#include "ui/mainwindow.h"

#include "device/portmanager.h"
#include "ui/mainwindow/readinesswait.h"
#include "ui_mainwindow.h"

#include <QDebug>
#include <QMessageBox>
#include <QScopeGuard>
#include <QTime>

namespace {

/// The detector's fixed device name.
const QString detectorName = QStringLiteral("QV1K");

QString lossNote()
{
    return mainwindow::tr("The connection to the detector was lost at %1.")
        .arg(QTime::currentTime().toString(QStringLiteral("HH:mm:ss")));
}

} // namespace

void mainwindow::on_pushButton_Connect_clicked()
{
    runFlow([this] {
        if (isConnected())
            disconnectDevice();
        else
            connectDevice();
    });
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
    // Its own bridge, or another one, or it is back by now under the same number: then its handle is dead
    // too.
    const bool isLost = isConnected() && m_link->checkLost();
    const QList<QString> serialNumbers = m_link->listDevices();
    fillPortList(serialNumbers);
    if (serialNumbers.isEmpty() || isLost)
        enterDisconnected();
    if (isLost)
        setSystemNote(SystemNote::Link, lossNote());
}

void mainwindow::runFlow(const std::function<void()> &flow)
{
    {
        ++m_flows;
        const auto done = qScopeGuard([this] { --m_flows; });
        flow();
    }
    giveUpLostDevice();
}

void mainwindow::giveUpLostDevice()
{
    if (!isConnected() || !m_link->isLost())
        return;
    if (m_readinessWait)
        m_readinessWait->end();
    if (m_flows > 0)
        return; // it comes here when it is through
    fillPortList(m_link->listDevices());
    enterDisconnected();
    setSystemNote(SystemNote::Link, lossNote());
}
