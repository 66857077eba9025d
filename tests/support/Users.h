#pragma once

#include "security/UserStore.h"

#include <initializer_list>
#include <ostream>
#include <string>

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

} // namespace test
} // namespace corvane
