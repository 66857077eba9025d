#pragma once

#include <string>

namespace corvane {

// The program's own folder, where its logs and help file live: the folder named by the
// environment variable CORVANE_PROGRAM_DIR when set, else the executable's folder; for an
// installed program (in /usr/bin) or a folder that takes no files, the user's state folder
// ($XDG_STATE_HOME/corvane-remote or ~/.local/state/corvane-remote).
// Returned without a trailing separator; callers append "/error.log" and the like.
std::string programFolder();

// Where the executable lies, for systems on which the core cannot find it by itself; the
// application registers it once at start-up.
void setExecutableFolder(std::string folder);

} // namespace corvane
