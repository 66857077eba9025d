#pragma once

#include "shell/ConfigurationRules.h"

#include <QLatin1String>
#include <QString>

#include <array>
#include <cstdint>

namespace corvane {

class Registry;

// Where the host list and the idle time live: the machine hive; the last host: the user hive.
inline constexpr QLatin1String ConfigurationKey{"Software\\Brellwick\\CorvaneRemote\\Configuration"};

// The five hosts the terminal knows, the idle log-off time and the last host used, as the
// registry keeps them. Tables have room for 0 to 6; 1 to 5 are used.
class HostConfiguration {
public:
    explicit HostConfiguration(Registry& registry);

    std::array<QString, HostCount + 2> HostNames;
    std::array<QString, HostCount + 2> HostIPs;
    std::array<std::int32_t, HostCount + 2> SocketPorts{};
    // Whether host n runs in single-port mode and on which DNC COM port: settings of this
    // terminal ("SinglePortMode" + n, "SingleDNCCommPort" + n), since no packet carries them.
    std::array<bool, HostCount + 2> SinglePortModes{};
    std::array<std::int16_t, HostCount + 2> SingleDNCCommPorts{};
    std::int16_t IdleMinutes = 5;

    static QString defaultName(int n);
    static std::int32_t defaultPort(int n);

    // Host n's name, address and port, the defaults standing in for what is missing or empty.
    void Get_Host_Data(int n);
    QString Get_IdleMinutes();
    QString Get_LastHostIPIndex();
    // Everything the main window needs at start: hosts 1-5, the idle time; returns the last host.
    int load();
    // One host's three values, as the configuration form's Save writes them (the demo's hosts).
    bool saveHost(int n);

    // The configuration form's Save: the machine key, hosts 1-5 and the idle time. False when the
    // machine hive cannot be written.
    bool save();
    void Save_LastHostIPIndex(int host);
    // The start-up form's test: may this user write the machine hive?
    bool machineHiveWritable();

    Registry& registry() { return registry_; }

private:
    Registry& registry_;
};

} // namespace corvane
