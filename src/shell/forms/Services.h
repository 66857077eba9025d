#pragma once

#include "shell/HostSession.h"

namespace corvane {

class MessageBoxes;
class Registry;

// What the windows are given rather than reach for: the registry, the place every message box
// goes through, and the timers' intervals (shortened by tests).
struct Services {
    Registry& registry;
    MessageBoxes& boxes;
    SessionTimings timings{};
    int startupDelayMs = 2500; // tmrStartup
};

} // namespace corvane
