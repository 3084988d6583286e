#include "tests/matrix/matrixwindow.h"

#include "ui/mainwindow/stylesheets.h"

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

void MatrixWindow::expectThatTheNextFlowWorks()
{
    LoadedLibrary::heal();
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
    play();
    stop();
    EXPECT_TRUE(boxes.isEmpty()) << qPrintable(boxTexts());
}
