#pragma once

#include "tests/support/patience.h"

#include <QByteArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QString>

#include <zmq.hpp>

#include <optional>
#include <span>

/// Somebody on another machine who receives frames.
class Receiver
{
public:
    struct Message
    {
        QJsonObject header;
        QByteArray payload;

        [[nodiscard]] int frame() const { return header[QStringLiteral("frame")].toInt(); }
        [[nodiscard]] bool isEnd() const { return header[QStringLiteral("type")] == QLatin1String("end"); }
        [[nodiscard]] std::span<const float> currents() const
        {
            return {reinterpret_cast<const float *>(payload.constData()),
                    static_cast<std::size_t>(payload.size()) / sizeof(float)};
        }
    };

    /// Everything that is published (`sub`), or a share of it (`pull`). Keeps one message that was not asked
    /// for yet.
    explicit Receiver(zmq::socket_type type) : socket(context, type)
    {
        socket.set(zmq::sockopt::rcvhwm, 1);
        socket.set(zmq::sockopt::rcvtimeo, patienceMs);
        if (type == zmq::socket_type::sub)
            socket.set(zmq::sockopt::subscribe, "");
    }

    void connect(const QString &endpoint) { socket.connect(endpoint.toStdString()); }

    /// The next message; none when none comes.
    std::optional<Message> next()
    {
        zmq::message_t header;
        zmq::message_t payload;
        if (!socket.recv(header) || !header.more() || !socket.recv(payload) || payload.more())
            return std::nullopt;
        return Message{QJsonDocument::fromJson(bytes(header)).object(), bytes(payload)};
    }

    zmq::context_t context;
    zmq::socket_t socket;

private:
    static QByteArray bytes(const zmq::message_t &message)
    {
        return {message.data<char>(), static_cast<qsizetype>(message.size())};
    }
};
