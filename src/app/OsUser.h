#pragma once

#include <string>

#ifdef _WIN32
#include <QtGlobal>
#else
#include <pwd.h>
#include <unistd.h>

#include <vector>
#endif

namespace corvane {

// The operating-system account the program runs as, for the record of changes, read once by
// main: the name the user database gives the effective user (not the environment's, which whoever
// starts the program sets), or its number when the database has none.
inline std::string osUserName()
{
#ifdef _WIN32
    return qEnvironmentVariable("USERNAME").toStdString(); // untested: no Windows build has been made
#else
    const uid_t uid = ::geteuid();
    std::vector<char> buffer(16 * 1024);
    passwd entry{};
    passwd* found = nullptr;
    if (::getpwuid_r(uid, &entry, buffer.data(), buffer.size(), &found) == 0 && found && found->pw_name)
        return found->pw_name;
    return "uid " + std::to_string(uid);
#endif
}

} // namespace corvane
