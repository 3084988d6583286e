// Every way in which the window closes.

#include "ui/mainwindow.h"

#include "device/portmanager.h"
#include "ui/mainwindow/readinesswait.h"
#include "ui/parameters/waitcursor.h"

#include <QCloseEvent>
#include <QMessageBox>

void mainwindow::on_pushButton_close_clicked()
{
    if (confirmsExit())
        close();
}

bool mainwindow::confirmsExit()
{
    return QMessageBox::question(this, tr("Warning"), tr("Are you sure you want to exit？"),
                                 QMessageBox::Yes | QMessageBox::No, QMessageBox::No) == QMessageBox::Yes;
}

bool mainwindow::agreesToClose()
{
    const bool isRunning = m_isSampling == 1 || m_process->isSaving();
    return !isRunning || confirmsExit();
}

void mainwindow::closeEvent(QCloseEvent *event)
{
    if (m_readinessWait) {
        // The press on play goes on below this; it closes when it is through.
        m_closeAfterWait = true;
        m_readinessWait->end();
        event->ignore();
        return;
    }
    if (event->spontaneous() && !agreesToClose()) {
        event->ignore();
        return;
    }
    leave();
    closeInspector();
    QMainWindow::closeEvent(event);
}

void mainwindow::leave()
{
    if (m_isSampling != 1)
        return endRecording();
    const WaitCursor cursor;
    m_link->halt();
    enterIdle();
}
