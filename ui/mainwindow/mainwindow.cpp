#include "ui/mainwindow.h"

#include "device/devicewatcher.h"
#include "device/portmanager.h"
#include "log/logmanager.h"
#include "ui/chrome/screenroom.h"
#include "ui/chrome/wheelguard.h"
#include "ui/developwindow.h"
#include "ui/mainwindow/compactlayouts.h"
#include "ui/mainwindow/mainwindow_rules.h"
#include "ui/mainwindow/readinesswait.h"
#include "ui/voltagedetails.h"
#include "ui_mainwindow.h"

#include <QEvent>
#include <QIntValidator>
#include <QLineEdit>
#include <QPushButton>
#include <QResizeEvent>
#include <QScopeGuard>
#include <QScreen>

#ifdef Q_OS_WIN
#include "ui/mainwindow/devicemessages.h"

#include <qt_windows.h>
#endif

#include <array>

namespace {

constexpr qsizetype navigationRows = 5;

struct NavigationItem
{
    const char *text;
    const char *idleIcon;
    const char *selectedIcon;
};

constexpr std::array<NavigationItem, navigationRows> navigation{{
    {"System", ":/image/image_resource/control_1.png", ":/image/image_resource/control_2.png"},
    {"Settings", ":/image/image_resource/current_1.png", ":/image/image_resource/current_2.png"},
    {"Display", ":/image/image_resource/calibration_1.png", ":/image/image_resource/calibration_2.png"},
    {"Save", ":/image/image_resource/save_table.png", ":/image/image_resource/save_table_1.png"},
    {"About", ":/image/image_resource/about_1.png", ":/image/image_resource/about_2.png"},
}};

/// The same picture for a selected item too: the toolkit would tint it otherwise.
QIcon navigationIcon(const char *fileName)
{
    QIcon icon;
    icon.addFile(QString::fromLatin1(fileName), QSize(), QIcon::Normal);
    icon.addFile(QString::fromLatin1(fileName), QSize(), QIcon::Selected);
    return icon;
}

} // namespace

mainwindow::mainwindow(QWidget *parent) : QMainWindow(parent), ui(std::make_unique<Ui::mainwindow>())
{
    ui->setupUi(this);
    m_layouts = std::make_unique<CompactLayouts>(*ui);
    resize(size().boundedTo(screen()->availableSize()));

    ui->label_window_icon->setPixmap(QPixmap(QStringLiteral(":/image/image_resource/logo.ico")));
    ui->frame_orvane->setRatio(847, 209);
    buildNavigation();
    createServices();
    connectPipeline();
    m_fpsTimer.start();
    buildFrameCountBox();
    connectManual();
    buildInspectorEntry();
    applySettings();
    buildShortcuts();
    new WheelGuard(*this);
    m_link->listDevices();
    fillPortList(m_link->detectors(), m_link->otherBridges());
}

mainwindow::~mainwindow()
{
    leave();
    closeInspector(); // it looks at the pipeline's frames
    if (m_settingsCheckDue)
        checkSettings();
    // The pipeline and the link write to the log: the log goes last.
    m_deviceWatcher.reset();
    m_layouts.reset();
    ui.reset();
    m_process.reset();
    PortManager::destroyInstance();
    m_link = nullptr;
    LogManager::destroyInstance();
}

void mainwindow::resizeEvent(QResizeEvent *event)
{
    QMainWindow::resizeEvent(event);
    if (m_layouts)
        m_layouts->fit(event->size());
}

void mainwindow::buildNavigation()
{
    for (const NavigationItem &entry : navigation) {
        auto *item = new QListWidgetItem(navigationIcon(entry.idleIcon), entry.text, ui->listWidget);
        QFont font = item->font();
        font.setWeight(QFont::Bold);
        item->setFont(font);
    }
    ui->listWidget->setCurrentRow(0);
    updateNavigationIcons();
    connect(ui->listWidget, &QListWidget::currentRowChanged, ui->stackedWidget,
            &QStackedWidget::setCurrentIndex);
    connect(ui->listWidget, &QListWidget::itemSelectionChanged, this, &mainwindow::updateNavigationIcons);
}

void mainwindow::updateNavigationIcons()
{
    // A press beside the items takes the selection away, but the page stays, and so does its mark.
    if (ui->listWidget->selectedItems().isEmpty()) {
        ui->listWidget->currentItem()->setSelected(true);
        return;
    }
    for (qsizetype row = 0; row < navigationRows; ++row) {
        const NavigationItem &entry = navigation[static_cast<std::size_t>(row)];
        QListWidgetItem *item = ui->listWidget->item(static_cast<int>(row));
        item->setIcon(navigationIcon(item->isSelected() ? entry.selectedIcon : entry.idleIcon));
    }
}

void mainwindow::createServices()
{
    LogManager::createInstance();
    m_library = D2xxLibrary::load(value(QStringLiteral("D2xxLibrary"), QString()).toString());
    ui->textEdit->setPlainText(m_library.description());
    PortManager::setDriver(m_library.driver);
    PortManager::setDetectorNames(
        DetectorNames(value(QStringLiteral("DetectorNames"), QString()).toString()));
    PortManager::createInstance();
    m_link = PortManager::instance();
    LogManager::instance()->writeLog(m_library.provenance());
    m_deviceWatcher = std::make_unique<DeviceWatcher>(m_library.driver);
    connect(m_deviceWatcher.get(), &DeviceWatcher::arrived, this, &mainwindow::deviceArrived);
    connect(m_deviceWatcher.get(), &DeviceWatcher::removed, this, &mainwindow::deviceRemoved);
#ifdef Q_OS_WIN
    m_deviceMessages = new DeviceMessages(*this);
#endif
}

void mainwindow::connectPipeline()
{
    m_process = std::make_unique<ProcessImage>();
    m_process->setProvenance(m_library.provenance());
    connect(m_process.get(), &ProcessImage::sendImagetoMain, this, &mainwindow::receive_displayImage);
    connect(m_process.get(), &ProcessImage::errorOccurred, this, &mainwindow::receive_errorOccurred);
    connect(m_process.get(), &ProcessImage::saveMessage, this, &mainwindow::handleSaveMessage);
    connect(m_process.get(), &ProcessImage::caliMessage, this, &mainwindow::handleCaliMessage);
    connect(m_process.get(), &ProcessImage::setMaxSuccess, this, &mainwindow::handleSetMaxSuccess);
    connect(m_process.get(), &ProcessImage::setMinSuccess, this, &mainwindow::handleSetMinSuccess);
    connect(&m_statusTimer, &QTimer::timeout, this, &mainwindow::check_lower_computer_status);
    connect(ui->frame, &KeepRatioWidget::click_coor, this, &mainwindow::handleLabelClick);
    connect(m_link, &PortManager::stop, this, &mainwindow::handleStop);
    connect(m_link, &PortManager::interrupted, this, &mainwindow::showInterruption);
    connect(m_link, &PortManager::bytesLost, this, &mainwindow::showLosses);
    // Queued also when it is found out on this thread: the exchange that found it is under way.
    connect(m_link, &PortManager::lost, this, &mainwindow::giveUpLostDevice, Qt::QueuedConnection);
}

void mainwindow::buildFrameCountBox()
{
    auto *box = ui->comboBox_saveframes;
    box->addItems({QStringLiteral("1"), QStringLiteral("5"), QStringLiteral("30"), QStringLiteral("50"),
                   QStringLiteral("100"), QStringLiteral("500"), QStringLiteral("1000")});
    box->setCurrentIndex(0);
    box->setEditable(true);
    // The count is what was typed: not "100" completed from "10", and nothing is added to the list.
    box->setCompleter(nullptr);
    box->setInsertPolicy(QComboBox::NoInsert);
    box->lineEdit()->setPlaceholderText(box->placeholderText());
    box->lineEdit()->setAccessibleName(box->accessibleName());
    box->setValidator(new QIntValidator(1, 1000, box));
    connect(box, &QComboBox::editTextChanged, this, [box](const QString &text) {
        const QString clamped = MainWindowRules::clampedFrameCount(text);
        if (clamped != text)
            box->setEditText(clamped);
    });
}

void mainwindow::applySettings()
{
    const QString savePath = value(QStringLiteral("SavePath"), QString()).toString();
    m_process->setLogPath(savePath);
    showSavePath(savePath);
    connectSavePage();

    showBattery();

    ui->radioButton_optional_gear->hide();
    ui->widget_range->hide();
    ui->ImageProcess->hide();
    const bool debugMode = MainWindowRules::isSwitchedOn(value(QStringLiteral("DebugMode"), false));
    for (QPushButton *button : {ui->pushButton_develop, ui->testImage1, ui->testImage2, ui->testImage3,
                                ui->testImage4, ui->testImage5}) {
        if (!debugMode)
            button->hide();
    }
    ui->pushButton_full_on->hide();
    ui->pushButton_full_off->hide();

    // White, it can be read on the filled part only.
    ui->progressBar_cali->setTextVisible(false);
    connect(ui->progressBar_cali, &QProgressBar::valueChanged, ui->progressBar_cali,
            [bar = ui->progressBar_cali](int value) { bar->setTextVisible(value > 0); });
}

void mainwindow::on_pushButton_maxsize_clicked()
{
    if (isMaximized())
        showNormal();
    else
        showMaximized();
}

void mainwindow::on_pushButton_minimize_clicked()
{
    showMinimized();
}

void mainwindow::changeEvent(QEvent *event)
{
    // The title strip's double click and the desktop maximise too: the icon follows the window, not the
    // button.
    if (event->type() == QEvent::WindowStateChange && ui) {
        ui->pushButton_maxsize->setIcon(QIcon(isMaximized()
                                                  ? QStringLiteral(":/image/image_resource/Maximize-3.png")
                                                  : QStringLiteral(":/image/image_resource/Maximize-1.png")));
        squareCorners(isMaximized());
    }
    QMainWindow::changeEvent(event);
}

void mainwindow::squareCorners(bool square)
{
    constexpr char property[] = "squareCorners";
    if (ui->centralwidget->property(property).toBool() == square)
        return;
    ui->centralwidget->setProperty(property, square);
    // Style sheets look at properties only when they are set.
    ui->centralwidget->setStyleSheet(ui->centralwidget->styleSheet());
}

void mainwindow::on_pushButton_develop_clicked()
{
    const auto kept = qScopeGuard([this] { settingsWritten(); }); // which the dialog does as it goes
    developwindow dialog(&m_settings, this);
    m_developDialog = &dialog;
    const auto closed = qScopeGuard([this] { m_developDialog = nullptr; });
    showStateInDialog();
    ScreenRoom::keepWithin(dialog, ScreenRoom::of(dialog));
    dialog.exec();
}

void mainwindow::on_pushButton_voltinfo_clicked()
{
    VoltageDetails dialog(this);
    ScreenRoom::keepWithin(dialog, ScreenRoom::of(dialog));
    dialog.exec();
}

bool mainwindow::nativeEventFilter(const QByteArray &eventType, void *message, qintptr *result)
{
#ifdef Q_OS_WIN
    const auto *windowsMessage = static_cast<const MSG *>(message);
    const auto change = MainWindowRules::deviceChange(windowsMessage->message, windowsMessage->wParam);
    if (change != MainWindowRules::DeviceChange::None && m_deviceMessages->concern(message)) {
        if (change == MainWindowRules::DeviceChange::Arrival)
            deviceArrived();
        else
            deviceRemoved();
    }
#endif
    return nativeEvent(eventType, message, result);
}
