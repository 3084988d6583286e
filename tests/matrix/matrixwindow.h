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
    static constexpr int slackSeconds = 20;

    void open(bool withOther = false)
    {
        settleVirtualDetector(folder, withOther ? "SerialNumbers=QV1K,SPARE\n" : "");
        openOn(LoadedLibrary::path().toUtf8(), "DebugMode=true\n");
        QObject::connect(&pipeline(), &ProcessImage::sendImagetoMain, window.get(), [this] { ++pictures; });
    }

    [[nodiscard]] bool isConnected() const { return button("pushButton_Connect")->text() == "Disconnect"; }
    [[nodiscard]] bool isSampling() const { return !button("pushButton_set")->isEnabled(); }

    /// The window stands there as it should, every button included.
    [[nodiscard]] bool is(State state) const;

    void waitForPictures(int more)
    {
        const int target = pictures + more;
        ASSERT_TRUE(QTest::qWaitFor([&] { return pictures >= target; }, slackSeconds * 1000)) << pictures;
    }

    void play()
    {
        click("pushButton_sample");
        ASSERT_TRUE(isSampling()) << "the acquisition does not run";
        waitForPictures(1);
    }

    void stop()
    {
        click("pushButton_sample");
        ASSERT_TRUE(QTest::qWaitFor([this] { return is(State::Idle); }, slackSeconds * 1000));
    }

    /// The operator's next way to a picture: whatever runs is stopped, what is not connected is connected.
    void expectThatTheNextFlowWorks();

    [[nodiscard]] QString boxTexts() const
    {
        QStringList texts;
        for (const MessageBoxes::Box &box : boxes.boxes())
            texts << box.text;
        return texts.join(QStringLiteral(" | "));
    }

    int pictures = 0;
};
