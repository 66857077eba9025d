#pragma once

#include <string>

namespace corvane {

// A first user store, as an installation needs one: "SUPERVISOR" (the supervisor mark set) and
// "GUEST", both without password and without rights, so that security starts not activated.
// An existing store is never touched. File errors are raised as the runtime's file errors.
enum class FirstStore { Created, AlreadyThere };
FirstStore createFirstUserStore(const std::string& path);

} // namespace corvane
