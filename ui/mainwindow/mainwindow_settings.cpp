// The settings page: current range and voltages, and their download.

#include "ui/mainwindow.h"

#include "device/conversations.h"
#include "device/parameters/adclists.h"
#include "device/parameters/parameterdownload.h"
#include "device/parameters/parameterkeys.h"
#include "device/protocol/currentrange.h"
#include "device/protocol/timing.h"
#include "ui/parameters/waitcursor.h"
#include "ui_mainwindow.h"

#include <QMessageBox>

#include <array>

void mainwindow::on_pushButton_set_clicked()
{
    const CurrentRange::Gear *gear = chosenGear();
    if (gear == nullptr)
        return;
    setValue(ParameterKeys::pcRange, AdcLists::indexOf(AdcLists::pcRanges, gear->pcRange));
    m_process->setCurrentRange(gear->nanoamperes);
    runFlow([&] {
        if (download(storeTiming(gear->integrationTime), tr("set time sequence fail")) &&
            download(adcPacket(), tr("set adc fail")) && download(voltagePacket(), tr("set voltage fail")))
            QMessageBox::information(this, tr("Info"), tr("set success"));
    });
}

const CurrentRange::Gear *mainwindow::chosenGear() const
{
    const std::array buttons{ui->radioButton_150, ui->radioButton_50, ui->radioButton_10, ui->radioButton_1};
    static_assert(buttons.size() == CurrentRange::gears.size());
    for (std::size_t i = 0; i < buttons.size(); ++i) {
        if (buttons[i]->isChecked())
            return &CurrentRange::gears[i];
    }
    return nullptr;
}

bool mainwindow::download(const QByteArray &packet, const QString &failure)
{
    {
        const WaitCursor cursor;
        if (Conversation::download(*m_link, packet))
            return true;
    }
    QMessageBox::critical(this, tr("Error"), failure);
    return false;
}

QByteArray mainwindow::storeTiming(int integrationTime)
{
    const Timing timing = Timing::ofRange(integrationTime);
    int number = ParameterKeys::firstTiming;
    for (const Timing::Field field : Timing::fields)
        setValue(ParameterKeys::field(number++), QString::number(timing.*field));
    return ParameterDownload::timing(integrationTime);
}

QByteArray mainwindow::adcPacket()
{
    return ParameterDownload::adc(
        [this](const QString &key, const QVariant &otherwise) { return value(key, otherwise); });
}

QByteArray mainwindow::voltagePacket()
{
    return ParameterDownload::voltages(
        {.von = ui->doubleSpinBox_von->value(),
         .voff = ui->doubleSpinBox_voff->value(),
         .vss = ui->doubleSpinBox_vss->value(),
         .vcom = ui->doubleSpinBox_vcom->value()},
        [this](const QString &key, const QVariant &otherwise) { return value(key, otherwise); });
}
