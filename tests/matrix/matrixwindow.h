#pragma once

#include "tests/matrix/cell.h"
#include "tests/matrix/loadedlibrary.h"
#include "tests/support/virtualdetector.h"
#include "tests/ui/mainwindow/windowfixture.h"

/// The operator's window on the faulty library.
class MatrixWindow : public WindowFixture
{
protected:
    /// What a slow machine may add to the program's own waits.
    static constexpr int slackSeconds = 60;

    void open(bool withOther = false);

    [[nodiscard]] bool isConnected() const { return button("pushButton_Connect")->text() == "Disconnect"; }
    [[nodiscard]] bool isSampling() const { return !button("pushButton_set")->isEnabled(); }

    /// The window stands there as it should, every button included.
    [[nodiscard]] bool is(State state) const;

    void waitForPictures(int more);
    /// Presses play and waits for a picture.
    void play();
    /// The same on the way back.
    void stop();
    /// Looks on while two more pictures come and, where one is expected, the fault happens, or until nothing
    /// more comes.
    void watch(bool untilFault);

    /// Opens a box or dialog, takes the steps while it stands there, and closes it again.
    void inDialog(Fault which, const std::function<void(QDialog *)> &steps);

    /// From now on what is shown of the wait for readiness is noted, and cancelled when asked for.
    void watchReadiness(bool cancel);

    /// What stood there to be answered, in order.
    [[nodiscard]] QString shownTexts() const;

    /// The state of the recording and what is told of it.
    [[nodiscard]] QString savePage() const
    {
        return text("label_savestate") + ", " + text("label_savedetail");
    }

    /// The operator's next way to a picture: whatever runs is stopped, what is not connected is connected.
    void expectThatTheNextFlowWorks();

    int pictures = 0;

private:
    void lookForWait(bool cancel);

    QTimer m_looking;
    QString m_waitText;
};
