#include "tests/matrix/matrixwindow.h"

#include <QDialog>

void MatrixWindow::open(bool withOther)
{
    settleVirtualDetector(folder, withOther ? "SerialNumbers=QV1K,SPARE\n" : "");
    openOn(LoadedLibrary::path().toUtf8(), "DebugMode=true\n");
    QObject::connect(&pipeline(), &ProcessImage::sendImagetoMain, window.get(), [this] { ++pictures; });
}

bool MatrixWindow::is(State state) const
{
    if (state == State::Closed)
        return !window || !window->isVisible();
    if (!window)
        return false;
    const bool samples = state == State::Sampling || state == State::Silent;
    const bool hasSign = !find<QLabel>("label_fps")->toolTip().isEmpty();
    return isConnected() == (state != State::Disconnected) && isSampling() == samples &&
           button("pushButton_Connect")->isEnabled() && button("pushButton_sample")->isEnabled() &&
           button("pushButton_save")->isEnabled() && button("pushButton_develop")->isEnabled() &&
           hasSign == (state == State::Silent) &&
           MainWindowInspector::statusTimer(*window).isActive() == (state == State::Idle);
}

void MatrixWindow::waitForPictures(int more)
{
    const int target = pictures + more;
    ASSERT_TRUE(QTest::qWaitFor([&] { return pictures >= target; }, slackSeconds * 1000)) << pictures;
}

void MatrixWindow::play()
{
    click("pushButton_sample");
    ASSERT_TRUE(isSampling()) << "the acquisition does not run";
    waitForPictures(1);
}

void MatrixWindow::stop()
{
    click("pushButton_sample");
    ASSERT_TRUE(QTest::qWaitFor([this] { return is(State::Idle); }, slackSeconds * 1000));
}

void MatrixWindow::watch(bool untilFault)
{
    const int target = pictures + 2;
    const auto isDone = [&] {
        return !is(State::Sampling) || (pictures >= target && (!untilFault || LoadedLibrary::happened() > 0));
    };
    EXPECT_TRUE(QTest::qWaitFor(isDone, slackSeconds * 1000));
}

void MatrixWindow::inDialog(Fault which, const std::function<void(QDialog *)> &steps)
{
    auto once = [steps, isTaken = false](QDialog *dialog) mutable {
        if (std::exchange(isTaken, true))
            return false; // the steps handle events
        steps(dialog);
        return true;
    };
    if (which == Fault::MessageBox) {
        boxes.startOver(QMessageBox::No);
        boxes.onBox = [once]() mutable {
            once(nullptr);
        };
        return click("pushButton_close");
    }
    boxes.onDialog = [once](QDialog *dialog) mutable {
        if (once(dialog))
            dialog->reject();
    };
    click(which == Fault::FileDialog ? "pushButton_savepath" : "pushButton_develop");
}

void MatrixWindow::watchReadiness(bool cancel)
{
    QObject::connect(&m_looking, &QTimer::timeout, &m_looking, [this, cancel] { lookForWait(cancel); });
    m_looking.start(10);
}

void MatrixWindow::lookForWait(bool cancel)
{
    for (auto *dialog : window->findChildren<QDialog *>()) {
        if (dialog->windowTitle() != waitShown || !dialog->isVisible())
            continue;
        m_waitText = QString::fromLatin1(cancel ? waitCancelled : waitShown);
        if (cancel)
            dialog->findChild<QPushButton *>()->click();
    }
}

QString MatrixWindow::shownTexts() const
{
    QStringList texts;
    if (!m_waitText.isEmpty())
        texts << m_waitText;
    for (const MessageBoxes::Box &box : boxes.boxes())
        texts << box.text;
    return texts.join(QStringLiteral(" | "));
}

void MatrixWindow::expectThatTheNextFlowWorks()
{
    LoadedLibrary::heal();
    m_looking.stop();
    boxes.startOver();
    boxes.onBox = {};
    boxes.onDialog = {};
    if (is(State::Closed)) {
        window.reset();
        open();
    }
    if (isSampling())
        stop();
    if (!isConnected()) {
        ASSERT_TRUE(QTest::qWaitFor([this] { return ports().contains("QV1K"); }, slackSeconds * 1000))
            << qPrintable(ports().join(u' '));
        connectDetector();
    }
    ASSERT_NO_FATAL_FAILURE(play());
    stop();
    EXPECT_TRUE(boxes.isEmpty()) << qPrintable(boxes.last().text);
}
