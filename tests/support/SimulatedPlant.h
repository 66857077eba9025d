#pragma once

#include "hostsim/HostSimulator.h"
#include "platform/Registry.h"
#include "session/HostConfiguration.h"
#include "support/ManualTimers.h"
#include "support/ScratchProgramFolder.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>

namespace corvane::test {

// Where the terminal that talks to the simulated host runs.
enum class TerminalIn {
    // This process: the host's clock is the test's, and its gap between two chunks passes as
    // soon as this process has nothing else to do, by when the terminal has read the first.
    ThisProcess,
    // A process of its own, which this one cannot see read: the gap is the real one.
    AnotherProcess,
};

// What a session or program test stands on: a program folder for the logs, a registry of its
// own, and a simulated host configured as host 1 (host 2 is "Undefined"). The host counts what
// it receives, so a test can tell that something was, or was not, sent.
class SimulatedPlant {
public:
    ScratchProgramFolder folder;
    QTemporaryDir registryDir;
    std::unique_ptr<Registry> registry;
    ManualTimers hostClock; // the host's, for a terminal in this process: the rest of its timers tick as a test says
    hostsim::HostSimulator host;
    std::vector<std::string> received; // every packet the host took in, in order

    explicit SimulatedPlant(TerminalIn terminal = TerminalIn::ThisProcess)
        : host(hostsim::Plant::demo(), terminal == TerminalIn::ThisProcess ? &hostClock : nullptr)
    {
        if (terminal == TerminalIn::ThisProcess)
            hostClock.tickWhenIdle("tmrChunkGap", &host);
        qputenv("CORVANE_REGISTRY_DIR", registryDir.path().toLocal8Bit());
        registry = openSystemRegistry();
        EXPECT_TRUE(host.listen());
        QObject::connect(&host, &hostsim::HostSimulator::packetReceived,
            [this](const QByteArray& packet) { received.emplace_back(packet.constData(), packet.size()); });
        HostConfiguration hosts(*registry);
        hosts.load();
        hosts.HostIPs[1] = QStringLiteral("127.0.0.1");
        hosts.SocketPorts[1] = host.port();
        hosts.HostIPs[2] = QStringLiteral("Undefined");
        hosts.saveHost(1);
        hosts.saveHost(2);
    }
    ~SimulatedPlant() { qunsetenv("CORVANE_REGISTRY_DIR"); }
    SimulatedPlant(const SimulatedPlant&) = delete;
    SimulatedPlant& operator=(const SimulatedPlant&) = delete;

    // How many packets of this type the host has received.
    std::size_t receivedOfType(std::int16_t type) const
    {
        const std::string prefix = "PKT_TYPE=" + std::to_string(type) + '\x02';
        return static_cast<std::size_t>(std::count_if(
            received.begin(), received.end(), [&](const std::string& p) { return p.starts_with(prefix); }));
    }
};

} // namespace corvane::test
