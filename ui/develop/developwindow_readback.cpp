// The buttons that ask the device for its state and show it in the fields.

#include "ui/developwindow.h"

#include "device/conversations.h"
#include "device/parameters/adclists.h"
#include "device/parameters/parameterkeys.h"
#include "device/portmanager.h"
#include "device/protocol/parameterpackets.h"
#include "device/protocol/readback.h"
#include "device/protocol/timing.h"
#include "ui/parameters/inputblock.h"
#include "ui/parameters/waitcursor.h"

#include "ui_developwindow.h"

#include <QDebug>

namespace {

constexpr int voltageDecimals = 3;

void trace(const char *name, int value)
{
    qDebug().noquote().nospace() << name << value;
}

void traceField(const char *group, int number, const char *width, int value)
{
    qDebug().noquote().nospace() << group << number << width << value;
}

void traceReply(const QByteArray &reply)
{
    qDebug().noquote().nospace() << "接收到的数据:" << reply;
}

} // namespace

QByteArray developwindow::ask(QByteArray (*question)(PortManager &link))
{
    QByteArray reply;
    {
        const WaitCursor cursor;
        reply = question(*PortManager::instance());
    }
    InputBlock::discardQueuedInput(*this);
    return reply;
}

void developwindow::ver_readback()
{
    const QByteArray reply = ask(&Conversation::readVersion);
    traceReply(reply);
    if (const auto version = Readback::version(reply))
        ui->label_version->setText(*version);
    else
        qDebug().nospace() << "接收到的数据长度不符合预期，实际长度为:" << reply.size();
}

void developwindow::parm_readback()
{
    const QByteArray reply = ask(&Conversation::readParameters);
    const auto parameters = Readback::parameters(reply);
    if (!parameters) {
        qWarning().nospace() << "接收到的数据长度不足 256 字节，实际长度为:" << reply.size();
        return;
    }
    showModeAndAdc(*parameters);
    showVoltages(parameters->voltageCodes);
    showTiming(parameters->timingWords);
}

void developwindow::showModeAndAdc(const Readback::Parameters &parameters)
{
    trace("第一个参数 (1 字节):", parameters.mode);
    (parameters.mode == 0 ? ui->radioButton_1k : ui->radioButton_256)->setChecked(true);

    trace("第二个参数 (2 字节):", parameters.adcWord);
    qDebug().noquote().nospace() << "bin = " << QString::number(parameters.adcWord, 2);
    const AdcLists::Indexes indexes = AdcLists::indexes(parameters.adc);
    const auto select = [](QComboBox *list, int index) {
        list->setCurrentText(list->itemText(index));
    };
    select(ui->comboBox_ope, indexes.operation);
    select(ui->comboBox_data, indexes.dataFormat);
    select(ui->comboBox_mode, indexes.testMode);
    select(ui->comboBox_pcrange, indexes.pcRange);
}

void developwindow::showVoltages(const QList<int> &codes)
{
    int number = ParameterKeys::firstVoltage;
    for (const int code : codes) {
        traceField("电压参数", number, "(2 字节):", code);
        setFieldText(number, QString::number(ParameterPacket::voltageValue(code), 'f', voltageDecimals));
        ++number;
    }
}

void developwindow::showTiming(const QList<qint32> &words)
{
    int number = ParameterKeys::firstTiming;
    auto field = Timing::fields.begin();
    for (const qint32 word : words) {
        traceField("时序参数", number, "(4 字节):", word);
        setFieldText(number, QString::number(Timing::fromWire(*field, word)));
        ++number;
        ++field;
    }
}

void developwindow::eep_readback()
{
    const QByteArray reply = ask(&Conversation::readEeprom);
    traceReply(reply);
    const auto words = Readback::eeprom(reply);
    if (!words) {
        qWarning().nospace() << "接收到的数据长度不足 129 字节，实际长度为:" << reply.size();
        return;
    }
    int number = ParameterKeys::firstEeprom;
    for (const int word : *words)
        setFieldText(number++, QString::number(word));
}
