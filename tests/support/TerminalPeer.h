#pragma once

#include "protocol/Framing.h"

#include <QEventLoop>
#include <QTcpSocket>
#include <QTimer>

#include <deque>
#include <functional>
#include <optional>
#include <string>

namespace corvane::test {

// A bare terminal for talking to a host: sends requests, gathers what comes back with the
// terminal's own PacketReceiver, and waits in a nested event loop that socket signals or a
// timer end, never spinning.
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

    bool waitForDisconnect(int limitMs = 3000)
    {
        return waitFor([this] { return socket.state() == QAbstractSocket::UnconnectedState; }, limitMs);
    }

    // Runs the event loop until `done` holds or the limit passes; woken by the socket's signals
    // and, when given, by a signal of another object (the host's, say).
    bool waitFor(const std::function<bool()>& done, int limitMs)
    {
        return waitFor(done, limitMs, &socket, &QTcpSocket::readyRead);
    }

    template <typename Sender, typename Signal>
    bool waitFor(const std::function<bool()>& done, int limitMs, const Sender* sender, Signal signal)
    {
        QEventLoop loop;
        QTimer limit;
        limit.setSingleShot(true);
        QObject::connect(&limit, &QTimer::timeout, &loop, &QEventLoop::quit);
        const auto wake = [&loop] { loop.quit(); };
        const auto c1 = QObject::connect(&socket, &QTcpSocket::readyRead, &loop, wake);
        const auto c2 = QObject::connect(&socket, &QTcpSocket::stateChanged, &loop, wake);
        const auto c3 = QObject::connect(sender, signal, &loop, wake);
        limit.start(limitMs);
        while (!done() && limit.isActive())
            loop.exec();
        for (const auto& c : {c1, c2, c3})
            QObject::disconnect(c);
        return done();
    }

    QTcpSocket socket;
    int chunks = 0;

private:
    PacketReceiver receiver_;
    std::deque<std::string> packets_;
};

} // namespace corvane::test
