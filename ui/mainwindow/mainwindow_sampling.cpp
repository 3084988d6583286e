// The play button: starting an acquisition and asking for its stop.

#include "ui/mainwindow.h"

#include "device/conversations.h"
#include "device/portmanager.h"
#include "ui/chrome/availability.h"
#include "ui/mainwindow/readinesswait.h"
#include "ui/parameters/waitcursor.h"
#include "ui_mainwindow.h"

#include <QCoreApplication>
#include <QMessageBox>
#include <QScopeGuard>

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

void mainwindow::on_pushButton_sample_clicked()
{
    // A second press must not get in while this one is at work.
    Availability::withhold(*ui->pushButton_sample, tr("The last press is still being carried out"));
    if (!isConnected()) {
        QMessageBox::information(this, tr("Error"), tr("No Devices Connected"));
        endSamplePress();
        return;
    }
    if (m_isSampling == 1) {
        enterStopping();
        Availability::withhold(*ui->pushButton_sample, tr("Waiting until the detector has stopped"));
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
        qScopeGuard([this] { Availability::grant(*ui->pushButton_sample); }); // whatever is thrown
    m_process->setContrastRatio(ui->doubleSpinBox_contrast->value());
    if (requestTestPattern() && waitUntilReady() && startDetector())
        enterSampling();
    endSamplePress();
}

bool mainwindow::waitUntilReady()
{
    m_readinessWait = std::make_unique<ReadinessWait>(*this);
    const auto done = qScopeGuard([this] { m_readinessWait.reset(); });
    std::optional<WaitCursor> cursor(std::in_place);
    return Conversation::waitUntilReady(*m_link, [&] {
        cursor.reset(); // the dialog that may come has a button to press
        const bool goesOn = !m_link->isLost() && m_readinessWait->rest();
        cursor.emplace();
        return goesOn;
    });
}

void mainwindow::endSamplePress()
{
    QCoreApplication::processEvents();
    Availability::grant(*ui->pushButton_sample);
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
    {
        const WaitCursor cursor;
        if (Conversation::selectTestPattern(*m_link, pattern))
            return true;
    }
    QMessageBox::critical(this, tr("Error"), tr("test failed"));
    return false;
}

bool mainwindow::startDetector()
{
    {
        const WaitCursor cursor;
        if (Conversation::start(*m_link))
            return true;
    }
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
        const WaitCursor cursor;
        Conversation::confirmHalt(*m_link);
        check_lower_computer_status();
    });
}
