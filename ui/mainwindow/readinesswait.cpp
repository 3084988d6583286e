#include "ui/mainwindow/readinesswait.h"

#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

namespace {

constexpr int restMs = 1000;
constexpr int dialogAfterMs = 2000;

} // namespace

ReadinessWait::ReadinessWait(QWidget &window) : m_window(window), m_block(window)
{
    m_clock.start();
}

ReadinessWait::~ReadinessWait()
{
    delete m_dialog;
}

bool ReadinessWait::rest()
{
    if (m_hasEnded)
        return false;
    QElapsedTimer rested;
    rested.start();
    QTimer restOver;
    restOver.setSingleShot(true);
    restOver.setTimerType(Qt::PreciseTimer);
    // Even a precise timer may be a little early, and then takes what is missing.
    QObject::connect(&restOver, &QTimer::timeout, &restOver, [&] {
        if (const qint64 missing = restMs - rested.elapsed(); missing > 0)
            restOver.start(static_cast<int>(missing));
        else
            m_loop.quit();
    });
    restOver.start(restMs);
    QTimer dialogDue;
    dialogDue.setSingleShot(true);
    dialogDue.setTimerType(Qt::PreciseTimer); // a coarse one may be early
    QObject::connect(&dialogDue, &QTimer::timeout, &dialogDue, [this] { showDialog(); });
    if (!m_dialog)
        dialogDue.start(static_cast<int>(qMax(qint64{0}, dialogAfterMs - m_clock.elapsed())));
    m_loop.exec();
    return !m_hasEnded;
}

void ReadinessWait::end()
{
    m_hasEnded = true;
    m_loop.quit();
}

void ReadinessWait::showDialog()
{
    m_dialog = new QDialog(&m_window);
    m_dialog->setWindowTitle(QObject::tr("Waiting for the detector"));
    auto *text =
        new QLabel(QObject::tr("The detector is not ready yet. The acquisition starts as soon as it is."));
    auto *cancel = new QPushButton(QObject::tr("Cancel"));
    auto *layout = new QVBoxLayout(m_dialog);
    layout->setContentsMargins(20, 20, 20, 14);
    layout->setSpacing(16);
    layout->addWidget(text);
    layout->addWidget(cancel, 0, Qt::AlignRight);
    QObject::connect(cancel, &QPushButton::clicked, m_dialog, &QDialog::reject);
    QObject::connect(m_dialog, &QDialog::rejected, m_dialog, [this] { end(); });
    m_dialog->show();
}
