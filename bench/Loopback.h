#pragma once
// What the loopback benchmarks share: the event loop run until something holds, the median of a
// series, and the bare terminal that every figure is set beside.
#include "protocol/Framing.h"

#include <QAbstractEventDispatcher>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTcpSocket>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

namespace corvane::bench {

// Runs the event loop until `done`, looking each time the loop is about to sleep.
inline void runUntil(const std::function<bool()>& done)
{
    if (done())
        return;
    QEventLoop loop;
    const auto look
        = QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, &loop, [&] {
              if (done())
                  loop.quit();
          });
    loop.exec();
    QObject::disconnect(look);
}

inline double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

inline double msSince(const QElapsedTimer& clock)
{
    return static_cast<double>(clock.nsecsElapsed()) / 1e6;
}

// The least any terminal could do: write each request and wait for the chunk that ends its
// answer, reading nothing into any record.
class BareTerminal {
public:
    BareTerminal()
    {
        QObject::connect(&socket_, &QTcpSocket::readyRead, [this] {
            const QByteArray bytes = socket_.readAll();
            if (!bytes.isEmpty() && bytes.back() == EOT)
                ++answers_;
        });
    }
    explicit BareTerminal(quint16 port)
        : BareTerminal()
    {
        connectTo(port);
    }
    void connectTo(quint16 port)
    {
        socket_.connectToHost(QStringLiteral("127.0.0.1"), port);
        runUntil([this] { return socket_.state() == QAbstractSocket::ConnectedState; });
        socket_.setSocketOption(QAbstractSocket::LowDelayOption, 1);
    }
    void disconnect()
    {
        socket_.disconnectFromHost();
        if (socket_.state() != QAbstractSocket::UnconnectedState)
            runUntil([this] { return socket_.state() == QAbstractSocket::UnconnectedState; });
    }
    void exchange(const std::vector<std::string>& requests)
    {
        for (const std::string& request : requests) {
            const int expected = answers_ + 1;
            socket_.write(request.data(), static_cast<qint64>(request.size()));
            runUntil([&] { return answers_ == expected; });
        }
    }
    void send(const std::string& packet) { socket_.write(packet.data(), static_cast<qint64>(packet.size())); }

private:
    QTcpSocket socket_;
    int answers_ = 0;
};

// Runs `own` and `bare` alternately, `runs` times each, and prints both medians and their ratio.
inline void compare(const char* what, int runs, const std::function<void()>& own, const std::function<void()>& bare)
{
    std::vector<double> ours, floor;
    for (int i = 0; i < runs; ++i) {
        QElapsedTimer clock;
        clock.start();
        own();
        ours.push_back(msSince(clock));
        clock.restart();
        bare();
        floor.push_back(msSince(clock));
    }
    std::printf("%s, %d runs: median %.3f ms against a bare socket's %.3f ms (%.2fx)\n", what, runs, median(ours),
        median(floor), median(ours) / median(floor));
    std::fflush(stdout);
}

} // namespace corvane::bench
