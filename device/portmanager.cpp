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

constexpr quint8 latencyMs = 2;
constexpr quint32 transferSize = 65536;
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

PortManager::PortManager(std::shared_ptr<D2xx> driver) : m_driver(std::move(driver))
{
    log(QStringLiteral("串口初始化"));
}

PortManager::~PortManager()
{
    log(QStringLiteral("串口销毁"));
    if (m_receiveThread != nullptr) {
        m_paused = false;
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
    if (m_driver->createDeviceInfoList(&count) != Status::Ok) {
        qDebug() << QStringLiteral("获取串口列表失败");
        return {};
    }
    if (count == 0) {
        qDebug() << QStringLiteral("当前没有串口连接");
        return {};
    }
    std::vector<DeviceRecord> records(count);
    if (m_driver->getDeviceInfoList(records.data(), &count) != Status::Ok) {
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
    const Status status = m_driver->open(serialNumber.toUtf8().constData(), &handle);
    m_handle = handle;
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
    m_driver->resetDevice(m_handle);
    m_driver->setBitMode(m_handle, allDataLines, bitModeSyncFifo);
    m_driver->setLatencyTimer(m_handle, latencyMs);
    m_driver->setUsbParameters(m_handle, transferSize, transferSize);
    m_driver->setFlowControl(m_handle, flowRtsCts, 0, 0);
    m_driver->purge(m_handle, purgeBoth);
    m_driver->setTimeouts(m_handle, ioTimeoutMs, ioTimeoutMs);
}

void PortManager::closeDevice()
{
    // A loop that was cut off in mid-frame must not read the replies of the next connection.
    m_halted = true;
    if (m_handle == nullptr)
        return;
    log(QStringLiteral("串口关闭"));
    m_driver->close(m_handle.exchange(nullptr));
}

void PortManager::startReceive()
{
    m_stopRequested = false;
    m_restarted = true;
    m_halted = false;
    if (m_receiveThread != nullptr)
        m_paused = false;
    else
        startThread();
}

void PortManager::startThread()
{
    // Connected after the pipeline, so that it is told of a frame when the pipeline is through with it.
    m_frameCounter = std::make_unique<QObject>();
    connect(this, &PortManager::read_ready, m_frameCounter.get(), [this] { ++m_framesDone; });

    m_receiveThread = new QThread;
    moveToThread(m_receiveThread);
    connect(m_receiveThread, &QThread::started, this, &PortManager::receiveLoop);
    m_receiveThread->start(QThread::HighPriority);
}

void PortManager::receiveLoop()
{
    ReceiveLoop(*this).run();
}

void PortManager::pauseReceive()
{
    m_paused = true;
}

void PortManager::write(QByteArray bytes)
{
    writeTo(m_handle, bytes);
}

void PortManager::writeTo(Handle handle, const QByteArray &bytes)
{
    quint32 written = 0;
    m_driver->write(handle, bytes.constData(), static_cast<quint32>(bytes.size()), &written);
}

quint32 PortManager::bytesWaiting(Handle handle)
{
    quint32 rxBytes = 0;
    quint32 txBytes = 0;
    quint32 events = 0;
    const Status status = m_driver->getStatus(handle, &rxBytes, &txBytes, &events);
    // Without a status nothing counts as waiting: a pulled cable must not make the loop read for ever.
    return status == Status::Ok ? rxBytes : 0;
}

QByteArray PortManager::wait_for_read(int timeoutMs, int expectedBytes)
{
    QElapsedTimer timer;
    timer.start();
    QByteArray reply;
    while (timer.elapsed() < timeoutMs) {
        const quint32 waiting = bytesWaiting(m_handle);
        if (waiting == 0)
            continue;
        QByteArray bytes(static_cast<qsizetype>(waiting), Qt::Uninitialized);
        quint32 bytesRead = 0;
        if (m_driver->read(m_handle, bytes.data(), waiting, &bytesRead) != Status::Ok) {
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
