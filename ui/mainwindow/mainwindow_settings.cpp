#include "ui/mainwindow.h"

#include "device/protocol/commandframes.h"
#include "device/protocol/currentrange.h"
#include "device/protocol/parameterpackets.h"
#include "ui/parameterkeys.h"
#include "ui/parameters/parameterexchange.h"
#include "ui_mainwindow.h"

#include <QMessageBox>

#include <array>

namespace {

// Voltages that this page sets; the others are kept for the developer window.
constexpr int gateOnField = 7;
constexpr int gateOffField = 8;
constexpr int cathodeField = 15;
constexpr int commonField = 16;

} // namespace

void mainwindow::on_pushButton_set_clicked()
{
    const CurrentRange::Gear *gear = chosenGear();
    if (gear == nullptr)
        return;
    setValue(ParameterKeys::pcRange, gear->pcRangeIndex);
    m_process->setCurrentRange(gear->nanoamperes);

    if (!download(storeTiming(gear->integrationTime), tr("set time sequence fail")))
        return;
    if (!download(adcPacket(), tr("set adc fail")))
        return;
    if (!download(voltagePacket(), tr("set voltage fail")))
        return;
    QMessageBox::information(this, tr("Info"), tr("set success"));
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
    if (AckFrame::acknowledgesParameters(ParameterExchange::command(packet)))
        return true;
    QMessageBox::critical(this, tr("Error"), failure);
    return false;
}

QByteArray mainwindow::storeTiming(int integrationTime)
{
    const QList<int> sequence = CurrentRange::timingSequence(integrationTime);
    int field = ParameterPacket::firstTimingField;
    for (const int value : sequence)
        setValue(ParameterKeys::field(field++), QString::number(value));
    return ParameterPacket::setTiming(CurrentRange::toWire(sequence));
}

QByteArray mainwindow::adcPacket()
{
    ParameterPacket::AdcSelection selection;
    selection.operation = value(ParameterKeys::operation, 0).toInt();
    selection.dataFormat = value(ParameterKeys::dataFormat, 0).toInt();
    selection.testMode = value(ParameterKeys::testMode, 0).toInt();
    selection.pcRange = value(ParameterKeys::pcRange, 0).toInt();
    return ParameterPacket::setAdc(selection);
}

QByteArray mainwindow::voltagePacket()
{
    QList<int> codes;
    for (int field = 1; field <= ParameterPacket::voltageCount; ++field) {
        double volts = 0.0;
        switch (field) {
        case gateOnField:
            volts = ui->doubleSpinBox_von->value();
            break;
        case gateOffField:
            volts = ui->doubleSpinBox_voff->value();
            break;
        case cathodeField:
            volts = ui->doubleSpinBox_vss->value();
            break;
        case commonField:
            volts = ui->doubleSpinBox_vcom->value();
            break;
        default:
            volts = value(ParameterKeys::field(field), 0.0).toDouble();
        }
        codes.append(ParameterPacket::voltageCode(volts));
    }
    return ParameterPacket::setVoltages(codes);
}
