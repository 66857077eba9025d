#pragma once

#include <exception>
#include <functional>

namespace corvane {

// A run-time error that no routine traps ends the program, as the original runtime did: it is
// logged, shown as "Run-time error 'N':" with its description, and the program exits. Form code
// runs its handlers through guarded() so that no exception ever crosses Qt's event loop.
void reportUntrappedError(const std::exception& error);

// Tests put their own reaction in place (an empty function restores the real one).
void setUntrappedErrorHandler(std::function<void(int errorNumber)> handler);

template <typename Body> void guarded(Body&& body) noexcept
{
    try {
        body();
    } catch (const std::exception& e) {
        reportUntrappedError(e);
    }
}

} // namespace corvane
