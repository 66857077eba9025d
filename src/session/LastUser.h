#pragma once

#include <string>

namespace corvane {

class Registry;

// "Last User" under the per-user key "Software\Brellwick\CorvaneRemote\User": the user proposed
// at the next start. Empty when the key cannot be opened.
std::string Get_Last_User(Registry& registry);
void Save_Last_User(Registry& registry, const std::string& userName);

} // namespace corvane
