#include "streaming/framepublisher.h"

#include <QDateTime>
#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>

#include <zmq.hpp>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>

namespace {

constexpr int lookEveryMs = 100; ///< whether a wait shall go on
constexpr int protocolVersion = 1;
constexpr int rows = 1024;

/// A port alone is one of this machine.
std::string boundTo(const QString &endpoint)
{
    bool isPort = false;
    endpoint.toUShort(&isPort);
    return (isPort ? QStringLiteral("tcp://127.0.0.1:") + endpoint : endpoint).toStdString();
}

QByteArray packed(const QJsonObject &object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

} // namespace

/// Receivers of a stream that may lose frames say that they are there; those of the other are seen as
/// connections.
struct FramePublisher::Socket
{
    explicit Socket(const PublishOptions &options)
        : socket(context, options.mustArrive ? zmq::socket_type::push : zmq::socket_type::xpub)
    {
        socket.set(zmq::sockopt::sndhwm, queuedFrames);
        socket.set(zmq::sockopt::linger, 0); // end() waits
        if (!options.secretKey.isEmpty()) {
            socket.set(zmq::sockopt::curve_server, true);
            socket.set(zmq::sockopt::curve_secretkey, options.secretKey.toStdString());
        }
        hearsSubscriptions = !options.mustArrive;
        if (hearsSubscriptions)
            socket.set(zmq::sockopt::xpub_verboser, true); // each one's, and its going too
        else
            watchConnections();
        socket.bind(boundTo(options.endpoint));
    }
    ~Socket()
    {
        connections.close(); // or the context would wait for it
    }
    Q_DISABLE_COPY_MOVE(Socket)

    void watchConnections()
    {
        constexpr const char *place = "inproc://connections";
        constexpr int failed = ZMQ_EVENT_HANDSHAKE_FAILED_NO_DETAIL | ZMQ_EVENT_HANDSHAKE_FAILED_PROTOCOL |
                               ZMQ_EVENT_HANDSHAKE_FAILED_AUTH;
        zmq_socket_monitor(socket.handle(), place,
                           ZMQ_EVENT_HANDSHAKE_SUCCEEDED | ZMQ_EVENT_DISCONNECTED | failed);
        connections.connect(place);
    }

    /// Sends both parts, or none: where the second meets a receiver that has just gone, the first is taken
    /// back.
    bool trySend(const QByteArray &header, zmq::message_t &payload)
    {
        zmq::message_t begin(header.constData(), static_cast<std::size_t>(header.size()));
        return socket.send(begin, zmq::send_flags::dontwait | zmq::send_flags::sndmore).has_value() &&
               socket.send(payload, zmq::send_flags::dontwait).has_value();
    }

    /// Waits for `event` of a socket; a signal that comes is no reason to end.
    static void pollFor(zmq::socket_t &on, short event, int ms)
    {
        zmq::pollitem_t items[] = {{on.handle(), 0, event, 0}};
        try {
            zmq::poll(items, 1, std::chrono::milliseconds(ms));
        } catch (const zmq::error_t &error) {
            if (error.num() != EINTR)
                throw;
        }
    }

    /// Takes what came about receivers; waits `ms` for the first word.
    void countReceivers(int ms)
    {
        zmq::socket_t &told = hearsSubscriptions ? socket : connections;
        pollFor(told, ZMQ_POLLIN, ms);
        zmq::message_t message;
        while (told.recv(message, zmq::recv_flags::dontwait)) {
            if (hearsSubscriptions)
                receivers += !message.empty() && *message.data<char>() == 1 ? 1 : -1;
            else
                receivers += change(message);
            while (message.more())
                (void)told.recv(message);
        }
    }

    /// Who fails the handshake, for want of the key, is told of as failed and as gone, and was none.
    static int change(const zmq::message_t &message)
    {
        std::uint16_t event = 0;
        std::memcpy(&event, message.data(), std::min(sizeof event, message.size()));
        return event == ZMQ_EVENT_DISCONNECTED ? -1 : 1;
    }

    zmq::context_t context;
    zmq::socket_t socket;
    zmq::socket_t connections{context, zmq::socket_type::pair};
    bool hearsSubscriptions = false;
    int receivers = 0;
};

FramePublisher::FramePublisher(const PublishOptions &options, MayWait mayWait)
    : m_options(options), m_mayWait(std::move(mayWait))
{
    try {
        m_socket = std::make_unique<Socket>(options);
    } catch (const zmq::error_t &error) {
        fail(QStringLiteral("frames cannot be published at %1: %2")
                 .arg(options.endpoint, QString::fromLocal8Bit(error.what())));
    }
}

FramePublisher::~FramePublisher() = default;

QString FramePublisher::endpoint() const
{
    return m_socket == nullptr ? QString()
                               : QString::fromStdString(m_socket->socket.get(zmq::sockopt::last_endpoint));
}

bool FramePublisher::waitForReceivers()
{
    const auto areThere = [this](int ms) {
        m_socket->countReceivers(m_socket->receivers < m_options.receivers ? ms : 0);
        return m_socket->receivers >= m_options.receivers;
    };
    return m_socket != nullptr &&
           waitFor(areThere, QStringLiteral("fewer than %1 receivers came").arg(m_options.receivers),
                   m_options.timeoutMs);
}

bool FramePublisher::publish(const QByteArray &raw, std::span<const double> currents)
{
    if (m_socket == nullptr)
        return false;
    QJsonObject header = m_facts;
    header[QStringLiteral("version")] = protocolVersion;
    header[QStringLiteral("type")] = QStringLiteral("frame");
    header[QStringLiteral("frame")] = m_frames + 1;
    header[QStringLiteral("time")] = QDateTime::currentDateTimeUtc().toString(Qt::ISODateWithMs);
    header[QStringLiteral("dtype")] = QString::fromLatin1(m_options.raw ? ">u4" : "<f4");
    header[QStringLiteral("unit")] = QString::fromLatin1(m_options.raw ? "sample" : "nA");
    const qsizetype pixels = m_options.raw ? raw.size() / 4 : static_cast<qsizetype>(currents.size());
    header[QStringLiteral("shape")] = QJsonArray{rows, pixels / rows};
    zmq::message_t payload(static_cast<std::size_t>(pixels) * 4);
    if (m_options.raw)
        std::memcpy(payload.data(), raw.constData(), payload.size());
    else
        std::transform(currents.begin(), currents.end(), static_cast<float *>(payload.data()),
                       [](double current) { return static_cast<float>(current); });
    m_socket->countReceivers(0); // word of them must not pile up
    const QByteArray told = packed(header);
    const auto isSent = [&](int ms) {
        Socket::pollFor(m_socket->socket, ZMQ_POLLOUT, ms);
        return m_socket->trySend(told, payload);
    };
    if (!waitFor(isSent, QStringLiteral("no receiver took a frame"), m_options.timeoutMs))
        return false;
    ++m_frames;
    return true;
}

/// A receiver takes what was queued for it before it takes the end, and goes then: when all are gone, all is
/// taken. Copies may go to those who have one already, while another's queue is full: they are sent again
/// until nobody is there.
bool FramePublisher::end(int withinMs)
{
    if (m_socket == nullptr)
        return m_problem.isEmpty();
    QJsonObject header = m_facts;
    header[QStringLiteral("version")] = protocolVersion;
    header[QStringLiteral("type")] = QStringLiteral("end");
    header[QStringLiteral("frames")] = m_frames;
    const QByteArray told = packed(header);
    const auto areGone = [&](int ms) {
        const int copies = m_options.mustArrive ? m_socket->receivers : std::min(m_socket->receivers, 1);
        for (int copy = 0; copy < copies; ++copy) {
            zmq::message_t nothing;
            (void)m_socket->trySend(told, nothing);
        }
        m_socket->countReceivers(ms);
        return m_socket->receivers <= 0;
    };
    m_socket->countReceivers(m_frames > 0 ? lookEveryMs : 0); // who came a moment ago
    const bool isTaken = m_socket->receivers <= 0 ||
                         waitFor(areGone, QStringLiteral("the receivers did not take all frames"), withinMs);
    m_socket->socket.set(zmq::sockopt::linger, 0);
    m_socket.reset();
    if (!m_options.mustArrive)
        m_problem.clear();
    return isTaken || !m_options.mustArrive;
}

/// Looks again and again, each time for the milliseconds that the look is given.
bool FramePublisher::waitFor(const std::function<bool(int)> &isDone, const QString &missed, int withinMs)
{
    QElapsedTimer waited;
    waited.start();
    while (!isDone(lookEveryMs)) {
        if (m_mayWait && !m_mayWait())
            return fail(QStringLiteral("the wait for receivers was ended"));
        if (waited.hasExpired(withinMs))
            return fail(QStringLiteral("%1 within %2 s").arg(missed, QString::number(withinMs / 1000)));
    }
    return true;
}

bool FramePublisher::fail(const QString &problem)
{
    if (m_problem.isEmpty())
        m_problem = problem;
    return false;
}
