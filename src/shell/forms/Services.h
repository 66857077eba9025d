#pragma once

namespace corvane {

class MessageBoxes;
class Registry;
class TimerSource;

// What the windows are given rather than reach for: the registry, the place every message box
// goes through, and the clock behind the program's timers.
struct Services {
    Registry& registry;
    MessageBoxes& boxes;
    TimerSource& timers;
};

} // namespace corvane
