#pragma once
// A terminal's world for a benchmark that runs our programs as processes: settings, program
// folder and user store in a throw-away folder (a first store: the supervisor logs in without a
// word), and the simulated host in this process as host 1. Without the host's unasked machine
// types, which wait out its pause between packets: the figures are the terminal's own.
#include "hostsim/HostSimulator.h"
#include "platform/Registry.h"
#include "runtime/Places.h"
#include "security/FirstStore.h"
#include "security/UserStore.h"
#include "session/HostConfiguration.h"

#include <QTemporaryDir>

namespace corvane::bench {

inline Places placesIn(const QTemporaryDir& folder)
{
    Places places;
    places.programFolder = folder.path().toStdString();
    places.storeFile = places.programFolder + "/BRELLWICK/BWKXBIDS.DAT";
    places.registryFolder = places.programFolder;
    return places;
}

class ScratchTerminal {
public:
    QTemporaryDir folder;
    hostsim::HostSimulator host;
    Places places = placesIn(folder);

    ScratchTerminal()
    {
        // The programs the benchmark starts find the same folder through the environment.
        for (const char* name : {"CORVANE_REGISTRY_DIR", "CORVANE_PROGRAM_DIR", "CORVANE_ROOT"})
            qputenv(name, folder.path().toLocal8Bit());
        createFirstUserStore(places.storeFile);
        host.announceMachineTypes = false;
        host.listen();
        auto registry = openSystemRegistry(folder.path());
        HostConfiguration config(*registry);
        config.load();
        config.HostIPs[1] = QStringLiteral("127.0.0.1");
        config.SocketPorts[1] = host.port();
        config.saveHost(1);
    }
};

} // namespace corvane::bench
