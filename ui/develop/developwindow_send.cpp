// The buttons that send: parameter frames from the fields, and the one-shot EEPROM commands.

#include "ui/developwindow.h"

#include "device/conversations.h"
#include "device/parameters/adclists.h"
#include "device/parameters/parameterkeys.h"
#include "device/portmanager.h"
#include "device/protocol/commandframes.h"
#include "device/protocol/parameterpackets.h"
#include "ui/parameters/inputblock.h"
#include "ui/parameters/waitcursor.h"

#include "ui_developwindow.h"

#include <QDebug>

void developwindow::send(const QByteArray &frame)
{
    {
        const WaitCursor cursor;
        Conversation::command(*PortManager::instance(), frame);
    }
    InputBlock::discardQueuedInput(*this);
}

template <typename Value, typename Parse>
QList<Value> developwindow::gather(int first, int count, Parse parse) const
{
    QList<Value> values;
    for (int place = 0; place < count; ++place) {
        const int number = first + place;
        const QLineEdit *edit = field(number);
        if (edit == nullptr)
            continue;
        bool ok = false;
        const Value value = parse(place, edit->text(), &ok);
        if (ok)
            values.append(value);
        else
            qDebug("LineEdit %d contains invalid data.", number);
    }
    return values;
}

void developwindow::set_adc()
{
    send(ParameterPacket::setAdc(AdcLists::selection({.operation = ui->comboBox_ope->currentIndex(),
                                                      .dataFormat = ui->comboBox_data->currentIndex(),
                                                      .testMode = ui->comboBox_mode->currentIndex(),
                                                      .pcRange = ui->comboBox_pcrange->currentIndex()})));
}

void developwindow::set_mode()
{
    send(ParameterPacket::setMode(ui->radioButton_1k->isChecked()));
}

void developwindow::set_voltage()
{
    send(ParameterPacket::setVoltages(gather<int>(
        ParameterKeys::firstVoltage, ParameterPacket::voltageCount,
        [](int, const QString &text, bool *ok) { return ParameterPacket::voltageCode(text.toDouble(ok)); })));
}

void developwindow::set_time()
{
    send(ParameterPacket::setTiming(gather<qint32>(
        ParameterKeys::firstTiming, Timing::count, [](int place, const QString &text, bool *ok) {
            return Timing::toWire(Timing::fields.at(static_cast<std::size_t>(place)), text.toInt(ok));
        })));
}

void developwindow::send_eep()
{
    send(ParameterPacket::sendEeprom(
        gather<quint32>(ParameterKeys::firstEeprom, ParameterPacket::eepromCount,
                        [](int, const QString &text, bool *ok) { return text.toUInt(ok); })));
}

void developwindow::write_eep()
{
    send(CommandFrame::eepromWrite());
}

void developwindow::read_eep()
{
    send(CommandFrame::eepromRead());
}

void developwindow::init_eep()
{
    send(CommandFrame::eepromInit());
}
