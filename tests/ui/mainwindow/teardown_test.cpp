#include "tests/ui/mainwindow/mainwindowtest.h"

#include <QCloseEvent>
#include <QFileDialog>
#include <QThread>

#include <thread>

/// The process is told to end while something stands before the window: that goes with it.
class MainWindowTearDown : public MainWindowTest
{
protected:
    /// As main() does it: every loop of events that runs is ended.
    void end()
    {
        if (m_ends++ > 0)
            return;
        window->close();
        QCoreApplication::exit();
    }

    void endWithDialog()
    {
        boxes.onDialog = [this](QDialog *dialog) {
            className = QString::fromLatin1(dialog->metaObject()->className());
            end();
        };
    }

    void expectGoneAfter(qsizetype halts)
    {
        EXPECT_GE(m_ends, 1) << "nothing stood there";
        EXPECT_FALSE(window->isVisible());
        const QString log = finalLog();
        EXPECT_EQ(detector.count(CommandFrame::haltAcquisition()), halts);
        EXPECT_FALSE(detector.link.isOpen());
        EXPECT_TRUE(log.endsWith(QStringLiteral("日志线程结束\n"))) << qPrintable(log.right(200));
    }

    QString className;

private:
    int m_ends = 0;
};

TEST_F(MainWindowTearDown, the_engineering_dialog_goes_with_the_window_while_images_stream)
{
    openSampling("DebugMode=true\n");
    showFrames(1);
    endWithDialog();
    click("pushButton_develop");
    EXPECT_EQ(className, QStringLiteral("developwindow"));
    expectGoneAfter(1);
}

TEST_F(MainWindowTearDown, the_choice_of_a_folder_goes_with_the_window_while_images_stream)
{
    openSampling();
    showFrames(1);
    endWithDialog();
    click("pushButton_savepath");
    EXPECT_EQ(className, QStringLiteral("QFileDialog"));
    expectGoneAfter(1);
}

TEST_F(MainWindowTearDown, a_question_goes_with_the_window_while_images_stream)
{
    openSampling();
    showFrames(1);
    boxes.onBox = [this] {
        end();
    };
    QCloseEvent event;
    QCoreApplication::sendEvent(window->windowHandle(), &event);
    ASSERT_EQ(boxes.boxes().size(), 1);
    EXPECT_EQ(boxes.last().title, "Warning");
    expectGoneAfter(1);
}

TEST_F(MainWindowTearDown, an_end_that_is_asked_for_while_a_reply_is_awaited_comes_when_the_wait_is_over)
{
    openConnected();
    detector.answerParameters('\x10', {});
    detector.link.clearWritten();
    std::jthread asking([this](const std::stop_token &stopped) {
        while (detector.link.writes() == 0 && !stopped.stop_requested())
            QThread::yieldCurrentThread();
        QMetaObject::invokeMethod(
            window.get(), [this] { end(); }, Qt::QueuedConnection);
    });
    boxes.onBox = [this] {
        EXPECT_TRUE(QTest::qWaitFor([this] { return !window->isVisible(); }, 10000));
    };
    click("pushButton_set");
    EXPECT_EQ(boxes.last().text, "set time sequence fail");
    expectGoneAfter(0);
}
