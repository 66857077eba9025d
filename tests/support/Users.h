#pragma once

#include "security/UserStore.h"

#include <initializer_list>
#include <ostream>
#include <string>
#include <vector>

namespace corvane {

// Failures show the entry rather than its bytes.
inline void PrintTo(const UserEntry& e, std::ostream* os)
{
    *os << '{' << e.UserName << ", " << e.Password << ", supervisor " << e.IsSupervisor << ", rights";
    for (std::size_t r = 0; r < e.Rights.size(); ++r)
        if (e.Rights[r])
            *os << ' ' << r;
    *os << '}';
}

namespace test {

// A user entry with the given rights positions granted.
inline UserEntry user(
    std::string name, std::string password, std::initializer_list<int> granted = {}, std::int16_t supervisor = 0)
{
    UserEntry e{std::move(name), std::move(password), {}, supervisor};
    for (int r : granted)
        e.Rights[static_cast<std::size_t>(r)] = 1;
    return e;
}

// The bytes of a store of these records, in order, as a program of the family might leave it.
inline std::string storeBytes(std::initializer_list<UserEntry> entries)
{
    std::string out;
    for (const UserEntry& e : entries) {
        const UserRecordBytes r = encodeUserRecord(e);
        out.append(reinterpret_cast<const char*>(r.data()), r.size());
    }
    return out;
}

// Writes a store of these users at `path`.
inline void createStore(const std::string& path, std::vector<UserEntry> users)
{
    UserStore store(path);
    store.users = std::move(users);
    for (std::int16_t i = 0; i < store.count(); ++i)
        store.Save_User_Record(i);
}

} // namespace test
} // namespace corvane
