#include "tests/soak/soakwindow.h"

#include "device/portmanager.h"
#include "tests/soak/linkinspector.h"
#include "ui/developwindow.h"
#include "ui/mainwindow/stylesheets.h"

#include <QDirIterator>
#include <QLibrary>

namespace {

/// An operator does not wait for ever for a detector that is not ready.
constexpr int longestWaitMs = 5000;
constexpr int lookEveryMs = 50;

} // namespace

SoakWindow::SoakWindow()
{
    QLibrary library(QStringLiteral(QV1K_SOAK_LIBRARY));
    const auto counts = reinterpret_cast<const SoakCounts *(*)()>(library.resolve("Soak_counts"));
    if (counts == nullptr)
        qFatal("%s", qPrintable(library.errorString()));
    m_counts = counts();
    QDir(folder.path()).mkdir(QStringLiteral("recordings"));
    QObject::connect(&m_looks, &QTimer::timeout, &m_looks, [this] { lookForWait(); });
    m_looks.start(lookEveryMs);
    boxes.onDialog = [this](QDialog *dialog) {
        operate(dialog);
    };
}

void SoakWindow::TearDown()
{
    endWindow();
}

void SoakWindow::settle(const QByteArray &settings, int faults)
{
    m_faults += faults;
    folder.write(QStringLiteral("virtual-detector.ini"), settings);
}

void SoakWindow::reopen()
{
    endWindow();
    m_shownBefore += m_shown;
    m_received = 0;
    m_shown = 0;
    ++m_windows;
    m_stopping.invalidate();
    openOn(QV1K_SOAK_LIBRARY,
           "DebugMode=true\nSavePath=" + folder.filePath(QStringLiteral("recordings")).toUtf8() + '\n');
    QObject::connect(&pipeline(), &ProcessImage::sendImagetoMain, window.get(),
                     [this](const QImage &picture) { count(picture); });
    QObject::connect(
        PortManager::instance(), &PortManager::read_ready, window.get(), [this] { ++m_received; },
        Qt::DirectConnection);
}

void SoakWindow::endWindow()
{
    if (!window)
        return;
    window->close();
    checkRecording();
    window.reset();
}

void SoakWindow::count(const QImage &picture)
{
    ++m_shown;
    if (picture.size() != QSize(1024, 1024))
        complain(QStringLiteral("a picture of another size"));
    if (pipeline().isSaving()) // it is stored after it was shown
        ++m_shownWhileRecording;
}

void SoakWindow::press(const char *name)
{
    auto *target = find<QAbstractButton>(name);
    goTo(target);
    if (window->isVisible() && target->isVisible() && target->isEnabled())
        QTest::mouseClick(target, Qt::LeftButton, {}, QPoint(8, target->height() / 2));
}

void SoakWindow::operate(QDialog *dialog)
{
    if (qobject_cast<developwindow *>(dialog) != nullptr && !m_dialogPresses.isEmpty()) {
        getChild<QAbstractButton>(*dialog, m_dialogPresses.takeFirst())->click();
        return;
    }
    dialog->reject();
}

/// The wait for a detector that is not ready is no modal dialog.
void SoakWindow::lookForWait()
{
    const auto dialogs = window ? window->findChildren<QDialog *>() : QList<QDialog *>();
    for (QDialog *dialog : dialogs) {
        if (dialog->isModal() || !dialog->isVisible())
            continue;
        if (!m_waiting.isValid())
            m_waiting.start();
        if (m_cancelsWait || m_waiting.hasExpired(longestWaitMs))
            dialog->reject();
    }
}

void SoakWindow::record(int frames, const RecordingForms &forms)
{
    if (pipeline().isSaving())
        return;
    const QString name = QStringLiteral("soak%1").arg(++m_recordings);
    find<QLineEdit>("lineEdit_savename")->setText(name);
    find<QComboBox>("comboBox_saveframes")->setEditText(QString::number(frames));
    find<QCheckBox>("checkBox_data")->setChecked(forms.data);
    find<QCheckBox>("checkBox_picture")->setChecked(forms.picture);
    find<QCheckBox>("checkBox_video")->setChecked(forms.video);
    m_shownWhileRecording = 0;
    m_recording = {{folder.filePath(QStringLiteral("recordings")), name}, frames, forms};
    press("pushButton_save");
}

SoakWindow::State SoakWindow::state() const
{
    const bool isConnected = button("pushButton_Connect")->text() != QStringLiteral("Connect");
    const bool isSampling = !button("pushButton_set")->isEnabled();
    const QPushButton *play = button("pushButton_sample");
    if (!isSampling && play->isEnabled())
        return isConnected ? State::Idle : State::Disconnected;
    if (isConnected && isSampling && play->isEnabled() && play->styleSheet() == StyleSheets::playRunning)
        return State::Sampling;
    if (isConnected && isSampling && !play->isEnabled() && play->styleSheet() == StyleSheets::playStopping)
        return State::Stopping;
    return State::Unknown;
}

bool SoakWindow::agrees() const
{
    const PortManager &link = *PortManager::instance();
    switch (state()) {
    case State::Disconnected:
        return !LinkInspector::isOpen(link) && !LinkInspector::receives(link);
    case State::Idle:
        return LinkInspector::isOpen(link) && !LinkInspector::receives(link) && !link.isLost();
    case State::Sampling:
        return LinkInspector::isOpen(link) && LinkInspector::receives(link) && !LinkInspector::isToStop(link);
    case State::Stopping:
        return LinkInspector::isOpen(link) && LinkInspector::isToStop(link);
    case State::Unknown:
        break;
    }
    return false;
}

bool SoakWindow::waitForState(State wanted)
{
    return QTest::qWaitFor([&] { return state() == wanted; }, patienceMs);
}

bool SoakWindow::waitForPictures(qint64 more, int timeoutMs)
{
    const qint64 wanted = m_shown + more;
    return QTest::qWaitFor([&] { return m_shown >= wanted; }, timeoutMs);
}

void SoakWindow::check()
{
    QCoreApplication::processEvents();
    if (!QTest::qWaitFor([this] { return agrees(); }, patienceMs))
        complain(QStringLiteral("window (%1) and link disagree: open %2, receiving %3, to stop %4, lost %5")
                     .arg(static_cast<int>(state()))
                     .arg(LinkInspector::isOpen(*PortManager::instance()))
                     .arg(LinkInspector::receives(*PortManager::instance()))
                     .arg(LinkInspector::isToStop(*PortManager::instance()))
                     .arg(PortManager::instance()->isLost()));
    if (state() != State::Stopping)
        m_stopping.invalidate();
    else if (!m_stopping.isValid())
        m_stopping.start();
    else if (m_stopping.elapsed() > patienceMs)
        complain(QStringLiteral("it stops for ever"));
    if (!button("pushButton_Connect")->isEnabled() || !button("pushButton_close")->isEnabled())
        complain(QStringLiteral("Connect or Close cannot be pressed"));
    checkRecording();
}

void SoakWindow::checkRecording()
{
    if (!m_recording || pipeline().isSaving())
        return;
    if (const QString fault = recordingFault(); !fault.isEmpty())
        complain(fault);
    QDir(m_recording->files.folder()).removeRecursively();
    m_recording.reset();
}

QString SoakWindow::recordingFault() const
{
    const RecordingResult &result = pipeline().recordingResult();
    if (result.failed > 0)
        return QStringLiteral("%1 files of a recording failed").arg(result.failed);
    if (result.stored != m_shownWhileRecording)
        return QStringLiteral("%1 frames were shown while recording, %2 stored")
            .arg(m_shownWhileRecording)
            .arg(result.stored);
    QDirIterator parts(m_recording->files.folder(), {QStringLiteral("*.part*")}, QDir::Files);
    if (parts.hasNext())
        return parts.next() + QStringLiteral(" was left");
    RecordingCheck::Recording stored = *m_recording;
    stored.frames = result.stored;
    stored.forms.video = stored.forms.video && stored.frames > 0;
    return RecordingCheck::check(stored);
}

void SoakWindow::complain(const QString &what)
{
    ++m_complaints;
    ADD_FAILURE() << qPrintable(m_context) << ": " << qPrintable(what);
}
