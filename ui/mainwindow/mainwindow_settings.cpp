// The settings page: current range and voltages, and their download.

#include "ui/mainwindow.h"

#include "device/conversations.h"
#include "device/protocol/currentrange.h"
#include "device/protocol/parameterpackets.h"
#include "device/protocol/timing.h"
#include "ui/parameterkeys.h"
#include "ui/parameters/adclists.h"
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
    return ParameterPacket::setTiming(timing.toWire());
}

QByteArray mainwindow::adcPacket()
{
    return ParameterPacket::setAdc(
        AdcLists::selection({.operation = value(ParameterKeys::operation, 0).toInt(),
                             .dataFormat = value(ParameterKeys::dataFormat, 0).toInt(),
                             .testMode = value(ParameterKeys::testMode, 0).toInt(),
                             .pcRange = value(ParameterKeys::pcRange, 0).toInt()}));
}

QByteArray mainwindow::voltagePacket()
{
    QList<int> codes;
    for (int number = ParameterKeys::firstVoltage; number < ParameterKeys::firstTiming; ++number) {
        double volts = 0.0;
        switch (number) {
        case ParameterKeys::gateOnVoltage:
            volts = ui->doubleSpinBox_von->value();
            break;
        case ParameterKeys::gateOffVoltage:
            volts = ui->doubleSpinBox_voff->value();
            break;
        case ParameterKeys::cathodeVoltage:
            volts = ui->doubleSpinBox_vss->value();
            break;
        case ParameterKeys::commonVoltage:
            volts = ui->doubleSpinBox_vcom->value();
            break;
        default:
            volts = value(ParameterKeys::field(number), 0.0).toDouble();
        }
        codes.append(ParameterPacket::voltageCode(volts));
    }
    return ParameterPacket::setVoltages(codes);
}
