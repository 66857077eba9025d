#pragma once

#include <QObject>

#include <functional>

namespace corvane {

// Calls `act` each time the program has nothing left to do while `ready` holds, for as long as
// `context` lives. Nothing left to do: the event loop, about to sleep, is given a timer of no
// length, whose turn comes after the posted events' and the sockets'; if any event is handled
// before that turn (an arrival not yet read, a layout or a paint not yet done), the program was
// not idle after all, and the next such moment tries again. Watches made earlier have their turn
// first.
void whenIdle(QObject* context, std::function<bool()> ready, std::function<void()> act);

// Runs the event loop until the program is idle (as above) while `ready` holds, or `limitMs`
// passes; whether it came to be idle.
bool waitUntilIdle(std::function<bool()> ready, int limitMs);

} // namespace corvane
