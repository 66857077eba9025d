#pragma once

#include "dialogs/MessageBoxes.h"
#include "runtime/Logs.h"

#include <exception>

namespace corvane {

// A run-time error that no routine traps ends the program, as the runtime itself would: it is
// logged at location 000, shown as "Run-time error 'N':" with its description, and the program
// ends. Form code runs its handlers through guarded() so that no exception ever crosses Qt's
// event loop.
void reportUntrappedError(Logs& logs, MessageBoxes& boxes, const std::exception& error) noexcept;

template <typename Body> void guarded(Logs& logs, MessageBoxes& boxes, Body&& body) noexcept
{
    try {
        body();
    } catch (const std::exception& e) {
        reportUntrappedError(logs, boxes, e);
    }
}

} // namespace corvane
