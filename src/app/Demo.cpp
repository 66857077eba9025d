#include "app/Demo.h"

#include "security/FirstStore.h"
#include "security/UserStore.h"
#include "shell/Registry.h"

#include <QDir>

namespace corvane {

bool Demo::start(QString& error)
{
    if (!folder_.isValid()) {
        error = QStringLiteral("no temporary folder: ") + folder_.errorString();
        return false;
    }
    const QDir root(folder_.path());
    for (const char* sub : {"store", "registry", "program"})
        root.mkpath(QString::fromLatin1(sub));
    qputenv("CORVANE_ROOT", root.filePath(QStringLiteral("store")).toLocal8Bit());
    qputenv("CORVANE_REGISTRY_DIR", root.filePath(QStringLiteral("registry")).toLocal8Bit());
    qputenv("CORVANE_PROGRAM_DIR", root.filePath(QStringLiteral("program")).toLocal8Bit());

    try {
        createFirstUserStore(userStorePath());
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

    const QString key = QStringLiteral("Software\\Brellwick\\CorvaneRemote\\Configuration");
    auto registry = openSystemRegistry();
    registry->createKey(Hive::Machine, key);
    registry->writeText(Hive::Machine, key, QStringLiteral("HostName1"), QStringLiteral("Demo Host (simulated)"));
    registry->writeText(Hive::Machine, key, QStringLiteral("HostIP1"), QStringLiteral("127.0.0.1"));
    registry->writeNumber(Hive::Machine, key, QStringLiteral("SocketPortNumber1"), host_->port());
    registry->writeText(Hive::Machine, key, QStringLiteral("HostName2"), QStringLiteral("Spare Host (not set up)"));
    registry->writeText(Hive::Machine, key, QStringLiteral("HostIP2"), QStringLiteral("Undefined"));
    return true;
}

} // namespace corvane
