// Connecting and disconnecting, and what is plugged in.

#include "ui/mainwindow.h"

#include "device/portmanager.h"
#include "ui/mainwindow/readinesswait.h"
#include "ui/parameters/waitcursor.h"
#include "ui_mainwindow.h"

#include <QDebug>
#include <QMessageBox>
#include <QScopeGuard>
#include <QTime>

namespace {

/// The detector's fixed device name.
const QString detectorName = QStringLiteral("QV1K");

/// `reason`: in words, where the driver library tells it. Ask for it before the device is closed.
QString lossNote(const QString &reason)
{
    const QString note = mainwindow::tr("The connection to the detector was lost at %1.")
                             .arg(QTime::currentTime().toString(QStringLiteral("HH:mm:ss")));
    return reason.isEmpty() ? note : note + u' ' + reason;
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
    // Somebody else's bridge is listed with a word behind its number.
    const QVariant listed = ui->comboBox_port->currentData();
    const QString serialNumber = listed.isValid() ? listed.toString() : ui->comboBox_port->currentText();
    if (serialNumber.isEmpty()) {
        QMessageBox::critical(this, tr("Error"), tr("Device not found"));
        return;
    }
    const bool isOpen = [&] {
        const WaitCursor cursor;
        return m_link->openDevice(serialNumber);
    }();
    if (!isOpen) {
        setSystemNote(SystemNote::Link, m_link->problem());
        QMessageBox::critical(this, tr("Error"), tr("Device connect failed"));
        return;
    }
    m_serialNumber = serialNumber;
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

void mainwindow::fillPortList(const QStringList &detectors, const QStringList &others)
{
    ui->comboBox_port->clear();
    ui->comboBox_port->addItems(detectors);
    for (const QString &serialNumber : others)
        ui->comboBox_port->addItem(tr("%1 (other bridge)").arg(serialNumber), serialNumber);
    if (detectors.isEmpty())
        ui->comboBox_port->setCurrentIndex(-1); // chosen by the operator or not at all
}

void mainwindow::showListedPorts()
{
    // Without a list the one before is worth more than none, from which nothing could be connected.
    if (m_link->isListed())
        fillPortList(m_link->detectors(), m_link->otherBridges());
}

void mainwindow::deviceArrived()
{
    m_link->listDevices();
    const QStringList others = m_link->otherBridges();
    const bool isDetector = others.isEmpty() || !m_link->detectors().isEmpty();
    fillPortList(isDetector ? QStringList(detectorName) : QStringList(), others);
}

void mainwindow::deviceRemoved()
{
    qDebug("device remove");
    // Its own bridge, or another one, or it is back by now under the same number: then its handle is dead
    // too.
    const bool isLost = isConnected() && m_link->checkLost();
    const QString reason = isLost ? m_link->problem() : QString();
    const bool isNoneLeft = m_link->listDevices().isEmpty() && m_link->isListed();
    showListedPorts();
    if (isNoneLeft || isLost)
        enterDisconnected();
    if (isLost)
        setSystemNote(SystemNote::Link, lossNote(reason));
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
    const QString reason = m_link->problem();
    m_link->listDevices();
    showListedPorts();
    enterDisconnected();
    setSystemNote(SystemNote::Link, lossNote(reason));
}
