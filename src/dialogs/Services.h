#pragma once

namespace corvane {

class Desktop;
class MessageBoxes;

// What the windows are given of the desktop rather than reach for: the place every message box
// goes through, and the desktop's folder browser and viewers. What a terminal is (its hosts,
// users, clock and session) they are given as its Terminal.
struct Services {
    MessageBoxes& boxes;
    Desktop& desktop;
};

} // namespace corvane
