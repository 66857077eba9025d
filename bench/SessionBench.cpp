// End-to-end figures of the host session on loopback against the simulated host:
//  1. connect -> version -> status -> grid filled, repeated, beside a bare socket that connects
//     and exchanges the same requests with the same host;
//  2. the parameter editor's six-section fetch and six-section update (acknowledged, then the
//     trailer), each beside a bare socket that exchanges the same bytes with the same host;
//  3. the CPU time the terminal uses while it waits 3 s for a host that never answers.
#include "Loopback.h"
#include "hostsim/HostPackets.h"
#include "hostsim/HostSimulator.h"
#include "platform/ProgramTimer.h"
#include "platform/Registry.h"
#include "protocol/Framing.h"
#include "protocol/PortParmsPacket.h"
#include "protocol/Requests.h"
#include "runtime/Logs.h"
#include "session/HostConfiguration.h"
#include "session/HostSession.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTcpSocket>
#include <QTemporaryDir>

#include <sys/resource.h>

#include <algorithm>
#include <cstdio>
#include <vector>

using namespace corvane;
using namespace corvane::bench;

namespace {

double cpuSeconds()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec)
        + static_cast<double>(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QTemporaryDir scratch;
    Logs logs(scratch.path().toStdString());
    auto registry = openSystemRegistry(scratch.path());
    HostConfiguration config(*registry);
    config.load();
    hostsim::HostSimulator host;
    host.announceMachineTypes = false; // the terminal's own work, without the simulator's pause before it
    host.listen();
    config.HostIPs[1] = QStringLiteral("127.0.0.1");
    config.SocketPorts[1] = host.port();
    SilentSessionUi ui;
    QtTimers timers;

    constexpr int Runs = 40;
    {
        // The connect: one session connecting and disconnecting as the user does, and one bare
        // socket likewise, with a host of its own.
        hostsim::HostSimulator bareHost;
        bareHost.announceMachineTypes = false;
        bareHost.listen();
        BareTerminal bare;
        HostSession session(config, ui, timers, logs);
        const std::vector<std::string> connectRequests = {Build_Version_Request(), Build_Status_Request()};
        compare(
            "connect -> version -> status -> 128 rows filled", Runs,
            [&] {
                session.Command1_Click(QStringLiteral("127.0.0.1"));
                runUntil([&] { return !session.portStatus()[127].WorkstationName.empty(); });
                session.cmdDisconnect_Click();
                runUntil([&] { return !host.hasTerminal(); });
            },
            [&] {
                bare.connectTo(bareHost.port());
                bare.exchange(connectRequests);
                bare.disconnect();
                runUntil([&] { return !bareHost.hasTerminal(); });
            });
    }

    {
        // The editor's exchanges: one session and one bare socket, each with a host of its own.
        hostsim::HostSimulator bareHost;
        bareHost.announceMachineTypes = false;
        bareHost.listen();
        HostSession session(config, ui, timers, logs);
        session.Command1_Click(QStringLiteral("127.0.0.1"));
        runUntil([&] { return !session.portStatus()[127].WorkstationName.empty(); });
        BareTerminal bare(bareHost.port());
        constexpr std::int16_t Port = 14;
        std::vector<std::string> fetch, update;
        PortParmsTables tables = host.plant().parms;
        for (std::int16_t section = FirstParmsSection; section <= LastParmsSection; ++section) {
            fetch.push_back(Build_Port_Parms_Request(section, Port));
            update.push_back(Build_Port_Parms_Packet(section, Port, tables) + EOT);
        }
        compare(
            "six-section fetch", Runs, [&] { session.FetchCommParms(Port); }, [&] { bare.exchange(fetch); });
        {
            // The same fetch with a full status table taken in before every section's reply, as
            // from a host that pushes its status whenever it likes, and without, in one run. The
            // status goes straight into the terminal's dispatch when the host takes each request
            // in, so the figure is the terminal's own work, not the simulated host's spacing of
            // its packets.
            const std::string status = hostsim::statusReply(host.plant().status);
            bool pushing = false;
            const auto push = QObject::connect(&host, &hostsim::HostSimulator::packetReceived, &host,
                [&](const QByteArray& request) {
                    if (pushing && request.startsWith("PKT_TYPE=200"))
                        session.Process_Received_Socket_Packet(status);
                });
            std::vector<double> plain, pushed;
            for (int i = 0; i < Runs; ++i)
                for (const bool on : {false, true}) {
                    pushing = on;
                    QElapsedTimer clock;
                    clock.start();
                    session.FetchCommParms(Port);
                    (on ? pushed : plain).push_back(msSince(clock));
                }
            QObject::disconnect(push);
            std::printf("six-section fetch with a 128-row status taken in before each reply, %d runs: median %.3f ms "
                        "against %.3f ms without (%.2fx)\n",
                Runs, median(pushed), median(plain), median(pushed) / median(plain));
            std::fflush(stdout);
        }
        compare(
            "six-section update with the trailer", Runs, [&] { session.UpdateCommParms(Port); },
            [&] {
                bare.exchange(update);
                bare.send(Build_Update_Complete_Packet());
            });
        session.cmdDisconnect_Click();
        runUntil([&] { return !host.hasTerminal(); });
    }

    host.faults.silent = true;
    {
        HostSession session(config, ui, timers, logs);
        const double cpuBefore = cpuSeconds();
        QElapsedTimer clock;
        clock.start();
        session.Command1_Click(QStringLiteral("127.0.0.1"));
        runUntil([&] { return session.connectState() == ConnectState::AwaitingVersion; });
        runUntil([&] { return session.connectState() == ConnectState::Idle; }); // "Fetch Version Timeout."
        const double wall = static_cast<double>(clock.elapsed()) / 1000.0;
        const double cpu = cpuSeconds() - cpuBefore;
        std::printf(
            "waiting for a silent host's version reply: %.2f s of wall time, %.1f ms of CPU (%.2f%% of one core)\n",
            wall, cpu * 1000.0, 100.0 * cpu / wall);
    }
    return 0;
}
