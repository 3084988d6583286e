#include "device/portmanager.h"

#include "d2xx/arguments.h"
#include "device/d2xxlibrary.h"
#include "device/receiveloop.h"
#include "log/logmanager.h"

#include <QDebug>
#include <QElapsedTimer>
#include <QThread>

#include <vector>

using namespace d2xx;

namespace {

constexpr quint32 ioTimeoutMs = 10;

PortManager *linkInstance = nullptr;

std::shared_ptr<D2xx> &nextDriver()
{
    static std::shared_ptr<D2xx> driver;
    return driver;
}

void log(const QString &message)
{
    LogManager::instance()->writeLog(message);
}

QString serialNumberOf(const DeviceRecord &record)
{
    const std::string_view text = textOf(record.serialNumber);
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

} // namespace

void PortManager::setDriver(std::shared_ptr<D2xx> driver)
{
    nextDriver() = std::move(driver);
}

void PortManager::createInstance()
{
    if (!nextDriver())
        nextDriver() = D2xxLibrary::load({}).driver;
    linkInstance = new PortManager(nextDriver());
}

void PortManager::destroyInstance()
{
    delete linkInstance;
    linkInstance = nullptr;
}

PortManager *PortManager::instance()
{
    return linkInstance;
}

PortManager::PortManager(std::shared_ptr<D2xx> driver) : m_state(std::move(driver))
{
    log(QStringLiteral("串口初始化"));
}

PortManager::~PortManager()
{
    log(QStringLiteral("串口销毁"));
    if (m_receiveThread != nullptr) {
        m_state.m_paused = false;
        m_receiveThread->requestInterruption();
        m_receiveThread->quit();
        m_receiveThread->wait();
        delete m_receiveThread;
        m_receiveThread = nullptr;
    }
    closeDevice();
}

QList<QString> PortManager::listDevices()
{
    quint32 count = 0;
    if (m_state.m_driver->createDeviceInfoList(&count) != Status::Ok) {
        qDebug() << QStringLiteral("获取串口列表失败");
        return {};
    }
    if (count == 0) {
        qDebug() << QStringLiteral("当前没有串口连接");
        return {};
    }
    std::vector<DeviceRecord> records(count);
    if (m_state.m_driver->getDeviceInfoList(records.data(), &count) != Status::Ok) {
        qDebug() << QStringLiteral("获取串口信息失败");
        return {};
    }
    // A device may have gone between the two calls; more than there is room for cannot have been filled in.
    records.resize(qMin(static_cast<std::size_t>(count), records.size()));

    m_portList.clear();
    for (const DeviceRecord &record : records) {
        const QString serialNumber = serialNumberOf(record);
        log(QStringLiteral("串口") + QString::number(m_portList.size()) + QStringLiteral(" = ") +
            serialNumber);
        m_portList.append(serialNumber);
    }
    return m_portList;
}

bool PortManager::openDevice(QString serialNumber)
{
    Handle handle = nullptr;
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
    ReceiveLoop(m_state, {.frame = onFrame, .halted = onHalted}).run();
}

/// The frame, and behind it in the GUI thread's queue of events the word that it is through: whoever is
/// connected, and since when.
void PortManager::handOn(const QByteArray &frame)
{
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
    while (timer.elapsed() < timeoutMs) {
        const quint32 waiting = m_state.bytesWaiting(m_state.m_handle);
        if (waiting == 0)
            continue;
        QByteArray bytes(static_cast<qsizetype>(waiting), Qt::Uninitialized);
        quint32 bytesRead = 0;
        if (m_state.m_driver->read(m_state.m_handle, bytes.data(), waiting, &bytesRead) != Status::Ok) {
            log(QStringLiteral("串口接收数据失败"));
            return reply;
        }
        bytes.truncate(static_cast<qsizetype>(bytesRead));
        reply += bytes.toHex().toUpper();
        if (reply.size() == 2 * static_cast<qsizetype>(expectedBytes)) {
            log(QStringLiteral("串口接收数据 = ") + QString::fromLatin1(reply));
            return reply;
        }
    }
    log(QStringLiteral("wait_for_read 接收数据超时"));
    return reply;
}
