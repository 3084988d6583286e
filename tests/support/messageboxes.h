#pragma once

#include <QApplication>
#include <QDialog>
#include <QList>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>

#include <functional>

/// Answers modal message boxes while it lives, so that a flow that shows one goes on, and keeps what they
/// said. Other modal dialogs are handed to `onDialog`; without it they are closed.
class MessageBoxes : public QObject
{
public:
    struct Box
    {
        QString title;
        QString text;
        QMessageBox::Icon icon;
        QMessageBox::StandardButtons buttons;
        QMessageBox::StandardButton defaultButton;
    };

    /// Each box is answered with `answer` when it has that button, otherwise with its default.
    explicit MessageBoxes(QMessageBox::StandardButton answer = QMessageBox::Ok) : m_answer(answer)
    {
        connect(&m_timer, &QTimer::timeout, this, &MessageBoxes::look);
        m_timer.start(5);
    }

    [[nodiscard]] const QList<Box> &boxes() const { return m_boxes; }
    [[nodiscard]] bool isEmpty() const { return m_boxes.isEmpty(); }
    [[nodiscard]] Box last() const { return m_boxes.isEmpty() ? Box{} : m_boxes.last(); }

    std::function<void(QDialog *)> onDialog;

private:
    void look()
    {
        auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        if (dialog == nullptr || !dialog->isVisible())
            return;
        if (auto *box = qobject_cast<QMessageBox *>(dialog))
            answer(*box);
        else if (onDialog)
            onDialog(dialog);
        else
            dialog->reject();
    }

    void answer(QMessageBox &box)
    {
        auto *defaultButton = qobject_cast<QPushButton *>(box.defaultButton());
        m_boxes.append({box.windowTitle(), box.text(), box.icon(), box.standardButtons(),
                        defaultButton ? box.standardButton(defaultButton) : QMessageBox::NoButton});
        if (auto *button = box.button(m_answer))
            button->click();
        else
            box.done(QMessageBox::NoButton);
    }

    QMessageBox::StandardButton m_answer;
    QTimer m_timer;
    QList<Box> m_boxes;
};
