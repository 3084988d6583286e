#pragma once

#include "tests/support/children.h"
#include "tests/support/workingfolder.h"
#include "tests/ui/develop/dialogfields.h"
#include "ui/developwindow.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSettings>

#include <memory>

/// Settings in a file of an empty folder, and the dialog on them.
class Dialog
{
public:
    /// Makes the dialog anew; the one before stores its fields.
    void open()
    {
        close();
        m_dialog = std::make_unique<developwindow>(&settings, nullptr);
    }
    void close() { m_dialog.reset(); }

    [[nodiscard]] developwindow &window() { return *m_dialog; }

    [[nodiscard]] QLineEdit *field(int number) { return DialogFields::field(*m_dialog, number); }
    [[nodiscard]] QString text(int number) { return field(number)->text(); }
    void setText(int number, const QString &text) { field(number)->setText(text); }
    void setTexts(int first, const QStringList &texts)
    {
        for (const QString &text : texts)
            setText(first++, text);
    }
    [[nodiscard]] QStringList texts(int first, int count)
    {
        return DialogFields::shown(*m_dialog, first, count);
    }

    [[nodiscard]] QComboBox *list(const char *name) { return getChild<QComboBox>(*m_dialog, name); }
    [[nodiscard]] QRadioButton *radio(const char *name) { return getChild<QRadioButton>(*m_dialog, name); }
    [[nodiscard]] QString version() { return getChild<QLabel>(*m_dialog, "label_version")->text(); }
    void click(const char *button) { getChild<QPushButton>(*m_dialog, button)->click(); }

    WorkingFolder folder;
    QSettings settings{QStringLiteral("./config.ini"), QSettings::IniFormat};

private:
    std::unique_ptr<developwindow> m_dialog;
};
