// The manual: the link of the About page, and F1 wherever it is pressed.

#include "ui/mainwindow.h"

#include "ui/chrome/helpkey.h"
#include "ui/chrome/manual.h"
#include "ui_mainwindow.h"

#include <QApplication>
#include <QToolTip>

void mainwindow::connectManual()
{
    m_manualFolders = Manual::folders();
    ui->label_about_manualproblem->hide();
    connect(ui->label_about_manual, &QLabel::linkActivated, this, &mainwindow::openManual);
    connect(new HelpKey(this), &HelpKey::pressed, this, &mainwindow::openManual);
}

void mainwindow::openManual()
{
    const QString problem = Manual::open(m_manualFolders);
    ui->label_about_manualproblem->setText(problem);
    ui->label_about_manualproblem->setVisible(!problem.isEmpty());
    if (problem.isEmpty())
        return;
    // Who pressed F1 elsewhere would see nothing otherwise, nor what a dialog covers.
    if (QWidget *dialog = QApplication::activeModalWidget())
        QToolTip::showText(dialog->mapToGlobal(QPoint()), problem, dialog);
    const int aboutPage = ui->stackedWidget->indexOf(ui->page_5);
    ui->listWidget->setCurrentRow(aboutPage);
}
