#pragma once
// A terminal's world for a benchmark that runs our programs as processes: settings, program
// folder and user store in a throw-away folder (a first store: the supervisor logs in without a
// word), and the simulated host in this process as host 1. Without the host's unasked machine
// types, which wait out its pause between packets: the figures are the terminal's own.
#include "hostsim/HostSimulator.h"
#include "platform/Registry.h"
#include "security/FirstStore.h"
#include "security/UserStore.h"
#include "session/HostConfiguration.h"

#include <QTemporaryDir>

namespace corvane::bench {

class ScratchTerminal {
public:
    QTemporaryDir folder;
    hostsim::HostSimulator host;

    ScratchTerminal()
    {
        for (const char* name : {"CORVANE_REGISTRY_DIR", "CORVANE_PROGRAM_DIR", "CORVANE_ROOT"})
            qputenv(name, folder.path().toLocal8Bit());
        createFirstUserStore(userStorePath());
        host.announceMachineTypes = false;
        host.listen();
        auto registry = openSystemRegistry();
        HostConfiguration config(*registry);
        config.load();
        config.HostIPs[1] = QStringLiteral("127.0.0.1");
        config.SocketPorts[1] = host.port();
        config.saveHost(1);
    }
};

} // namespace corvane::bench
