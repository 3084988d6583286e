// What the window tells about the link beside the required texts.

#include "ui/mainwindow.h"

#include "ui/mainwindow/stylesheets.h"
#include "ui_mainwindow.h"

void mainwindow::setSystemNote(SystemNote note, const QString &text)
{
    if (m_systemNotes.value(note) == text)
        return; // what the operator reads or has selected there stays as it is
    if (text.isEmpty())
        m_systemNotes.remove(note);
    else
        m_systemNotes.insert(note, text);
    QStringList paragraphs{m_library.description()};
    paragraphs += m_systemNotes.values();
    ui->textEdit->setPlainText(paragraphs.join(QStringLiteral("\n\n")));
}

void mainwindow::showInterruption(bool isInterrupted)
{
    const bool isShown = isInterrupted && m_isSampling == 1;
    m_interruption =
        isShown ? tr("No data from the detector: the picture stands still until more arrives.") : QString();
    showStreamNotes();
}

void mainwindow::showLosses(quint32 times)
{
    const bool isShown = times > 0 && m_isSampling == 1;
    if (isShown)
        m_lossCount = times;
    m_losses =
        isShown ? tr("The detector's bridge lost data %1 times: pictures since then may be wrong. Stop and "
                     "start again.")
                      .arg(times)
                : QString();
    showStreamNotes();
}

void mainwindow::showStreamNotes()
{
    QStringList texts{m_interruption, m_losses};
    texts.removeAll(QString());
    const QString text = texts.join(u'\n');
    ui->label_fps->setStyleSheet(text.isEmpty() ? QString()
                                                : QString::fromLatin1(StyleSheets::rateInterrupted));
    ui->label_fps->setToolTip(text);
    setSystemNote(SystemNote::Stream, text);
}
