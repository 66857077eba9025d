#pragma once

#include <functional>
#include <memory>

class QSocketNotifier;

namespace corvane {

// SIGINT, SIGTERM and SIGHUP end a program in order rather than at once: the handler only notes
// the signal and writes a byte to a pipe, and the event loop, hearing it, runs `heard` (which
// calls off the waits), so that whatever is under way can finish its books and the program exit
// with 128 + the signal's number. One at a time; the actions before it come back when it goes.
class StopSignals {
public:
    explicit StopSignals(std::function<void()> heard);
    ~StopSignals();
    StopSignals(const StopSignals&) = delete;
    StopSignals& operator=(const StopSignals&) = delete;

    // The first of these signals to come, 0 while none has; set the moment it comes, before the
    // event loop has heard it.
    int caught() const;

private:
    std::function<void()> heard_;
    std::unique_ptr<QSocketNotifier> notifier_;
};

} // namespace corvane
