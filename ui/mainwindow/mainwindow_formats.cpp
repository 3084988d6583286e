// The forms of a recording that the picture's context menu offers beside those of the save page, and what is
// told beside the files.

#include "ui/mainwindow.h"

#include "device/protocol/currentrange.h"
#include "ui/parameterkeys.h"
#include "ui_mainwindow.h"

#include <QAction>

#include <optional>

void mainwindow::buildFormatMenu()
{
    const auto add = [this](const QString &text, const char *name) {
        auto *action = new QAction(text, ui->frame);
        action->setObjectName(QLatin1String(name));
        action->setCheckable(true);
        connect(action, &QAction::toggled, this, &mainwindow::showRecordingHint);
        ui->frame->addAction(action);
        return action;
    };
    auto *separator = new QAction(ui->frame); // below what opens the inspector
    separator->setSeparator(true);
    ui->frame->addAction(separator);
    m_recordTiff = add(tr("Record a TIFF file (nA, 32 bits)"), "action_recordTiff");
    m_recordNpy = add(tr("Record a NumPy array (nA, 32 bits)"), "action_recordNpy");
    m_recordRaw = add(tr("Record raw frames"), "action_recordRaw");
}

RecordingForms mainwindow::chosenForms() const
{
    return {.data = ui->checkBox_data->isChecked(),
            .picture = ui->checkBox_picture->isChecked(),
            .video = ui->checkBox_video->isChecked(),
            .tiff = m_recordTiff->isChecked(),
            .npy = m_recordNpy->isChecked(),
            .raw = m_recordRaw->isChecked()};
}

RecordingFacts mainwindow::recordingFacts()
{
    RecordingFacts facts;
    facts.serial = isConnected() ? m_serialNumber : QString();
    facts.library = m_library.path;
    facts.isSimulated = m_library.isVirtual;
    if (const CurrentRange::Gear *gear = chosenGear())
        facts.currentRange = gear->nanoamperes;
    facts.voltages = {.vss = ui->doubleSpinBox_vss->value(),
                      .vcom = ui->doubleSpinBox_vcom->value(),
                      .von = ui->doubleSpinBox_von->value(),
                      .voff = ui->doubleSpinBox_voff->value()};
    facts.timing = keptTiming();
    return facts;
}

std::optional<Timing> mainwindow::keptTiming()
{
    Timing timing;
    int number = ParameterKeys::firstTiming;
    for (const Timing::Field field : Timing::fields) {
        bool isNumber = false;
        timing.*field = value(ParameterKeys::field(number++), QString()).toString().toInt(&isNumber);
        if (!isNumber)
            return std::nullopt;
    }
    return timing;
}
