// The buttons that send: parameter frames from the fields, and the one-shot EEPROM commands.

#include "ui/developwindow.h"

#include "device/protocol/commandframes.h"
#include "device/protocol/parameterpackets.h"
#include "ui/parameters/parameterexchange.h"

#include "ui_developwindow.h"

#include <QDebug>

template <typename Value, typename Parse>
QList<Value> developwindow::gather(int first, int count, Parse parse) const
{
    QList<Value> values;
    for (int number = first; number < first + count; ++number) {
        const QLineEdit *edit = field(number);
        if (edit == nullptr)
            continue;
        bool ok = false;
        const Value value = parse(number, edit->text(), &ok);
        if (ok)
            values.append(value);
        else
            qDebug("LineEdit %d contains invalid data.", number);
    }
    return values;
}

void developwindow::set_adc()
{
    ParameterExchange::command(ParameterPacket::setAdc({.operation = ui->comboBox_ope->currentIndex(),
                                                        .dataFormat = ui->comboBox_data->currentIndex(),
                                                        .testMode = ui->comboBox_mode->currentIndex(),
                                                        .pcRange = ui->comboBox_pcrange->currentIndex()}));
}

void developwindow::set_mode()
{
    ParameterExchange::command(ParameterPacket::setMode(ui->radioButton_1k->isChecked()));
}

void developwindow::set_voltage()
{
    ParameterExchange::command(ParameterPacket::setVoltages(gather<int>(
        ParameterPacket::firstVoltageField, ParameterPacket::voltageCount,
        [](int, const QString &text, bool *ok) { return ParameterPacket::voltageCode(text.toDouble(ok)); })));
}

void developwindow::set_time()
{
    ParameterExchange::command(ParameterPacket::setTiming(
        gather<int>(ParameterPacket::firstTimingField, ParameterPacket::timingCount,
                    [](int number, const QString &text, bool *ok) {
                        return ParameterPacket::timingToWire(number, text.toInt(ok));
                    })));
}

void developwindow::send_eep()
{
    ParameterExchange::command(ParameterPacket::sendEeprom(
        gather<quint32>(ParameterPacket::firstEepromField, ParameterPacket::eepromCount,
                        [](int, const QString &text, bool *ok) { return text.toUInt(ok); })));
}

void developwindow::write_eep()
{
    ParameterExchange::command(CommandFrame::eepromWrite());
}

void developwindow::read_eep()
{
    ParameterExchange::command(CommandFrame::eepromRead());
}

void developwindow::init_eep()
{
    ParameterExchange::command(CommandFrame::eepromInit());
}
