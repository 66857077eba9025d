#include "app/Demo.h"

#include "platform/Registry.h"
#include "security/FirstStore.h"
#include "security/UserStore.h"
#include "session/HostConfiguration.h"

#include <QDir>

namespace corvane {

bool Demo::start(Places& places, QString& error)
{
    if (!folder_.isValid()) {
        error = QStringLiteral("no temporary folder: ") + folder_.errorString();
        return false;
    }
    const QDir root(folder_.path());
    for (const char* sub : {"store", "registry", "program"})
        root.mkpath(QString::fromLatin1(sub));
    places.storeFile = root.filePath(QStringLiteral("store/BWKXBIDS.DAT")).toStdString();
    places.registryFolder = root.filePath(QStringLiteral("registry")).toStdString();
    places.programFolder = root.filePath(QStringLiteral("program")).toStdString();

    try {
        createFirstUserStore(places.storeFile);
    } catch (const std::exception& e) {
        error = QStringLiteral("no demo user store: ") + QString::fromLatin1(e.what());
        return false;
    }

    host_ = std::make_unique<hostsim::HostSimulator>();
    if (!host_->listen()) {
        error = QStringLiteral("the demo host cannot listen: ") + host_->errorString();
        return false;
    }
    host_->setPushStatusInterval(2000); // byte counts move while you watch

    // Host 1 is the simulator; host 2 shows what a host that is not set up says.
    auto registry = openSystemRegistry(QString::fromStdString(places.registryFolder));
    HostConfiguration hosts(*registry);
    hosts.load();
    hosts.HostNames[1] = QStringLiteral("Demo Host (simulated)");
    hosts.HostIPs[1] = QStringLiteral("127.0.0.1");
    hosts.SocketPorts[1] = host_->port();
    hosts.HostNames[2] = QStringLiteral("Spare Host (not set up)");
    hosts.HostIPs[2] = QStringLiteral("Undefined");
    if (!hosts.saveHost(1) || !hosts.saveHost(2)) {
        error = QStringLiteral("the demo's settings cannot be written in ")
            + QString::fromStdString(places.registryFolder);
        return false;
    }
    return true;
}

} // namespace corvane
