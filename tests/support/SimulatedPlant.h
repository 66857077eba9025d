#pragma once

#include "hostsim/HostSimulator.h"
#include "platform/Registry.h"
#include "session/HostConfiguration.h"
#include "support/ScratchProgramFolder.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>

namespace corvane::test {

// What a session or program test stands on: a program folder for the logs, a registry of its
// own, and a simulated host configured as host 1 (host 2 is "Undefined"). The host counts what
// it receives, so a test can tell that something was, or was not, sent.
class SimulatedPlant {
public:
    ScratchProgramFolder folder;
    QTemporaryDir registryDir;
    std::unique_ptr<Registry> registry;
    hostsim::HostSimulator host;
    std::vector<std::string> received; // every packet the host took in, in order

    SimulatedPlant()
    {
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
