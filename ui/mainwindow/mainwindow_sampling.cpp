#include "ui/mainwindow.h"

#include "device/conversations.h"
#include "device/portmanager.h"
#include "ui/mainwindow/mainwindow_rules.h"
#include "ui/mainwindow/stylesheets.h"
#include "ui_mainwindow.h"

#include <QCoreApplication>
#include <QMessageBox>
#include <QThread>

#include <algorithm>
#include <array>

namespace {

constexpr unsigned long readinessIntervalMs = 1000;

const QString playIcon = QStringLiteral(":/image/image_resource/play.png");
const QString stopIcon = QStringLiteral(":/image/image_resource/stop.png");
const QString replayIcon = QStringLiteral(":/image/image_resource/replay.png");

} // namespace

void mainwindow::on_pushButton_sample_clicked()
{
    // A second press must not get in while this one is at work.
    ui->pushButton_sample->setEnabled(false);
    if (!isConnected()) {
        QMessageBox::information(this, tr("Error"), tr("No Devices Connected"));
        endSamplePress();
        return;
    }
    if (m_isSampling == 1) {
        requestStop();
        return;
    }
    m_process->setContrastRatio(ui->doubleSpinBox_contrast->value());
    if (requestTestPattern()) {
        waitUntilReady();
        if (startDetector())
            enterSampling();
    }
    endSamplePress();
}

void mainwindow::endSamplePress()
{
    QCoreApplication::processEvents();
    ui->pushButton_sample->setEnabled(true);
}

void mainwindow::requestStop()
{
    PortManager::instance()->requestStop();
    setPlayLook(replayIcon, StyleSheets::playStopping);
    // The button stays disabled until the receive thread has halted the detector.
    QCoreApplication::processEvents();
}

bool mainwindow::requestTestPattern()
{
    const std::array<QPushButton *, 5> patterns{ui->testImage1, ui->testImage2, ui->testImage3,
                                                ui->testImage4, ui->testImage5};
    const auto chosen =
        std::find_if(patterns.begin(), patterns.end(), [](auto *b) { return b->isChecked(); });
    if (chosen == patterns.end())
        return true;
    const int pattern = 1 + static_cast<int>(chosen - patterns.begin());
    if (Conversation::selectTestPattern(*PortManager::instance(), pattern))
        return true;
    QMessageBox::critical(this, tr("Error"), tr("test failed"));
    return false;
}

void mainwindow::waitUntilReady()
{
    while (!Conversation::isReady(*PortManager::instance()))
        QThread::msleep(readinessIntervalMs);
}

bool mainwindow::startDetector()
{
    if (Conversation::start(*PortManager::instance()))
        return true;
    QMessageBox::critical(this, tr("Error"), tr("Play failed"));
    return false;
}

void mainwindow::enterSampling()
{
    m_statusTimer.stop();
    setPlayLook(stopIcon, StyleSheets::playRunning);
    Conversation::beginReceiving(*PortManager::instance());
    m_isSampling = 1;
    ui->pushButton_set->setEnabled(false);
    ui->label_fps->setText(QStringLiteral("FPS: N/A"));
    ui->progressBar->setValue(0);
    ui->label_savestate->clear();
    m_frameCount = 0;
    m_elapsedMs = 0;
    m_fpsTimer.start();
}

void mainwindow::leaveSampling(const char *playStyle)
{
    m_isSampling = 0;
    ui->pushButton_set->setEnabled(true);
    setPlayLook(playIcon, playStyle);
    ui->pushButton_sample->setEnabled(true);
}

void mainwindow::handleStop()
{
    // The detector was pulled out while its stop was on the way: that ended the acquisition already.
    if (m_isSampling != 1)
        return;
    Conversation::confirmHalt(*PortManager::instance());
    check_lower_computer_status();
    startStatusTimer();
    endRecording();
    leaveSampling(StyleSheets::playIdle);
}

void mainwindow::endRecording()
{
    if (!m_process->isSaving())
        return;
    m_process->stopSaving();
    ui->label_savestate->setText(QStringLiteral("Save Stop"));
    showFailedFiles();
}

void mainwindow::setPlayLook(const QString &icon, const char *style)
{
    ui->pushButton_sample->setIcon(QIcon(icon));
    ui->pushButton_sample->setStyleSheet(QString::fromLatin1(style));
}

void mainwindow::receive_displayImage(QImage displayImage)
{
    ++m_frameCount;
    m_elapsedMs += m_fpsTimer.restart();
    ui->label_fps->setText(MainWindowRules::frameRateText(m_frameCount, m_elapsedMs));

    QImage picture = MainWindowRules::oriented(std::move(displayImage), m_rotation, m_mirrorH, m_mirrorV);
    ui->frame->setImage(picture);
    updateCurrentReadout();
}

void mainwindow::handleLabelClick(int x, int y)
{
    m_clickX = x;
    m_clickY = y;
    ui->label_coor->setText(QStringLiteral("Coordinate: (%1,%2)").arg(x).arg(y));
    updateCurrentReadout();
}

void mainwindow::updateCurrentReadout()
{
    ui->label_current->setText(
        QStringLiteral("Current: %1nA").arg(m_process->pixelValueText(m_clickX, m_clickY)));
}

void mainwindow::receive_errorOccurred(errormessage) {}
