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
// machine.ini and user.ini in `folder`, or in registryFolder() when it is empty.
std::unique_ptr<Registry> openSystemRegistry(const QString& folder = {});

// CORVANE_REGISTRY_DIR when set, else the user's configuration folder + "/CorvaneRemote".
QString registryFolder();

} // namespace corvane
