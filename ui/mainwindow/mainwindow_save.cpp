// The save page: asking for a recording, and how far it has come.

#include "ui/mainwindow.h"

#include "device/protocol/currentrange.h"
#include "ui/mainwindow/mainwindow_rules.h"
#include "ui_mainwindow.h"

#include <QDesktopServices>
#include <QDir>
#include <QFileDialog>
#include <QMessageBox>
#include <QUrl>

namespace {

const QString savePathKey = QStringLiteral("SavePath");

} // namespace

void mainwindow::on_pushButton_savepath_clicked()
{
    const QString before = value(savePathKey, QString()).toString();
    const QString chosen =
        QFileDialog::getExistingDirectory(this, tr("Select Directory"), before, QFileDialog::ShowDirsOnly);
    if (chosen.isEmpty()) {
        QMessageBox::information(this, tr("Error"), tr("Please select a valid path"));
        return;
    }
    m_process->setLogPath(chosen);
    showSavePath(chosen);
    setValue(savePathKey, chosen);
    showRecordingHint();
}

void mainwindow::showSavePath(const QString &path)
{
    const QString shown = QDir::toNativeSeparators(m_process->logPath());
    ui->lineEdit_savepath->setText(path);
    ui->lineEdit_savepath->setPlaceholderText(shown);
    ui->lineEdit_savepath->setToolTip(shown);
}

void mainwindow::on_pushButton_save_clicked()
{
    if (m_process->isSaving())
        return;
    m_process->setTimeStamp(ui->lineEdit_savename->text());

    const int frames = ui->comboBox_saveframes->currentText().toInt();
    ui->progressBar->setMaximum(frames);
    ui->progressBar->setValue(0);
    m_process->setSaveFrameTotal(frames);

    const RecordingForms forms = chosenForms();
    m_process->startSaving(forms, recordingFacts());
    ui->label_savestate->clear();
    if (forms.data)
        m_process->writeParameterFile(parameterSummary());
    if (m_process->isSaving())
        showRecordingResult();
    else
        showRecordingHint();
}

QString mainwindow::parameterSummary() const
{
    MainWindowRules::AcquisitionSettings settings;
    if (const CurrentRange::Gear *gear = chosenGear())
        settings.currentRange = QStringLiteral("%1nA").arg(gear->nanoamperes);
    settings.vss = ui->doubleSpinBox_vss->value();
    settings.vcom = ui->doubleSpinBox_vcom->value();
    settings.von = ui->doubleSpinBox_von->value();
    settings.voff = ui->doubleSpinBox_voff->value();
    settings.contrast = ui->doubleSpinBox_contrast->value();
    return MainWindowRules::parameterSummary(settings);
}

void mainwindow::handleSaveMessage(int index)
{
    ui->progressBar->setValue(index);
    ui->label_savestate->setText(QStringLiteral("Frame %1").arg(index));
    showRecordingResult();
    if (index != m_process->getSaveFrameTotal())
        return;
    ui->label_savestate->setText(QStringLiteral("Save Success"));
    // Whether the video is whole turns out when the pipeline closes it, right after this.
    QMetaObject::invokeMethod(this, &mainwindow::showRecordingResult, Qt::QueuedConnection);
}

void mainwindow::showRecordingResult()
{
    const RecordingResult &result = m_process->recordingResult();
    const int failed = result.failed;
    QString toolTip;
    if (failed > 0)
        toolTip =
            failed == 1 ? tr("1 file could not be written") : tr("%1 files could not be written").arg(failed);
    ui->label_savestate->setToolTip(toolTip);
    ui->label_savedetail->setText(MainWindowRules::recordingText(result));
    ui->pushButton_openfolder->setToolTip(QDir::toNativeSeparators(m_process->recordingFolder()));
    ui->pushButton_openfolder->show();
}

void mainwindow::openRecordingFolder()
{
    const QString folder = m_process->recordingFolder();
    if (!QDesktopServices::openUrl(QUrl::fromLocalFile(folder)))
        ui->label_savedetail->setText(tr("Nothing opens %1").arg(QDir::toNativeSeparators(folder)));
}

void mainwindow::showRecordingHint()
{
    if (m_process->isSaving())
        return;
    const bool exists = m_process->hasRecording(ui->lineEdit_savename->text());
    ui->label_savestate->setToolTip({});
    ui->label_savedetail->setText(MainWindowRules::recordingHint(chosenForms().any(), exists));
}

void mainwindow::connectSavePage()
{
    buildFormatMenu();
    for (const QCheckBox *box : {ui->checkBox_data, ui->checkBox_picture, ui->checkBox_video})
        connect(box, &QCheckBox::toggled, this, &mainwindow::showRecordingHint);
    for (const QLineEdit *edit : {ui->lineEdit_savename, ui->lineEdit_savepath})
        connect(edit, &QLineEdit::textChanged, this, &mainwindow::showRecordingHint);
    ui->pushButton_openfolder->hide(); // until there is one
    connect(ui->pushButton_openfolder, &QPushButton::clicked, this, &mainwindow::openRecordingFolder);
    showRecordingHint();
}
