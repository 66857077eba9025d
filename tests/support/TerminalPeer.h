#pragma once

#include "protocol/Framing.h"
#include "support/Wait.h"

#include <QTcpSocket>

#include <deque>
#include <functional>
#include <optional>
#include <string>

namespace corvane::test {

// A bare terminal for talking to a host: sends requests and gathers what comes back with the
// terminal's own PacketReceiver.
class TerminalPeer {
public:
    TerminalPeer()
    {
        QObject::connect(&socket, &QTcpSocket::readyRead, [this] {
            const QByteArray bytes = socket.readAll();
            ++chunks;
            receiver_.accumulate(std::string_view(bytes.constData(), static_cast<std::size_t>(bytes.size())));
            if (receiver_.packetComplete())
                packets_.push_back(receiver_.completedPacket());
        });
    }

    bool connectTo(quint16 port, int limitMs = 3000)
    {
        socket.connectToHost(QStringLiteral("127.0.0.1"), port);
        return waitFor([this] { return socket.state() == QAbstractSocket::ConnectedState; }, limitMs);
    }

    void send(const std::string& packet)
    {
        socket.write(packet.data(), static_cast<qint64>(packet.size()));
        socket.flush();
    }

    // The next whole packet (from after SOH through EOT), or none within the limit.
    std::optional<std::string> nextPacket(int limitMs = 3000)
    {
        if (!waitFor([this] { return !packets_.empty(); }, limitMs))
            return std::nullopt;
        std::string packet = std::move(packets_.front());
        packets_.pop_front();
        return packet;
    }

    std::optional<std::string> request(const std::string& packet, int limitMs = 3000)
    {
        send(packet);
        return nextPacket(limitMs);
    }

    // A connect the host turns away at once (it is not listening).
    bool connectionRefused(quint16 port, int limitMs = 3000)
    {
        socket.connectToHost(QStringLiteral("127.0.0.1"), port);
        return waitFor([this] { return socket.error() == QAbstractSocket::ConnectionRefusedError; }, limitMs);
    }

    bool waitForDisconnect(int limitMs = 3000)
    {
        return waitFor([this] { return socket.state() == QAbstractSocket::UnconnectedState; }, limitMs);
    }

    QTcpSocket socket;
    int chunks = 0;

private:
    PacketReceiver receiver_{{}}; // the tests look at what came, not at the packet log
    std::deque<std::string> packets_;
};

} // namespace corvane::test
