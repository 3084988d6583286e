// The play button: starting an acquisition and asking for its stop.

#include "ui/mainwindow.h"

#include "device/conversations.h"
#include "device/portmanager.h"
#include "ui/mainwindow/readinesswait.h"
#include "ui_mainwindow.h"

#include <QCoreApplication>
#include <QMessageBox>
#include <QScopeGuard>

#include <algorithm>
#include <array>
#include <utility>

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
        enterStopping();
        // The button stays disabled until the receive thread has halted the detector.
        QCoreApplication::processEvents();
        return;
    }
    m_closeAfterWait = false;
    runFlow([this] { startAcquisition(); });
    // A close during the wait for readiness had to wait for this.
    if (std::exchange(m_closeAfterWait, false))
        close();
}

void mainwindow::startAcquisition()
{
    const auto usable =
        qScopeGuard([this] { ui->pushButton_sample->setEnabled(true); }); // whatever is thrown
    m_process->setContrastRatio(ui->doubleSpinBox_contrast->value());
    if (requestTestPattern() && waitUntilReady() && startDetector())
        enterSampling();
    endSamplePress();
}

bool mainwindow::waitUntilReady()
{
    m_readinessWait = std::make_unique<ReadinessWait>(*this);
    const auto done = qScopeGuard([this] { m_readinessWait.reset(); });
    return Conversation::waitUntilReady(*m_link,
                                        [this] { return !m_link->isLost() && m_readinessWait->rest(); });
}

void mainwindow::endSamplePress()
{
    QCoreApplication::processEvents();
    ui->pushButton_sample->setEnabled(true);
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
    if (Conversation::selectTestPattern(*m_link, pattern))
        return true;
    QMessageBox::critical(this, tr("Error"), tr("test failed"));
    return false;
}

bool mainwindow::startDetector()
{
    if (Conversation::start(*m_link))
        return true;
    QMessageBox::critical(this, tr("Error"), tr("Play failed"));
    return false;
}

void mainwindow::handleStop()
{
    // The detector was pulled out while its stop was on the way: that ended the acquisition already.
    if (!isConnected())
        return;
    runFlow([this] {
        const auto idle = qScopeGuard([this] { enterIdle(); }); // whatever is thrown
        Conversation::confirmHalt(*m_link);
        check_lower_computer_status();
    });
}
