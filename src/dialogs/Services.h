#pragma once

#include <string>

namespace corvane {

class Desktop;
class MessageBoxes;
class Registry;
class TimerSource;

// What the windows are given rather than reach for: the registry, the place every message box
// goes through, the clock behind the program's timers, the desktop's folder browser and viewers,
// and the operating-system account running the program (for the record of changes).
struct Services {
    Registry& registry;
    MessageBoxes& boxes;
    TimerSource& timers;
    Desktop& desktop;
    std::string osUser = {};
};

} // namespace corvane
