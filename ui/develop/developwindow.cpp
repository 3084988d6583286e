#include "ui/developwindow.h"

#include "device/parameters/adclists.h"
#include "device/parameters/parameterkeys.h"
#include "device/parameters/storedvalue.h"
#include "device/protocol/timing.h"
#include "ui/chrome/availability.h"
#include "ui/chrome/wheelguard.h"
#include "ui/develop/fieldmarks.h"

#include "ui_developwindow.h"

#include <QSettings>
#include <QShortcut>

#include <algorithm>
#include <array>

namespace {

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
    new WheelGuard(*this);
    markFields();
    buildListKeys();
    setFocus();
    load();
}

developwindow::~developwindow()
{
    save();
}

void developwindow::setAcquiring(bool isAcquiring)
{
    for (QPushButton *button : findChildren<QPushButton *>()) {
        if (button == ui->pushButton_cal_time)
            continue;
        if (isAcquiring)
            Availability::withhold(*button, tr("Stop the acquisition first"));
        else
            Availability::grant(*button);
    }
}

void developwindow::setConnected(bool isConnected)
{
    ui->label_connection->setText(
        isConnected ? QString() : tr("No detector is connected: nothing that is sent arrives."));
    ui->label_connection->setVisible(!isConnected);
}

void developwindow::markFields()
{
    for (int number = ParameterKeys::firstVoltage; number <= ParameterKeys::lastField; ++number) {
        QLineEdit *edit = field(number);
        if (edit == nullptr)
            continue;
        nameField(*edit, number);
        FieldMarks::show(*edit, number);
        connect(edit, &QLineEdit::textChanged, edit, [edit, number] { FieldMarks::show(*edit, number); });
    }
}

void developwindow::nameField(QLineEdit &edit, int number)
{
    auto *caption =
        findChild<QLabel *>(number == 1 ? QStringLiteral("label") : QStringLiteral("label_%1").arg(number));
    if (caption == nullptr)
        return;
    caption->setBuddy(&edit);
    edit.setAccessibleName(number < ParameterKeys::firstEeprom ? caption->text()
                                                               : tr("EEPROM word %1").arg(caption->text()));
}

void developwindow::buildListKeys()
{
    struct ListKeys
    {
        QComboBox *list;
        const QLabel *caption;
        Qt::Key key;
    };
    // The lists take no focus: a key of its own opens each.
    for (const auto &[list, caption, key] : {ListKeys{ui->comboBox_ope, ui->label_ope, Qt::Key_O},
                                             {ui->comboBox_data, ui->label_data, Qt::Key_D},
                                             {ui->comboBox_mode, ui->label_mode, Qt::Key_T},
                                             {ui->comboBox_pcrange, ui->label_pcrange, Qt::Key_P}}) {
        const QKeySequence keys(Qt::ALT | key);
        list->setAccessibleName(caption->text().simplified());
        list->setToolTip(tr("%1 opens the list").arg(keys.toString(QKeySequence::NativeText)));
        connect(new QShortcut(keys, this), &QShortcut::activated, list, &QComboBox::showPopup);
    }
}

void developwindow::fillLists()
{
    const auto fill = [](QComboBox *list, const auto &entries) {
        for (const auto &entry : entries)
            list->addItem(QString::fromLatin1(entry.text));
    };
    fill(ui->comboBox_ope, AdcLists::operations);
    fill(ui->comboBox_data, AdcLists::dataFormats);
    fill(ui->comboBox_mode, AdcLists::testModes);
    fill(ui->comboBox_pcrange, AdcLists::pcRanges);
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
    for (int number = ParameterKeys::firstVoltage; number <= ParameterKeys::lastField; ++number) {
        if (m_store->contains(ParameterKeys::field(number)))
            setFieldText(number, storedValue(*m_store, ParameterKeys::field(number)).toString());
    }
}

void developwindow::save() const
{
    for (const auto &[key, list] : listsOf(*ui))
        m_store->setValue(key, list->currentIndex());
    m_store->setValue(ParameterKeys::mode, ui->radioButton_1k->isChecked());
    for (int number = ParameterKeys::firstVoltage; number <= ParameterKeys::lastField; ++number)
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
    Timing timing;
    int number = ParameterKeys::firstTiming;
    for (const Timing::Field field : Timing::fields)
        timing.*field = fieldText(number++).toInt();

    timing = timing.calculated();
    number = ParameterKeys::firstTiming;
    for (const Timing::Field field : Timing::fields) {
        // What an engineer typed stays as it was typed.
        if (std::ranges::find(Timing::derived, field) != Timing::derived.end())
            setFieldText(number, QString::number(timing.*field));
        ++number;
    }
}
