#include "tests/ui/mainwindow/mainwindowtest.h"

#include "ui/mainwindow/readinesswait.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QDialog>

/// A detector that is not ready yet.
class MainWindowReadiness : public MainWindowTest
{
protected:
    void openBusy()
    {
        openConnected();
        detector.link.answer(CommandFrame::readinessQuery(), hex("FFBB03AA00EB"));
    }

    void TearDown() override
    {
        EXPECT_EQ(m_done, m_toDo) << "the wait ended before something that was to happen in it";
        MainWindowTest::TearDown();
    }

    /// Done once, as soon as the wait has been seen by events.
    void duringWait(int delayMs, const std::function<void()> &action)
    {
        ++m_toDo;
        QTimer::singleShot(delayMs, window.get(), [this, action] {
            ++m_done;
            action();
        });
    }

    [[nodiscard]] QDialog *dialog() const
    {
        for (auto *found : window->findChildren<QDialog *>()) {
            if (found->windowTitle() == "Waiting for the detector" && found->isVisible())
                return found;
        }
        return nullptr;
    }

    void cancel()
    {
        ASSERT_NE(dialog(), nullptr);
        auto *found = dialog()->findChild<QPushButton *>();
        ASSERT_NE(found, nullptr);
        EXPECT_EQ(found->text(), "Cancel");
        QTest::mouseClick(found, Qt::LeftButton);
    }

    void expectConnectedAndIdle()
    {
        EXPECT_TRUE(looksIdle());
        EXPECT_TRUE(button("pushButton_sample")->isEnabled());
        EXPECT_EQ(button("pushButton_Connect")->text(), "Disconnect");
        EXPECT_EQ(detector.count(CommandFrame::startAcquisition()), 0);
        EXPECT_EQ(dialog(), nullptr);
        EXPECT_TRUE(boxes.isEmpty());
    }

private:
    int m_toDo = 0;
    int m_done = 0;
};

TEST_F(MainWindowReadiness, a_busy_detector_is_asked_once_a_second_while_the_window_handles_events)
{
    openBusy();
    int queries = 0;
    detector.link.setOnWrite([&](const QByteArray &frame) {
        if (frame == CommandFrame::readinessQuery() && ++queries == 2)
            detector.link.answer(frame, hex("FFBB03AA01EB"));
    });
    bool handledEvents = false;
    duringWait(300, [&] { handledEvents = true; });
    QElapsedTimer clock;
    clock.start();
    click("pushButton_sample");
    EXPECT_TRUE(looksRunning());
    EXPECT_TRUE(handledEvents);
    EXPECT_EQ(queries, 3);
    EXPECT_GE(clock.elapsed(), 2000);
}

TEST_F(MainWindowReadiness, cancel_ends_the_wait_without_a_message)
{
    openBusy();
    QTimer looking;
    qint64 shownAfter = 0;
    QElapsedTimer clock;
    QObject::connect(&looking, &QTimer::timeout, window.get(), [&] {
        if (dialog() == nullptr)
            return;
        shownAfter = clock.elapsed();
        looking.stop();
        cancel();
    });
    looking.start(20);
    clock.start();
    click("pushButton_sample");
    EXPECT_GE(shownAfter, 2000);
    EXPECT_LT(clock.elapsed(), shownAfter + 5000);
    expectConnectedAndIdle();

    detector.link.answer(CommandFrame::readinessQuery(), hex("FFBB03AA01EB"));
    click("pushButton_sample");
    EXPECT_TRUE(looksRunning());
}

TEST_F(MainWindowReadiness, the_window_takes_no_input_meanwhile)
{
    openBusy();
    duringWait(300, [this] {
        click("pushButton_Connect");
        QTest::keyClick(find<QLineEdit>("lineEdit_savename"), Qt::Key_A);
        click("checkBox_picture");
    });
    duringWait(500, [this] { window->close(); });
    click("pushButton_sample");
    EXPECT_EQ(button("pushButton_Connect")->text(), "Disconnect");
    EXPECT_EQ(find<QLineEdit>("lineEdit_savename")->text(), "");
    EXPECT_FALSE(find<QCheckBox>("checkBox_picture")->isChecked());
}

TEST_F(MainWindowReadiness, removal_ends_the_wait_without_a_message)
{
    openBusy();
    duringWait(300, [this] {
        detector.link.serialNumbers.clear();
        ForwardLibrary::reportDeviceEvent(false);
    });
    click("pushButton_sample");
    EXPECT_EQ(button("pushButton_Connect")->text(), "Connect");
    EXPECT_TRUE(looksIdle());
    EXPECT_FALSE(detector.link.isOpen());
    EXPECT_EQ(detector.count(CommandFrame::readinessQuery()), 1);
    EXPECT_TRUE(boxes.isEmpty());
}

TEST_F(MainWindowReadiness, a_close_ends_the_wait_and_then_closes_without_a_question)
{
    openBusy();
    duringWait(300, [this] {
        QCloseEvent event; // by way of the system's window: a close from outside
        QCoreApplication::sendEvent(window->windowHandle(), &event);
        EXPECT_TRUE(window->isVisible()) << "the press on play is not through";
    });
    click("pushButton_sample");
    EXPECT_FALSE(window->isVisible());
    EXPECT_EQ(detector.count(CommandFrame::startAcquisition()), 0);
    EXPECT_TRUE(boxes.isEmpty());
}

TEST_F(MainWindowReadiness, the_charge_is_not_asked_for_in_between)
{
    openBusy();
    const auto before = detector.count(CommandFrame::levelQuery());
    duringWait(300, [this] { window->check_lower_computer_status(); });
    duringWait(500, [this] { window->close(); });
    click("pushButton_sample");
    EXPECT_EQ(detector.count(CommandFrame::levelQuery()), before);
}

TEST(ReadinessWaitEnd, leaves_no_rest)
{
    QWidget window;
    ReadinessWait wait(window);
    wait.end();
    QElapsedTimer clock;
    clock.start();
    EXPECT_FALSE(wait.rest());
    EXPECT_LT(clock.elapsed(), 1000);
}
