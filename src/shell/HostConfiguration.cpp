#include "shell/HostConfiguration.h"

#include "shell/Registry.h"

namespace corvane {
namespace {

const QString ConfigKey = QStringLiteral("Software\\Brellwick\\CorvaneRemote\\Configuration");
const QString AccessTestKey = QStringLiteral("Software\\Brellwick\\AccessTest");
const QString IdleValue = QStringLiteral("Idle Minutes");
const QString LastHostValue = QStringLiteral("Last Host IP Number");

QString numbered(const char* name, int n)
{
    return QLatin1String(name) + QString::number(n);
}

} // namespace

HostConfiguration::HostConfiguration(Registry& registry)
    : registry_(registry)
{
}

QString HostConfiguration::defaultName(int n)
{
    return QStringLiteral("Host ") + QString::number(n);
}

std::int32_t HostConfiguration::defaultPort(int n)
{
    return 49139 + n;
}

void HostConfiguration::Get_Host_Data(int n)
{
    const QString name = registry_.readText(Hive::Machine, ConfigKey, numbered("HostName", n));
    HostNames[static_cast<std::size_t>(n)] = name.isEmpty() ? defaultName(n) : name;
    HostIPs[static_cast<std::size_t>(n)] = registry_.readText(Hive::Machine, ConfigKey, numbered("HostIP", n));
    bool ok = false;
    const int port = registry_.readText(Hive::Machine, ConfigKey, numbered("SocketPortNumber", n)).toInt(&ok);
    SocketPorts[static_cast<std::size_t>(n)] = ok ? port : defaultPort(n);
}

QString HostConfiguration::Get_IdleMinutes()
{
    const QString value = registry_.readText(Hive::Machine, ConfigKey, IdleValue);
    return value.isEmpty() ? QStringLiteral("5") : value;
}

QString HostConfiguration::Get_LastHostIPIndex()
{
    const QString value = registry_.readText(Hive::User, ConfigKey, LastHostValue);
    return value.isEmpty() ? QStringLiteral("1") : value;
}

int HostConfiguration::load()
{
    for (int n = 1; n <= 5; ++n)
        Get_Host_Data(n);
    bool ok = false;
    const int idle = Get_IdleMinutes().toInt(&ok);
    IdleMinutes = static_cast<std::int16_t>(ok && idle >= 0 && idle <= 60 ? idle : 5);
    const int last = Get_LastHostIPIndex().toInt(&ok);
    return ok && last >= 1 && last <= 5 ? last : 1;
}

bool HostConfiguration::save()
{
    bool saved = registry_.createKey(Hive::Machine, ConfigKey);
    for (int n = 1; n <= 5 && saved; ++n) {
        const auto i = static_cast<std::size_t>(n);
        saved = registry_.writeText(Hive::Machine, ConfigKey, numbered("HostName", n), HostNames[i])
            && registry_.writeText(Hive::Machine, ConfigKey, numbered("HostIP", n), HostIPs[i])
            && registry_.writeNumber(Hive::Machine, ConfigKey, numbered("SocketPortNumber", n), SocketPorts[i]);
    }
    return saved && registry_.writeNumber(Hive::Machine, ConfigKey, IdleValue, IdleMinutes);
}

void HostConfiguration::Save_LastHostIPIndex(int host)
{
    registry_.createKey(Hive::User, ConfigKey);
    registry_.writeNumber(Hive::User, ConfigKey, LastHostValue, host);
}

bool HostConfiguration::machineHiveWritable()
{
    return registry_.createKey(Hive::Machine, AccessTestKey);
}

} // namespace corvane
