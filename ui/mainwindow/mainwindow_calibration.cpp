// The two-point calibration: its buttons, and how far a capture has come.

#include "ui/mainwindow.h"

#include "ui/chrome/availability.h"
#include "ui_mainwindow.h"

#include <QMessageBox>

#include <algorithm>

void mainwindow::on_pushButton_cali_clicked()
{
    if (m_process->fullOnFlag || m_process->fullOffFlag)
        return;
    const bool enabled = !m_process->caliEnabled;
    m_process->caliEnabled = enabled;
    ui->pushButton_cali->setText(enabled ? QStringLiteral("Close Calibration")
                                         : QStringLiteral("Open Calibration"));
    for (QPushButton *button : {ui->pushButton_full_on, ui->pushButton_full_off}) {
        button->setVisible(enabled);
        if (enabled && m_isSampling == 1)
            Availability::grant(*button);
        else if (enabled)
            Availability::withhold(*button, tr("Start the acquisition first"));
    }
    if (!enabled) {
        ui->progressBar_cali->setValue(0);
        ui->label_calistate->clear();
    }
}

void mainwindow::on_pushButton_full_on_clicked()
{
    switchCapture(ui->pushButton_full_on, m_process->fullOnFlag, m_process->fullOffFlag,
                  m_process->fullOnData, 255.0);
}

void mainwindow::on_pushButton_full_off_clicked()
{
    switchCapture(ui->pushButton_full_off, m_process->fullOffFlag, m_process->fullOnFlag,
                  m_process->fullOffData, 0.0);
}

void mainwindow::switchCapture(QPushButton *button, bool &flag, bool other, std::vector<double> &reference,
                               double fill)
{
    if (m_isSampling != 1) {
        QMessageBox::information(this, tr("Error"), tr("Please start sample first"));
        button->setChecked(false);
        return;
    }
    if (other) {
        flag = false;
        button->setChecked(false);
        return;
    }
    flag = button->isChecked();
    if (!flag)
        return;
    std::fill(reference.begin(), reference.end(), fill);
    ui->progressBar_cali->setMaximum(m_process->getCaliFrameCount());
    ui->progressBar_cali->setValue(0);
    ui->label_calistate->clear();
}

void mainwindow::handleCaliMessage(int index)
{
    ui->progressBar_cali->setValue(index);
    ui->label_calistate->setText(QStringLiteral("Frame %1").arg(index));
    if (index != m_process->getCaliFrameCount())
        return;
    if (m_process->fullOnFlag)
        ui->label_calistate->setText(QStringLiteral("Full On Success"));
    if (m_process->fullOffFlag)
        ui->label_calistate->setText(QStringLiteral("Full Off Success"));
}

void mainwindow::handleSetMaxSuccess()
{
    ui->pushButton_full_on->setChecked(false);
}

void mainwindow::handleSetMinSuccess()
{
    ui->pushButton_full_off->setChecked(false);
}
