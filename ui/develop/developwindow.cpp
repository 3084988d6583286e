#include "ui/developwindow.h"

#include "device/protocol/parameterpackets.h"
#include "device/protocol/timing.h"
#include "ui/parameterkeys.h"

#include "ui_developwindow.h"

#include <QSettings>

#include <array>

namespace {

constexpr int lastField = ParameterPacket::firstEepromField + ParameterPacket::eepromCount - 1;

struct StoredList
{
    QString key;
    QComboBox *list;
};

std::array<StoredList, 4> listsOf(const Ui::developwindow &ui)
{
    return {{{ParameterKeys::operation, ui.comboBox_ope},
             {ParameterKeys::dataFormat, ui.comboBox_data},
             {ParameterKeys::testMode, ui.comboBox_mode},
             {ParameterKeys::pcRange, ui.comboBox_pcrange}}};
}

} // namespace

developwindow::developwindow(QSettings *store, QWidget *parent)
    : QDialog(parent), ui(std::make_unique<Ui::developwindow>()), m_store(store)
{
    ui->setupUi(this);
    fillLists();
    setFocus();
    load();
}

developwindow::~developwindow()
{
    save();
}

void developwindow::disableExchanges()
{
    for (QPushButton *button : findChildren<QPushButton *>()) {
        if (button == ui->pushButton_cal_time)
            continue;
        button->setEnabled(false);
        button->setToolTip(tr("Stop the acquisition first"));
    }
}

void developwindow::fillLists()
{
    ui->comboBox_ope->addItems(
        {QStringLiteral("A only"), QStringLiteral("A/B"), QStringLiteral("A+B"), QStringLiteral("(A+B)/2")});
    ui->comboBox_data->addItems({QStringLiteral("20 bit"), QStringLiteral("16 bit")});
    ui->comboBox_mode->addItems({QStringLiteral("off"), QStringLiteral("on")});
    ui->comboBox_pcrange->addItems({QStringLiteral("25"), QStringLiteral("19"), QStringLiteral("16"),
                                    QStringLiteral("13"), QStringLiteral("10"), QStringLiteral("7"),
                                    QStringLiteral("4")});
}

void developwindow::load()
{
    m_store->sync(); // or closing would write over a hand edit of the file that was never shown
    for (const auto &[key, list] : listsOf(*ui)) {
        if (m_store->contains(key))
            list->setCurrentIndex(m_store->value(key).toInt());
    }
    if (m_store->contains(ParameterKeys::mode)) {
        const bool is1k = m_store->value(ParameterKeys::mode).toBool();
        (is1k ? ui->radioButton_1k : ui->radioButton_256)->setChecked(true);
    }
    for (int number = ParameterPacket::firstVoltageField; number <= lastField; ++number) {
        if (m_store->contains(ParameterKeys::field(number)))
            setFieldText(number, m_store->value(ParameterKeys::field(number)).toString());
    }
}

void developwindow::save() const
{
    for (const auto &[key, list] : listsOf(*ui))
        m_store->setValue(key, list->currentIndex());
    m_store->setValue(ParameterKeys::mode, ui->radioButton_1k->isChecked());
    for (int number = ParameterPacket::firstVoltageField; number <= lastField; ++number)
        m_store->setValue(ParameterKeys::field(number), fieldText(number));
}

QLineEdit *developwindow::field(int number) const
{
    return findChild<QLineEdit *>(ParameterKeys::field(number));
}

QString developwindow::fieldText(int number) const
{
    const QLineEdit *edit = field(number);
    return edit == nullptr ? QString() : edit->text();
}

void developwindow::setFieldText(int number, const QString &text)
{
    if (QLineEdit *edit = field(number))
        edit->setText(text);
}

void developwindow::cal_time()
{
    const auto input = [](const QLineEdit *edit) {
        return edit->text().toInt();
    };
    const auto results = TimingCalculator::calculate({.frameHead = input(ui->lineEdit_18),
                                                      .frameTail = input(ui->lineEdit_19),
                                                      .outGap = input(ui->lineEdit_22),
                                                      .outpCkGap = input(ui->lineEdit_23),
                                                      .ckpMuxGap = input(ui->lineEdit_27),
                                                      .adcStartDelay = input(ui->lineEdit_31),
                                                      .adcIntA = input(ui->lineEdit_32),
                                                      .adcIntB = input(ui->lineEdit_34)});

    const auto show = [](QLineEdit *edit, qint32 value) {
        edit->setText(QString::number(value));
    };
    show(ui->lineEdit_17, results.framePeriod);
    show(ui->lineEdit_20, results.clkCycle);
    show(ui->lineEdit_21, results.clkHigh);
    show(ui->lineEdit_24, results.ckHigh);
    show(ui->lineEdit_25, results.ckGap);
    show(ui->lineEdit_26, results.ckOutnGap);
    show(ui->lineEdit_28, results.muxHigh);
    show(ui->lineEdit_29, results.muxGap);
    show(ui->lineEdit_30, results.muxCknGap);
    show(ui->lineEdit_33, results.adcEndDelay);
}
