#pragma once

#include "runtime/Places.h"

#include <string>

namespace corvane {

// The program's places from the environment it started in (CORVANE_ROOT, CORVANE_PROGRAM_DIR,
// CORVANE_REGISTRY_DIR, XDG_STATE_HOME, HOME, LC_ALL, LC_TIME, LANG) and the executable's folder:
// the one place where the programs read them.
Places placesFromEnvironment(const std::string& executableFolder);

} // namespace corvane
