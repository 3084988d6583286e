#pragma once

#include "tests/soak/soakcounts.h"
#include "tests/ui/mainwindow/windowfixture.h"
#include "tools/recordingcheck.h"

#include <atomic>
#include <optional>

/// The operator's window on the virtual detector, with everything counted that comes in and goes out. What is
/// wrong is told by complain().
class SoakWindow : public WindowFixture
{
public:
    /// The states that there are: ui/mainwindow/mainwindow_state.cpp. Unknown is none of them.
    enum class State { Disconnected, Idle, Sampling, Stopping, Unknown };

    /// How long an operator waits at most, on a machine that has much else to do.
    static constexpr int patienceMs = 30000;

    using WindowFixture::boxes;
    using WindowFixture::button;
    using WindowFixture::find;
    using WindowFixture::goTo;
    using WindowFixture::ports;
    using WindowFixture::window;

    SoakWindow();

    /// Ends the window that there is, and makes another.
    void reopen();
    /// Closes the window as the program does, which asks nothing, looks at what it leaves, and takes it away.
    void endWindow();
    /// Writes the settings of the virtual detector, so many faults among them.
    void settle(const QByteArray &settings, int faults = 0);

    /// A press and release on a button; nothing when the operator could not press it.
    void press(const char *name);
    /// What is pressed in the engineering dialog, one button after the other, before it is closed.
    void pressInDialog(const QList<const char *> &buttons) { m_dialogPresses = buttons; }
    /// Whether the wait for a detector that is not ready is cancelled at once, or after some seconds.
    void setCancelsWait(bool cancels)
    {
        m_cancelsWait = cancels;
        m_waiting.invalidate();
    }
    /// Records so many frames, under a name that was not used before, unless a recording runs.
    void record(int frames, const RecordingForms &forms);

    [[nodiscard]] State state() const;
    /// Whether the link is in the state that the window shows.
    [[nodiscard]] bool agrees() const;
    [[nodiscard]] bool waitForState(State wanted);
    [[nodiscard]] bool waitForPictures(qint64 more, int timeoutMs = patienceMs);
    /// Whether every frame that was received was shown.
    [[nodiscard]] bool isShown() const { return m_received == m_shown; }

    /// Looks at what must hold between two actions.
    void check();

    [[nodiscard]] const SoakCounts &counts() const { return *m_counts; }
    [[nodiscard]] qint64 framesShown() const { return m_shownBefore + m_shown; }
    [[nodiscard]] qint64 recordings() const { return m_recordings; }
    [[nodiscard]] qint64 windows() const { return m_windows; }
    [[nodiscard]] qint64 faults() const { return m_faults; }
    [[nodiscard]] int complaints() const { return m_complaints; }
    /// What is done at the moment, for the complaints.
    void setContext(const QString &context) { m_context = context; }
    void complain(const QString &what);

protected:
    void TearDown() override;
    void TestBody() override {}

private:
    void count(const QImage &picture);
    void operate(QDialog *dialog);
    void lookForWait();
    void checkRecording();
    [[nodiscard]] QString recordingFault() const;

    const SoakCounts *m_counts = nullptr;
    std::atomic<qint64> m_received{0}; ///< frames of this window's link; the receive thread counts
    qint64 m_shown = 0;                ///< frames of this window
    qint64 m_shownBefore = 0;          ///< frames of the windows before
    qint64 m_recordings = 0;
    qint64 m_windows = 0;
    qint64 m_faults = 0;                                  ///< that the detector was told
    std::optional<RecordingCheck::Recording> m_recording; ///< that runs
    int m_shownWhileRecording = 0;
    QElapsedTimer m_stopping;
    QList<const char *> m_dialogPresses;
    bool m_cancelsWait = false;
    QTimer m_looks;          ///< for the dialog of that wait
    QElapsedTimer m_waiting; ///< for the detector, which is not ready
    QString m_context;
    int m_complaints = 0;
};
