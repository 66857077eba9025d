#pragma once

namespace corvane {

class Desktop;
class MessageBoxes;
class Registry;
class TimerSource;

// What the windows are given rather than reach for: the registry, the place every message box
// goes through, the clock behind the program's timers, and the desktop's folder browser and
// viewers.
struct Services {
    Registry& registry;
    MessageBoxes& boxes;
    TimerSource& timers;
    Desktop& desktop;
};

} // namespace corvane
