#include "tests/ui/mainwindow/mainwindowtest.h"

#include <QDialog>
#include <QGuiApplication>
#include <QThread>

/// The pointer while the window waits for the detector.
class MainWindowWaitCursor : public MainWindowTest
{
protected:
    static bool isWaiting()
    {
        const QCursor *cursor = QGuiApplication::overrideCursor();
        return cursor != nullptr && cursor->shape() == Qt::WaitCursor;
    }

    /// From now on keeps what was written on the window's thread without the waiting cursor.
    void watch()
    {
        detector.link.setOnWrite([this, gui = QThread::currentThread()](const QByteArray &bytes) {
            if (QThread::currentThread() != gui)
                return;
            ++written;
            if (!isWaiting())
                unannounced << hexText(bytes);
            if (bytes.startsWith(hex("FFAA01")))
                detector.link.push(hex("FFBB01000DEB"));
        });
        boxes.onBox = [this] {
            EXPECT_FALSE(isWaiting()) << "a box is there to be pressed";
            ++seenBoxes;
        };
    }

    void expectAnnounced(int atLeast)
    {
        EXPECT_GE(written, atLeast);
        EXPECT_TRUE(unannounced.isEmpty()) << qPrintable(unannounced.join(' '));
        EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr) << "not restored";
        written = 0;
    }

    int written = 0;
    int seenBoxes = 0;
    QByteArrayList unannounced;
};

TEST_F(MainWindowWaitCursor, shows_during_connect_start_and_download_and_is_gone_afterwards)
{
    open("DebugMode=true\n");
    watch();
    click("pushButton_Connect");
    expectAnnounced(1);
    click("testImage2");
    click("pushButton_set");
    EXPECT_EQ(boxes.last().text, "set success");
    expectAnnounced(3);
    unannounced.clear();
    click("pushButton_sample");
    ASSERT_TRUE(looksRunning());
    // The first block is asked for without waiting for it.
    unannounced.removeAll(hexText(CommandFrame::blockRequest(0)));
    expectAnnounced(3);
    click("pushButton_Connect"); // refused while it runs
    EXPECT_EQ(seenBoxes, 2);
}

TEST_F(MainWindowWaitCursor, is_gone_after_failures_and_never_stands_over_their_boxes)
{
    openConnected("DebugMode=true\n");
    watch();
    click("testImage1");
    detector.link.answer(CommandFrame::testPattern(1), hex("FFBB03000DEB"));
    click("pushButton_sample");
    EXPECT_EQ(boxes.last().text, "test failed");
    expectAnnounced(1);
    click("testImage1");
    detector.link.answer(CommandFrame::startAcquisition(), hex("FFBB03000DEB"));
    click("pushButton_sample");
    EXPECT_EQ(boxes.last().text, "Play failed");
    expectAnnounced(2);
    EXPECT_EQ(seenBoxes, 2);
}

TEST_F(MainWindowWaitCursor, shows_while_the_stop_is_confirmed_and_is_gone_afterwards)
{
    openSampling();
    showFrames(1);
    ASSERT_TRUE(QTest::qWaitFor([this] { return detector.owesBlock(); }, 10000));
    watch();
    click("pushButton_sample");
    detector.pushBlock();
    ASSERT_TRUE(QTest::qWaitFor([this] { return looksIdle(); }, 10000));
    expectAnnounced(1); // the charge is asked for
}

TEST_F(MainWindowWaitCursor, shows_during_the_read_backs)
{
    openConnected("DebugMode=true\n");
    watch();
    boxes.onDialog = [this](QDialog *dialog) {
        boxes.onDialog = {};
        for (const char *name : {"pushButton_ver_readback", "pushButton_set_mode"})
            getChild<QPushButton>(*dialog, name)->click();
        dialog->reject();
    };
    click("pushButton_develop");
    expectAnnounced(2);
}

TEST_F(MainWindowWaitCursor, is_taken_away_while_a_detector_that_is_not_ready_is_waited_for)
{
    openConnected();
    detector.link.answer(CommandFrame::readinessQuery(), hex("FFBB03AA00EB"));
    watch();
    bool restedWith = true;
    QTimer::singleShot(300, window.get(), [&] {
        restedWith = isWaiting();
        window->close();
    });
    click("pushButton_sample");
    EXPECT_FALSE(restedWith) << "the dialog's button is there to be pressed";
    expectAnnounced(1);
}
