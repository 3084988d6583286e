// The window's moves between disconnected, connected and idle, sampling, and stopping. The flows that lead to
// them call these; these call no flow.

#include "ui/mainwindow.h"

#include "device/conversations.h"
#include "device/portmanager.h"
#include "ui/chrome/availability.h"
#include "ui/developwindow.h"
#include "ui/mainwindow/readinesswait.h"
#include "ui/mainwindow/stylesheets.h"
#include "ui/parameters/waitcursor.h"
#include "ui_mainwindow.h"

namespace {

// The connect button's own text is the state; it is not translated.
const QString connectText = QStringLiteral("Connect");
const QString disconnectText = QStringLiteral("Disconnect");

const QString playIcon = QStringLiteral(":/image/image_resource/play.png");
const QString stopIcon = QStringLiteral(":/image/image_resource/stop.png");
const QString replayIcon = QStringLiteral(":/image/image_resource/replay.png");

constexpr int statusIntervalMs = 120000;

} // namespace

bool mainwindow::isConnected() const
{
    return ui->pushButton_Connect->text() != connectText;
}

void mainwindow::startStatusTimer()
{
    m_statusTimer.start(statusIntervalMs);
}

void mainwindow::enterConnected()
{
    startStatusTimer();
    ui->pushButton_Connect->setText(disconnectText);
    setSystemNote(SystemNote::Link, {});
    showBattery();
    showStateInDialog();
}

void mainwindow::enterDisconnected()
{
    m_statusTimer.stop();
    {
        const WaitCursor cursor;
        m_link->closeDevice();
    }
    ui->pushButton_Connect->setText(connectText);
    m_batteryLevel.reset();
    showBattery();
    showStateInDialog();
    if (m_readinessWait)
        m_readinessWait->end();
    if (m_isSampling != 1)
        return;
    m_link->pauseReceive();
    endRecording();
    leaveSampling(StyleSheets::playRemoved);
}

void mainwindow::enterSampling()
{
    m_statusTimer.stop();
    setPlayLook(stopIcon, StyleSheets::playRunning);
    Conversation::beginReceiving(*m_link);
    m_isSampling = 1;
    Availability::withhold(*ui->pushButton_set, tr("Stop the acquisition first"));
    // Opened before, the calibration waited for this.
    for (QPushButton *button : {ui->pushButton_full_on, ui->pushButton_full_off})
        Availability::grant(*button);
    ui->label_fps->setText(QStringLiteral("FPS: N/A"));
    ui->progressBar->setValue(0);
    ui->label_savestate->clear();
    m_frameCount = 0;
    m_lossCount = 0;
    m_elapsedMs = 0;
    m_fpsTimer.start();
    showStateInDialog();
}

void mainwindow::enterStopping()
{
    m_link->requestStop();
    setPlayLook(replayIcon, StyleSheets::playStopping);
}

void mainwindow::enterIdle()
{
    startStatusTimer();
    endRecording();
    leaveSampling(StyleSheets::playIdle);
}

void mainwindow::leaveSampling(const char *playStyle)
{
    m_isSampling = 0;
    Availability::grant(*ui->pushButton_set);
    setPlayLook(playIcon, playStyle);
    Availability::grant(*ui->pushButton_sample);
    showInterruption(false);
    showLosses(0);
    showStateInDialog();
}

void mainwindow::endRecording()
{
    if (!m_process->isSaving())
        return;
    m_process->stopSaving();
    ui->label_savestate->setText(QStringLiteral("Save Stop"));
    showRecordingResult();
}

void mainwindow::showStateInDialog()
{
    if (m_developDialog == nullptr)
        return;
    m_developDialog->setAcquiring(m_isSampling == 1);
    m_developDialog->setConnected(isConnected());
}

void mainwindow::setPlayLook(const QString &icon, const char *style)
{
    ui->pushButton_sample->setIcon(QIcon(icon));
    ui->pushButton_sample->setStyleSheet(QString::fromLatin1(style));
}
