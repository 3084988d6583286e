#include "ui/develop/fieldmarks.h"

#include "device/parameters/parameterkeys.h"
#include "device/protocol/parameterpackets.h"

#include <QCoreApplication>
#include <QLineEdit>
#include <QStyle>
#include <QVariant>

#include <climits>

namespace {

constexpr int voltageCodes = 1 << (8 * ParameterPacket::voltageBytes);

QString tell(const char *text)
{
    return QCoreApplication::translate("developwindow", text);
}

QString voltageProblem(const QString &text)
{
    bool isNumber = false;
    const double volts = text.toDouble(&isNumber);
    if (!isNumber)
        return tell("Not a number: left out, and the values after it move up");
    const int code = ParameterPacket::voltageCode(volts);
    // The codes below 0 are truncated to it from a little above -20 V already.
    const bool isWithin = code >= 0 && code < voltageCodes && volts >= ParameterPacket::voltageValue(0);
    return isWithin ? QString() : tell("Outside -20 V to 20 V (exclusive): another voltage would be sent");
}

QString timingProblem(const QString &text)
{
    bool isNumber = false;
    (void)text.toInt(&isNumber);
    return isNumber ? QString()
                    : tell("Not a whole number from -2147483648 to 2147483647: left out, and the values "
                           "after it move up");
}

QString wordProblem(const QString &text)
{
    bool isNumber = false;
    const quint32 word = text.toUInt(&isNumber);
    if (!isNumber)
        return tell("Not a whole number from 0 to 4294967295: left out, and the words after it move up");
    if (word <= INT_MAX)
        return {};
    const QString sent = QString::fromLatin1(ParameterPacket::eepromWord(word).toHex().toUpper());
    return tell("2147483648 and more: sent as %1").arg(sent);
}

} // namespace

QString FieldMarks::problem(int number, const QString &text)
{
    if (text.isEmpty())
        return tell("Empty: left out, and the values after it move up");
    if (number < ParameterKeys::firstTiming)
        return voltageProblem(text);
    return number < ParameterKeys::firstEeprom ? timingProblem(text) : wordProblem(text);
}

void FieldMarks::show(QLineEdit &edit, int number)
{
    const QString reason = problem(number, edit.text());
    const QString name = tell("Field %1").arg(number);
    edit.setToolTip(reason.isEmpty() ? name : name + u'\n' + reason);
    edit.setAccessibleDescription(reason);
    // All words are empty before the first read-back: nothing that an alarm is due for.
    edit.setPlaceholderText(tell("left out"));
    const bool isMarked = !reason.isEmpty() && !edit.text().isEmpty();
    if (edit.property("unsendable").toBool() == isMarked)
        return;
    edit.setProperty("unsendable", isMarked);
    // Style sheets look at properties only when they are asked to.
    edit.style()->unpolish(&edit);
    edit.style()->polish(&edit);
}
