#pragma once

#include "device/protocol/readback.h"

#include <QDialog>
#include <QList>
#include <QString>

#include <memory>

class PortManager;
class QLineEdit;
class QSettings;
namespace Ui {
class developwindow;
}

/// The engineering dialog: every device parameter as a raw field, one button per device command.
///
/// The fields are the state. They come from the settings when the dialog is made and go back when it is
/// destroyed, under the names of the widgets. Nothing that goes wrong is shown: it goes to the debug output.
///
/// GUI thread only. Every button but the timing calculator's blocks until the reply has arrived, 2 s at most,
/// or 5 s for a read-back; only the read-backs judge their reply. What is pressed meanwhile is not carried
/// out afterwards. The link must exist, and must not be receiving: see setAcquiring().
class developwindow : public QDialog
{
    Q_OBJECT

public:
    /// `store` must outlive the dialog.
    developwindow(QSettings *store, QWidget *parent);
    ~developwindow() override;

    /// While images stream in, the buttons that talk with the detector cannot be pressed: waiting for a reply
    /// would take bytes out of a frame, and the stream would stand still.
    void setAcquiring(bool isAcquiring);
    /// Without a connection a line of the dialog says so; the buttons send all the same.
    void setConnected(bool isConnected);

private Q_SLOTS:
    void set_adc();
    void ver_readback();
    void parm_readback();
    void set_mode();
    void write_eep();
    void read_eep();
    void init_eep();
    void eep_readback();
    void set_voltage();
    void cal_time();
    void set_time();
    void send_eep();

    // Connected to the buttons by their names.
    void on_pushButton_set_adc_clicked() { set_adc(); }
    void on_pushButton_ver_readback_clicked() { ver_readback(); }
    void on_pushButton_parm_readback_clicked() { parm_readback(); }
    void on_pushButton_set_mode_clicked() { set_mode(); }
    void on_pushButton_write_eep_clicked() { write_eep(); }
    void on_pushButton_read_eep_clicked() { read_eep(); }
    void on_pushButton_init_eep_clicked() { init_eep(); }
    void on_pushButton_eep_readback_clicked() { eep_readback(); }
    void on_pushButton_set_voltage_clicked() { set_voltage(); }
    void on_pushButton_cal_time_clicked() { cal_time(); }
    void on_pushButton_set_time_clicked() { set_time(); }
    void on_pushButton_send_eep_clicked() { send_eep(); }

private:
    void fillLists();
    void load();
    void save() const;

    /// Number N of "lineEdit_N"; null when there is none.
    [[nodiscard]] QLineEdit *field(int number) const;
    /// Empty when there is no such field.
    [[nodiscard]] QString fieldText(int number) const;
    void setFieldText(int number, const QString &text);

    /// The values of `count` fields from `first` on. `parse` turns a field's place among them and its text
    /// into a value and says whether it could; a field whose text does not parse is left out, so that the
    /// later ones move up.
    template <typename Value, typename Parse>
    [[nodiscard]] QList<Value> gather(int first, int count, Parse parse) const;

    /// Sends a frame whose acknowledgement is not judged.
    void send(const QByteArray &frame);
    /// What the detector answers to a question of device/conversations.h, as hexadecimal text.
    [[nodiscard]] QByteArray ask(QByteArray (*question)(PortManager &link));

    void markFields();
    /// After the caption before it, for who cannot see the form.
    void nameField(QLineEdit &edit, int number);
    void buildListKeys();
    void showModeAndAdc(const Readback::Parameters &parameters);
    void showVoltages(const QList<int> &codes);
    void showTiming(const QList<qint32> &words);

    const std::unique_ptr<Ui::developwindow> ui;
    QSettings *const m_store;
};
