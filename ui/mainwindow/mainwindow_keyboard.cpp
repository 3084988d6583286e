// What the keyboard does beside the fields' own keys.

#include "ui/mainwindow.h"

#include "ui_mainwindow.h"

#include <QShortcut>

#include <array>

namespace {

QString withKeys(const QString &text, const QKeySequence &keys)
{
    const QString named = keys.toString(QKeySequence::NativeText);
    return text.isEmpty() ? named : QStringLiteral("%1 (%2)").arg(text, named);
}

/// Where the tabulator arrives first in a page; null when it has nothing to work at.
QWidget *firstField(QWidget *page)
{
    for (QWidget *next = page->nextInFocusChain(); next != page; next = next->nextInFocusChain()) {
        if (page->isAncestorOf(next) && (next->focusPolicy() & Qt::TabFocus) == Qt::TabFocus &&
            next->isVisibleTo(page) && next->isEnabled())
            return next;
    }
    return nullptr;
}

} // namespace

void mainwindow::buildShortcuts()
{
    struct Shortcut
    {
        QPushButton *button;
        QKeySequence keys;
    };
    const std::array<Shortcut, 6> shortcuts{{{ui->pushButton_sample, Qt::Key_F5},
                                             {ui->pushButton_save, Qt::CTRL | Qt::Key_S},
                                             {ui->pushButton_develop, Qt::Key_F12},
                                             {ui->pushButton_minimize, Qt::CTRL | Qt::Key_M},
                                             {ui->pushButton_maxsize, Qt::Key_F11},
                                             {ui->pushButton_close, Qt::CTRL | Qt::Key_Q}}};
    for (const auto &[button, keys] : shortcuts) {
        button->setToolTip(withKeys(button->toolTip(), keys));
        auto *shortcut = new QShortcut(keys, this);
        // A key that is held down would start and stop the acquisition all the time.
        shortcut->setAutoRepeat(false);
        // On whatever page the button is, but not where the settings hide it.
        connect(shortcut, &QShortcut::activated, this, [button = button] {
            if (!button->isHidden())
                button->click();
        });
    }
    for (int row = 0; row < ui->listWidget->count(); ++row) {
        const QKeySequence keys(Qt::CTRL | static_cast<Qt::Key>(Qt::Key_1 + row));
        ui->listWidget->item(row)->setToolTip(withKeys({}, keys));
        connect(new QShortcut(keys, this), &QShortcut::activated, this, [this, row] { goToPage(row); });
    }
}

void mainwindow::goToPage(int row)
{
    ui->listWidget->setCurrentRow(row);
    if (QWidget *field = firstField(ui->stackedWidget->currentWidget()))
        field->setFocus(Qt::ShortcutFocusReason);
}
