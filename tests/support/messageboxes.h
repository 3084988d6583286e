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

    MessageBoxes()
    {
        connect(&m_timer, &QTimer::timeout, this, &MessageBoxes::look);
        m_timer.start(5);
    }

    [[nodiscard]] const QList<Box> &boxes() const { return m_boxes; }
    [[nodiscard]] bool isEmpty() const { return m_boxes.isEmpty(); }
    [[nodiscard]] Box last() const { return m_boxes.isEmpty() ? Box{} : m_boxes.last(); }

    /// Forgets the boxes so far. From now on each is answered with this button when it has it; without it, it
    /// is dismissed.
    void startOver(QMessageBox::StandardButton answer = QMessageBox::Ok)
    {
        m_answer = answer;
        m_boxes.clear();
    }

    std::function<void(QDialog *)> onDialog;
    /// Called while a message box stands there, before it is answered. It may handle events.
    std::function<void()> onBox;

private:
    void look()
    {
        auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        if (dialog == nullptr || dialog == m_inHand || !dialog->isVisible())
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
        if (onBox) {
            m_inHand = &box;
            onBox();
            m_inHand = nullptr;
        }
        auto *defaultButton = qobject_cast<QPushButton *>(box.defaultButton());
        m_boxes.append({box.windowTitle(), box.text(), box.icon(), box.standardButtons(),
                        defaultButton ? box.standardButton(defaultButton) : QMessageBox::NoButton});
        if (auto *button = box.button(m_answer))
            button->click();
        else
            box.done(QMessageBox::NoButton);
    }

    QMessageBox::StandardButton m_answer = QMessageBox::Ok;
    QTimer m_timer;
    const QDialog *m_inHand = nullptr; ///< its onBox is under way
    QList<Box> m_boxes;
};
