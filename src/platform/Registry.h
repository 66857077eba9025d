#pragma once

#include <QString>

#include <cstdint>
#include <memory>

namespace corvane {

enum class Hive {
    Machine, // settings of every user of this computer
    User, // settings of the logged-in user
};

// The four registry operations the program needs. Keys are written as the system names them,
// with backslashes ("Software\Brellwick\CorvaneRemote\Configuration").
class Registry {
public:
    virtual ~Registry() = default;
    virtual bool keyExists(Hive hive, const QString& key) = 0;
    // The value as text; empty when the key or the value is missing.
    virtual QString readText(Hive hive, const QString& key, const QString& name) = 0;
    // Creates the key if needed; false when the hive cannot be written here.
    virtual bool createKey(Hive hive, const QString& key) = 0;
    virtual bool writeText(Hive hive, const QString& key, const QString& name, const QString& value) = 0;
    virtual bool writeNumber(Hive hive, const QString& key, const QString& name, std::int32_t value) = 0;
};

// On Windows the real registry (the 32-bit view the family of programs shares); elsewhere
// machine.ini and user.ini in `folder`, or in registryFolder() when it is empty. Off Windows the
// machine hive is also read from machine.ini in `systemFolder` where the own file holds no value
// (the hosts an administrator set for every user); by default systemRegistryFolder() when
// neither `folder` nor CORVANE_REGISTRY_DIR is given, else none.
std::unique_ptr<Registry> openSystemRegistry(const QString& folder = {}, const QString& systemFolder = QString());

// CORVANE_REGISTRY_DIR when set, else the user's configuration folder + "/CorvaneRemote".
QString registryFolder();
// The machine-wide settings folder: the system's configuration folder (/etc/xdg) +
// "/CorvaneRemote"; none on Windows, whose registry is machine-wide already.
QString systemRegistryFolder();

} // namespace corvane
