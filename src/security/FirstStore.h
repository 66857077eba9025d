#pragma once

#include <cstdio>
#include <string>

namespace corvane {

// A first user store, as an installation needs one: "SUPERVISOR" (the supervisor mark set) and
// "GUEST", both without password and without rights, so that security starts not activated.
// An existing store is never touched. File errors are raised as the runtime's file errors.
enum class FirstStore { Created, AlreadyThere };
FirstStore createFirstUserStore(const std::string& path);

// The command of both programs that makes one where the program looks for it, saying what it
// did: 0 created, 1 a store is there already (untouched), 2 it could not be made.
int createFirstUserStoreCommand(
    const char* program, const std::string& path, std::FILE* out = stdout, std::FILE* err = stderr);

} // namespace corvane
