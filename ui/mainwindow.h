#pragma once

#include "device/d2xxlibrary.h"
#include "imaging/processimage.h"

#include <QAbstractNativeEventFilter>
#include <QElapsedTimer>
#include <QMainWindow>
#include <QMap>
#include <QPointer>
#include <QSettings>
#include <QTimer>

#include <functional>
#include <memory>
#include <optional>

class CompactLayouts;
class DeviceMessages;
class DeviceWatcher;
class PortManager;
class QAction;
class QPushButton;
class ReadinessWait;
class Inspector;
class developwindow;

namespace CurrentRange {
struct Gear;
}

namespace Ui {
class mainwindow;
}

/// The program's window and its controller: connects to the detector, starts and stops the acquisition,
/// shows every picture with its frame rate, downloads the settings, calibrates and records.
///
/// Owns the settings file "./config.ini" and the image pipeline, and makes and ends the log and the link.
/// Everything runs on the GUI thread. An exchange with the detector blocks it for its time-out at most. A
/// press on play asks until the detector says that it is ready, and handles events in between. To be
/// installed as the application's native event filter.
///
/// However it closes, a recording ends as by a stop and a detector that runs is told to halt.
class mainwindow : public QMainWindow, public QAbstractNativeEventFilter
{
    Q_OBJECT

public:
    explicit mainwindow(QWidget *parent = nullptr);
    /// Ends the receive thread and the log; waits for both, about a second, and for what a recording still
    /// has to bring to the disk. When a call of the driver library hangs, 4 s more.
    ~mainwindow() override;
    Q_DISABLE_COPY_MOVE(mainwindow)

    /// For a close that comes from outside: asks the operator while an acquisition or a recording runs.
    [[nodiscard]] bool agreesToClose();

    /// Sees the device-change messages of Windows; handles no message for good.
    bool nativeEventFilter(const QByteArray &eventType, void *message, qintptr *result) override;

public Q_SLOTS:
    void on_pushButton_close_clicked();
    void on_pushButton_maxsize_clicked();
    void on_pushButton_minimize_clicked();
    void on_pushButton_Connect_clicked();
    void on_pushButton_savepath_clicked();
    void on_pushButton_develop_clicked();
    void on_pushButton_save_clicked();
    /// Downloads timing, ADC and voltages; blocks for up to 2 s a packet.
    void on_pushButton_set_clicked();
    /// Shows a finished picture, its frame rate and the current of the pixel clicked last.
    void receive_displayImage(QImage displayImage);
    void handleSetMaxSuccess();
    /// `index` frames of the recording are stored.
    void handleSaveMessage(int index);
    /// `index` frames of the calibration capture are taken.
    void handleCaliMessage(int index);
    /// Takes a click at image coordinates 0 to 1023.
    void handleLabelClick(int x, int y);
    void handleSetMinSuccess();
    /// The detector was told to halt; blocks for up to 4 s for its answers. Nothing when no device is
    /// connected any more.
    void handleStop();
    void receive_errorOccurred(errormessage error);
    void on_pushButton_mirrorHorizontal_clicked();
    void on_pushButton_mirrorVertical_clicked();
    void on_pushButton_rotate_clicked();
    void on_pushButton_full_off_clicked();
    void on_pushButton_full_on_clicked();
    void on_pushButton_cali_clicked();
    /// Asks for the battery charge, 500 ms at most, and shows it; without an answer nothing changes.
    void check_lower_computer_status();
    void on_pushButton_voltinfo_clicked();
    /// Starts the acquisition, or asks for its stop. Returns when the detector runs, or when the wait for its
    /// readiness was ended.
    void on_pushButton_sample_clicked();

protected:
    void changeEvent(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    /// A close by the system asks first while an acquisition or a recording runs.
    void closeEvent(QCloseEvent *event) override;

private:
    friend class MainWindowInspector; // what the tests look at

    // Settings: the only way to them. A hand edit of the file is seen at the next read.
    [[nodiscard]] QVariant value(const QString &key, const QVariant &defaultValue);
    void setValue(const QString &key, const QVariant &newValue);
    /// Something was written: looks whether the file took it, once in the next turn of the event loop.
    void settingsWritten();
    /// Tells, once, in the log and on the System page, that the file cannot be written.
    void checkSettings();

    // Construction
    void buildNavigation();
    void updateNavigationIcons();
    /// A maximised window has square corners: behind round ones the desktop would show.
    void squareCorners(bool square);
    void createServices();
    void connectPipeline();
    void buildFrameCountBox();
    void buildShortcuts();
    /// As by its entry in the list, and on to its first field.
    void goToPage(int row);
    void applySettings();

    // Link
    void connectDevice();
    void disconnectDevice();
    void fillPortList(const QStringList &detectors, const QStringList &others);
    /// Those of the last list, unless it could not be had.
    void showListedPorts();
    void deviceArrived();
    void deviceRemoved();
    /// Something that talks with the detector. A device that is lost meanwhile is given up when the outermost
    /// of them is through, and has shown what it has to show.
    void runFlow(const std::function<void()> &flow);
    void giveUpLostDevice();

    // What is told beside the required texts
    enum class SystemNote { Link, Stream, Settings };
    /// A paragraph of the System page below the driver library's; an empty text takes it away.
    void setSystemNote(SystemNote note, const QString &text);
    /// While the stream is silent.
    void showInterruption(bool isInterrupted);
    /// Until the next start.
    void showLosses(quint32 times);
    /// A sign at the frame rate and a paragraph of the System page; an empty text takes them away.
    void showStreamNotes();

    // Leaving
    [[nodiscard]] bool confirmsExit();
    void leave();

    // States: the only ways from one to the other
    [[nodiscard]] bool isConnected() const;
    void startStatusTimer();
    /// The battery's tool tip: the charge told last, or that there is none to tell.
    void showBattery();
    void enterConnected();
    /// Closes the device; ends an acquisition that runs.
    void enterDisconnected();
    void enterSampling();
    /// Asks the receive thread to halt the detector.
    void enterStopping();
    /// Connected, and the acquisition has ended.
    void enterIdle();
    void leaveSampling(const char *playStyle);
    void endRecording();
    /// The engineering dialog, when it is open, follows the state.
    void showStateInDialog();
    void setPlayLook(const QString &icon, const char *style);

    // Acquisition
    void startAcquisition();
    [[nodiscard]] bool requestTestPattern();
    [[nodiscard]] bool waitUntilReady();
    [[nodiscard]] bool startDetector();
    void endSamplePress();

    // Manual
    void connectManual();
    /// What speaks against it is told on the About page, which comes to the front then.
    void openManual();

    // Settings page
    /// The range of the checked button; null when none is.
    [[nodiscard]] const CurrentRange::Gear *chosenGear() const;
    /// False after a message, when the detector did not acknowledge the packet.
    [[nodiscard]] bool download(const QByteArray &packet, const QString &failure);
    /// Keeps the timing sequence where the developer window shows it, unscaled; returns its packet.
    [[nodiscard]] QByteArray storeTiming(int integrationTime);
    [[nodiscard]] QByteArray adcPacket();
    [[nodiscard]] QByteArray voltagePacket();

    // Display
    /// As it lies now: each call turns and mirrors the picture that was shown last.
    void showPicture();
    void updateCurrentReadout();

    // Inspector
    /// The picture's menu, and the key.
    void buildInspectorEntry();
    /// One at most: to the front when it is open.
    void openInspector();
    /// Waits for what it is working out, some 50 ms at most.
    void closeInspector();

    // Calibration
    /// One button's press starts or abandons its capture; `other` says that the opposite one runs.
    void switchCapture(QPushButton *button, bool &flag, bool other, std::vector<double> &reference,
                       double fill);

    // Save page
    /// `path`: as the settings have it, empty for the default folder.
    void showSavePath(const QString &path);
    void openRecordingFolder();
    [[nodiscard]] QString parameterSummary() const;
    void connectSavePage();
    /// Three forms of a recording in the picture's context menu; they hold for the next one.
    void buildFormatMenu();
    /// Those of the save page and of that menu.
    [[nodiscard]] RecordingForms chosenForms() const;
    /// As the pages show it now.
    [[nodiscard]] RecordingFacts recordingFacts();
    /// What was sent last, or is kept by the engineering dialog; nothing unless it is all there.
    [[nodiscard]] std::optional<Timing> keptTiming();
    /// Beside the recording's state, how much of it is stored; what failed is its tool tip too.
    void showRecordingResult();
    /// The same place between two recordings: what a press on save would do that may not be meant.
    void showRecordingHint();

    qint32 m_isSampling = 0; ///< 1 while the acquisition runs
    double m_rotation = 0.0; ///< degrees, of every picture shown
    bool m_mirrorH = false;
    bool m_mirrorV = false;
    QImage m_picture;    ///< shown last, as it came: neither turned nor mirrored
    qint32 m_clickX = 0; ///< image coordinates clicked last
    qint32 m_clickY = 0;
    std::unique_ptr<ProcessImage> m_process;
    QTimer m_statusTimer;              ///< asks for the battery charge while connected and idle
    std::optional<int> m_batteryLevel; ///< percent; none before the first answer of a connection
    QElapsedTimer m_fpsTimer;          ///< since the picture before
    qint64 m_frameCount = 0;           ///< pictures shown since the acquisition started
    qint64 m_elapsedMs = 0;            ///< time over those pictures
    QSettings m_settings{QStringLiteral("./config.ini"), QSettings::IniFormat};
    bool m_settingsCheckDue = false;
    bool m_settingsFailureTold = false;
    std::unique_ptr<Ui::mainwindow> ui;
    std::unique_ptr<CompactLayouts> m_layouts;
    D2xxLibrary m_library;         ///< as it was loaded at the start
    PortManager *m_link = nullptr; ///< the one link of the process, which this window makes and ends
    std::unique_ptr<DeviceWatcher> m_deviceWatcher;
    DeviceMessages *m_deviceMessages = nullptr; ///< the window's child; on Windows
    QMap<SystemNote, QString> m_systemNotes;
    QString m_serialNumber;          ///< of the detector that was connected last
    QAction *m_recordTiff = nullptr; ///< these three are the picture's
    QAction *m_recordNpy = nullptr;
    QAction *m_recordRaw = nullptr;
    QStringList m_manualFolders; ///< where it is looked for
    QString m_interruption;      ///< what is told of the stream
    QString m_losses;
    int m_flows = 0; ///< that are under way, one within the other
    std::unique_ptr<ReadinessWait> m_readinessWait;
    bool m_closeAfterWait = false;
    quint32 m_lossCount = 0;         ///< how often the bridge lost data in this acquisition or the last
    QPointer<Inspector> m_inspector; ///< while it is open
    developwindow *m_developDialog = nullptr; ///< while it is open
};
