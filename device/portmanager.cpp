#include "device/portmanager.h"

#include "d2xx/arguments.h"
#include "device/d2xxlibrary.h"
#include "device/protocol/commandframes.h"
#include "device/receiveloop.h"
#include "log/logmanager.h"

#include <QDebug>
#include <QElapsedTimer>
#include <QThread>

#include <utility>
#include <vector>

using namespace d2xx;

namespace {

constexpr quint32 ioTimeoutMs = 10;
constexpr int threadLimitMs = 2000;
constexpr int dropLimitMs = 500;
constexpr unsigned long dropPauseMs = 1;

/// More devices are not shown.
constexpr std::size_t longestList = 64;
/// What a driver library may fill in: it knows no limit of ours.
constexpr std::size_t mostRecords = 4096;

PortManager *linkInstance = nullptr;

std::shared_ptr<D2xx> &nextDriver()
{
    static std::shared_ptr<D2xx> driver;
    return driver;
}

DetectorNames &nextDetectorNames()
{
    static DetectorNames names;
    return names;
}

/// Links whose thread hangs in a call of the library: when the call comes back, the thread still uses its
/// link.
std::vector<PortManager *> &leftBehind()
{
    static auto *links = new std::vector<PortManager *>; // never deleted: their threads may outlive main()
    return *links;
}

void log(const QString &message)
{
    LogManager::instance()->writeLog(message);
}

void logReason(const QString &reason)
{
    if (!reason.isEmpty())
        log(QStringLiteral("原因：") + reason);
}

/// The text in a field of a record.
template <std::size_t size>
QString textIn(const char (&field)[size])
{
    const std::string_view text = textOf(field);
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

} // namespace

void PortManager::setDriver(std::shared_ptr<D2xx> driver)
{
    nextDriver() = std::move(driver);
}

void PortManager::setDetectorNames(const DetectorNames &names)
{
    nextDetectorNames() = names;
}

void PortManager::createInstance()
{
    if (!nextDriver())
        nextDriver() = D2xxLibrary::load({}).driver;
    linkInstance = new PortManager(nextDriver(), nextDetectorNames());
}

void PortManager::destroyInstance()
{
    PortManager *link = std::exchange(linkInstance, nullptr);
    if (link == nullptr)
        return;
    if (link->end())
        delete link;
    else
        leftBehind().push_back(link);
}

PortManager *PortManager::instance()
{
    return linkInstance;
}

PortManager::PortManager(std::shared_ptr<D2xx> driver, DetectorNames detectorNames)
    : m_state(std::move(driver)), m_detectorNames(std::move(detectorNames))
{
    log(QStringLiteral("串口初始化"));
}

PortManager::~PortManager() = default;

bool PortManager::end()
{
    log(QStringLiteral("串口销毁"));
    bool ended = true;
    if (m_receiveThread != nullptr) {
        m_state.m_paused = false;
        m_receiveThread->requestInterruption();
        m_receiveThread->quit();
        ended = m_receiveThread->wait(QDeadlineTimer(threadLimitMs));
        if (ended)
            delete std::exchange(m_receiveThread, nullptr);
        else
            log(QStringLiteral("串口接收线程未结束"));
    }
    closeDevice();
    return ended;
}

QList<QString> PortManager::listDevices()
{
    m_bridges.clear();
    m_isListed = false;
    quint32 count = 0;
    if (m_state.m_driver->createDeviceInfoList(&count) != Status::Ok) {
        qDebug().noquote() << QStringLiteral("获取串口列表失败");
        return {};
    }
    m_isListed = count == 0;
    if (m_isListed) {
        qDebug().noquote() << QStringLiteral("当前没有串口连接");
        return {};
    }
    std::vector<DeviceRecord> records(qMin(std::size_t{count}, mostRecords));
    count = static_cast<quint32>(records.size());
    if (m_state.m_driver->getDeviceInfoList(records.data(), &count) != Status::Ok) {
        qDebug().noquote() << QStringLiteral("获取串口信息失败");
        return {};
    }
    m_isListed = true;
    // A device may have gone between the two calls; more than there is room for cannot have been filled in.
    records.resize(qMin(std::size_t{count}, qMin(records.size(), longestList)));

    QList<QString> ports;
    for (const DeviceRecord &record : records) {
        const AttachedBridge bridge{.serialNumber = textIn(record.serialNumber),
                                    .description = textIn(record.description),
                                    .isDetector = !m_state.m_driver->listsAllBridges() ||
                                                  m_detectorNames.include(record),
                                    .isOpen = (record.flags & flagOpened) != 0};
        log(QStringLiteral("串口") + QString::number(m_bridges.size()) + QStringLiteral(" = ") +
            bridge.serialNumber + (bridge.isDetector ? QString() : QStringLiteral("（非探测器）")));
        m_bridges.append(bridge);
        ports.append(bridge.serialNumber);
    }
    return ports;
}

QStringList PortManager::serialNumbers(bool ofDetectors) const
{
    QStringList numbers;
    for (const AttachedBridge &bridge : m_bridges) {
        if (bridge.isDetector == ofDetectors)
            numbers << bridge.serialNumber;
    }
    return numbers;
}

bool PortManager::openDevice(QString serialNumber)
{
    settle();
    m_state.m_lost = false;
    Handle handle = m_state.m_handle; // the library may leave it as it is
    const Status status = m_state.m_driver->open(serialNumber.toUtf8().constData(), &handle);
    m_state.m_handle = handle;
    if (status == Status::Ok) {
        configureDevice();
        log(QStringLiteral("串口连接配置成功"));
        return true;
    }
    log(QStringLiteral("串口连接失败"));
    if (status == Status::DeviceNotOpened)
        log(QStringLiteral("设备未开启"));
    logReason(problem());
    return false;
}

void PortManager::configureDevice()
{
    m_state.m_driver->resetDevice(m_state.m_handle);
    m_state.m_driver->setBitMode(m_state.m_handle, allDataLines, bitModeSyncFifo);
    m_state.m_driver->setLatencyTimer(m_state.m_handle, shortestLatency);
    m_state.m_driver->setUsbParameters(m_state.m_handle, largestTransfer, largestTransfer);
    m_state.m_driver->setFlowControl(m_state.m_handle, flowRtsCts, 0, 0);
    m_state.m_driver->purge(m_state.m_handle, purgeBoth);
    m_state.m_driver->setTimeouts(m_state.m_handle, ioTimeoutMs, ioTimeoutMs);
}

void PortManager::closeDevice()
{
    settle();
    const Handle handle = m_state.close();
    if (handle == nullptr)
        return;
    log(QStringLiteral("串口关闭"));
    m_state.m_driver->close(handle);
}

void PortManager::startReceive()
{
    m_state.begin();
    if (m_receiveThread != nullptr)
        m_state.m_paused = false;
    else
        startThread();
}

void PortManager::startThread()
{
    m_frameCounter = std::make_unique<QObject>();
    m_receiveThread = new QThread;
    moveToThread(m_receiveThread);
    connect(m_receiveThread, &QThread::started, this, &PortManager::receiveLoop);
    m_receiveThread->start(QThread::HighPriority);
}

void PortManager::receiveLoop()
{
    const auto onFrame = [this](const QByteArray &frame) {
        handOn(frame);
    };
    const auto onHalted = [this] {
        Q_EMIT stop();
    };
    const auto onInterrupted = [this](bool isInterrupted) {
        Q_EMIT interrupted(isInterrupted);
    };
    const auto onBytesLost = [this](quint32 times) {
        Q_EMIT bytesLost(times);
    };
    const auto onLost = [this](Handle handle) {
        if (lose(handle))
            Q_EMIT lost();
    };
    ReceiveLoop(m_state, {onFrame, onHalted, onInterrupted, onBytesLost, onLost}).run();
}

/// The frame, and behind it in the GUI thread's queue of events the word that it is through: whoever is
/// connected, and since when.
void PortManager::handOn(const QByteArray &frame)
{
    ++m_state.m_framesHandedOn;
    Q_EMIT read_ready(frame);
    QMetaObject::invokeMethod(
        m_frameCounter.get(), [this] { ++m_state.m_framesDone; }, Qt::QueuedConnection);
}

void PortManager::pauseReceive()
{
    m_state.m_paused = true;
}

void PortManager::write(QByteArray bytes)
{
    m_state.write(m_state.m_handle, bytes);
}

QByteArray PortManager::wait_for_read(int timeoutMs, int expectedBytes)
{
    QElapsedTimer timer;
    timer.start();
    QByteArray reply;
    const Handle handle = m_state.m_handle;
    bool isDead = timeoutMs > 0;
    m_isSettled = false;
    while (timer.elapsed() < timeoutMs) {
        const std::optional<quint32> waiting = m_state.bytesWaiting(handle);
        isDead = isDead && !waiting;
        if (waiting.value_or(0) == 0)
            continue;
        const std::optional<QByteArray> bytes = readWaiting(*waiting);
        if (!bytes) {
            log(QStringLiteral("串口接收数据失败"));
            return reply;
        }
        reply += bytes->toHex().toUpper();
        if (reply.size() == 2 * static_cast<qsizetype>(expectedBytes)) {
            m_isSettled = true;
            log(QStringLiteral("串口接收数据 = ") + QString::fromLatin1(reply));
            return reply;
        }
    }
    log(QStringLiteral("wait_for_read 接收数据超时"));
    if (isDead && lose(handle))
        Q_EMIT lost();
    return reply;
}

std::optional<QByteArray> PortManager::readWaiting(quint32 waiting)
{
    QByteArray bytes(static_cast<qsizetype>(waiting), Qt::Uninitialized);
    const std::optional<quint32> bytesRead = m_state.read(m_state.m_handle, bytes.data(), waiting);
    if (!bytesRead)
        return std::nullopt;
    bytes.truncate(static_cast<qsizetype>(*bytesRead));
    return bytes;
}

void PortManager::dropWaiting(int durationMs)
{
    QElapsedTimer timer;
    timer.start();
    bool isEmpty = false;
    while (timer.elapsed() < (isEmpty ? durationMs : durationMs + dropLimitMs)) {
        const quint32 waiting = m_state.bytesWaiting(m_state.m_handle).value_or(0);
        isEmpty = waiting == 0 || readWaiting(waiting).value_or(QByteArray()).isEmpty();
        if (isEmpty)
            QThread::msleep(dropPauseMs);
    }
}

void PortManager::settle()
{
    m_isSettled = true;
    m_mayBeStreaming = false;
}

void PortManager::halt()
{
    m_state.m_stopRequested = true; // a pass that is under way requests no block behind the halt
    if (m_state.takeHalt())
        write(CommandFrame::haltAcquisition());
}

bool PortManager::checkLost()
{
    const Handle handle = m_state.m_handle;
    if (handle != nullptr && (!m_state.bytesWaiting(handle) || !m_state.m_driver->problem(handle).isEmpty()))
        lose(handle);
    return isLost();
}

/// True, with a line in the log, for the first to say so.
bool PortManager::lose(Handle handle)
{
    const bool isNews = m_state.lose(handle);
    if (!isNews)
        return false;
    log(QStringLiteral("设备连接丢失"));
    logReason(m_state.m_driver->problem(handle));
    return true;
}
