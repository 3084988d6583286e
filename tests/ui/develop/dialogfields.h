#pragma once

#include "tests/support/children.h"
#include "ui/developwindow.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QLineEdit>
#include <QStringList>
#include <QTest>

#include <array>

/// The engineering dialog's widgets, looked up and operated.
namespace DialogFields {

/// The lists of the ADC word, in the order of the form.
inline constexpr std::array<const char *, 4> lists{"comboBox_ope", "comboBox_data", "comboBox_mode",
                                                   "comboBox_pcrange"};

/// The object name of a field, 1 to 66, and its key in config.ini.
inline QString fieldName(int number)
{
    return QStringLiteral("lineEdit_%1").arg(number);
}

inline QLineEdit *field(const developwindow &dialog, int number)
{
    return getChild<QLineEdit>(dialog, qPrintable(fieldName(number)));
}

/// What stands in `count` fields from `first` on.
inline QStringList shown(const developwindow &dialog, int first, int count)
{
    QStringList texts;
    for (int number = first; number < first + count; ++number)
        texts << field(dialog, number)->text();
    return texts;
}

/// Types over what is in the fields from `first` on.
inline void type(const developwindow &dialog, int first, const QStringList &texts)
{
    for (const QString &text : texts) {
        QLineEdit *edit = field(dialog, first++);
        edit->selectAll();
        QTest::keyClicks(edit, text);
    }
}

inline void choose(const developwindow &dialog, const std::array<int, lists.size()> &indexes)
{
    for (std::size_t i = 0; i < lists.size(); ++i)
        getChild<QComboBox>(dialog, lists[i])->setCurrentIndex(indexes[i]);
}

inline QStringList chosen(const developwindow &dialog)
{
    QStringList texts;
    for (const char *name : lists)
        texts << getChild<QComboBox>(dialog, name)->currentText();
    return texts;
}

/// A press and release of the left button.
inline void press(const developwindow &dialog, const char *button)
{
    QTest::mouseClick(getChild<QAbstractButton>(dialog, button), Qt::LeftButton, {}, QPoint(8, 8));
}

} // namespace DialogFields
