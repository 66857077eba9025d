// End-to-end figures of the host session on loopback against the simulated host:
//  1. connect -> version -> status -> grid filled, repeated, beside a bare socket that connects
//     and exchanges the same requests with the same host;
//  2. the parameter editor's six-section fetch and six-section update (acknowledged, then the
//     trailer), each beside a bare socket that exchanges the same bytes with the same host;
//  3. the CPU time the terminal uses while it waits 3 s for a host that never answers.
#include "Loopback.h"
#include "hostsim/HostSimulator.h"
#include "platform/ProgramTimer.h"
#include "platform/Registry.h"
#include "protocol/Framing.h"
#include "protocol/PortParmsPacket.h"
#include "protocol/Requests.h"
#include "shell/HostConfiguration.h"
#include "shell/HostSession.h"

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
    qputenv("CORVANE_REGISTRY_DIR", scratch.path().toLocal8Bit());
    qputenv("CORVANE_PROGRAM_DIR", scratch.path().toLocal8Bit());
    auto registry = openSystemRegistry();
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
        HostSession session(config, ui, timers);
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
        HostSession session(config, ui, timers);
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
            // The same fetch while the host pushes its status table unasked as fast as its gap
            // between packets allows, and without, in one run: what the pushed rows cost a fetch.
            std::vector<double> plain, pushed;
            for (const bool pushing : {false, true}) {
                host.setPushStatusInterval(pushing ? 10 : 0);
                for (int i = 0; i < Runs; ++i) {
                    QElapsedTimer clock;
                    clock.start();
                    session.FetchCommParms(Port);
                    (pushing ? pushed : plain).push_back(msSince(clock));
                }
            }
            host.setPushStatusInterval(0);
            const auto mean = [](const std::vector<double>& v) {
                double sum = 0;
                for (const double x : v)
                    sum += x;
                return sum / static_cast<double>(v.size());
            };
            std::printf("six-section fetch with status pushed every 25 ms, %d runs: median %.3f ms against %.3f ms "
                        "without (%.2fx); mean %.3f ms against %.3f ms (%.2fx)\n",
                Runs, median(pushed), median(plain), median(pushed) / median(plain), mean(pushed), mean(plain),
                mean(pushed) / mean(plain));
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
        HostSession session(config, ui, timers);
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
