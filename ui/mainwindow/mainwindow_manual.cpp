// The manual: the link of the About page, and F1 on every page.

#include "ui/mainwindow.h"

#include "ui/chrome/manual.h"
#include "ui_mainwindow.h"

#include <QShortcut>

void mainwindow::connectManual()
{
    m_manualFolders = Manual::folders();
    ui->label_about_manualproblem->hide();
    connect(ui->label_about_manual, &QLabel::linkActivated, this, &mainwindow::openManual);
    connect(new QShortcut(QKeySequence::HelpContents, this), &QShortcut::activated, this,
            &mainwindow::openManual);
}

void mainwindow::openManual()
{
    const QString problem = Manual::open(m_manualFolders);
    ui->label_about_manualproblem->setText(problem);
    ui->label_about_manualproblem->setVisible(!problem.isEmpty());
    if (problem.isEmpty())
        return;
    // Who pressed F1 elsewhere would see nothing otherwise.
    const int aboutPage = ui->stackedWidget->indexOf(ui->page_5);
    ui->listWidget->setCurrentRow(aboutPage);
}
