#include "session/HostConfiguration.h"

#include "platform/Latin1.h"
#include "platform/Registry.h"
#include "runtime/Convert.h"
#include "runtime/RunTimeError.h"

namespace corvane {
namespace {

const QString AccessTestKey = QStringLiteral("Software\\Brellwick\\AccessTest");
const QString IdleValue = QStringLiteral("Idle Minutes");
const QString LastHostValue = QStringLiteral("Last Host IP Number");

QString numbered(const char* name, int n)
{
    return QLatin1String(name) + QString::number(n);
}

// A stored number as the runtime converts it; a value that does not convert is a read error,
// which the defaults stand in for.
template <typename T> T storedNumber(const QString& text, T fallback, T (*convert)(std::string_view))
{
    if (text.isEmpty())
        return fallback;
    try {
        return convert(toLatin1Bytes(text));
    } catch (const RunTimeError&) {
        return fallback;
    }
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
    const QString name = registry_.readText(Hive::Machine, ConfigurationKey, numbered("HostName", n));
    HostNames[static_cast<std::size_t>(n)] = name.isEmpty() ? defaultName(n) : name;
    HostIPs[static_cast<std::size_t>(n)] = registry_.readText(Hive::Machine, ConfigurationKey, numbered("HostIP", n));
    SocketPorts[static_cast<std::size_t>(n)]
        = storedNumber(registry_.readText(Hive::Machine, ConfigurationKey, numbered("SocketPortNumber", n)),
            defaultPort(n), textToInt32);
    SinglePortModes[static_cast<std::size_t>(n)]
        = storedNumber<std::int16_t>(
              registry_.readText(Hive::Machine, ConfigurationKey, numbered("SinglePortMode", n)), 0, textToInt16)
        != 0;
    SingleDNCCommPorts[static_cast<std::size_t>(n)] = storedNumber<std::int16_t>(
        registry_.readText(Hive::Machine, ConfigurationKey, numbered("SingleDNCCommPort", n)), 0, textToInt16);
}

QString HostConfiguration::Get_IdleMinutes()
{
    const QString value = registry_.readText(Hive::Machine, ConfigurationKey, IdleValue);
    return value.isEmpty() ? QStringLiteral("5") : value;
}

QString HostConfiguration::Get_LastHostIPIndex()
{
    const QString value = registry_.readText(Hive::User, ConfigurationKey, LastHostValue);
    return value.isEmpty() ? QStringLiteral("1") : value;
}

int HostConfiguration::load()
{
    for (int n = 1; n <= HostCount; ++n)
        Get_Host_Data(n);
    // Used as stored, even outside 0-60: the limits are the configuration form's, not the store's.
    IdleMinutes = storedNumber<std::int16_t>(Get_IdleMinutes(), 5, textToInt16);
    const int last = storedNumber<std::int16_t>(Get_LastHostIPIndex(), 1, textToInt16);
    return last >= 1 && last <= HostCount ? last : 1;
}

bool HostConfiguration::save()
{
    bool saved = registry_.createKey(Hive::Machine, ConfigurationKey);
    for (int n = 1; n <= HostCount && saved; ++n)
        saved = saveHost(n);
    return saved && registry_.writeNumber(Hive::Machine, ConfigurationKey, IdleValue, IdleMinutes);
}

bool HostConfiguration::saveHost(int n)
{
    const auto i = static_cast<std::size_t>(n);
    return registry_.createKey(Hive::Machine, ConfigurationKey)
        && registry_.writeText(Hive::Machine, ConfigurationKey, numbered("HostName", n), HostNames[i])
        && registry_.writeText(Hive::Machine, ConfigurationKey, numbered("HostIP", n), HostIPs[i])
        && registry_.writeNumber(Hive::Machine, ConfigurationKey, numbered("SocketPortNumber", n), SocketPorts[i]);
}

void HostConfiguration::Save_LastHostIPIndex(int host)
{
    registry_.createKey(Hive::User, ConfigurationKey);
    registry_.writeNumber(Hive::User, ConfigurationKey, LastHostValue, host);
}

bool HostConfiguration::machineHiveWritable()
{
    return registry_.createKey(Hive::Machine, AccessTestKey);
}

} // namespace corvane
