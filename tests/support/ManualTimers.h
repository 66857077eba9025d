#pragma once

#include "platform/ProgramTimer.h"
#include "support/Wait.h"

#include <QPointer>

#include <functional>
#include <map>
#include <set>
#include <stdexcept>
#include <string>

namespace corvane::test {

// A timer that ticks only when the test says so.
class ManualTimer final : public ProgramTimer {
public:
    explicit ManualTimer(int intervalMs)
        : interval_(intervalMs)
    {
    }
    void start() override
    {
        active_ = true;
        tickSoon();
    }
    void stop() override { active_ = false; }
    bool isActive() const override { return active_; }
    void setInterval(int ms) override { interval_ = ms; }
    int interval() const override { return interval_; }

    // One tick, as the clock would give it: only while the timer runs.
    void fire()
    {
        if (!active_)
            return;
        Q_EMIT timeout();
        tickSoon();
    }
    // From now on the timer ticks whenever the program is free to see it, as if every interval
    // had passed at once (a host that never answers, a connection that never comes).
    void tickWhenFree()
    {
        ticksWhenFree_ = true;
        tickSoon();
    }

private:
    void tickSoon()
    {
        if (ticksWhenFree_ && active_)
            QMetaObject::invokeMethod(this, &ManualTimer::fire, Qt::QueuedConnection);
    }

    bool active_ = false;
    bool ticksWhenFree_ = false;
    int interval_;
};

// The clock of a test: the program's timers by name (the last one made with that name).
class ManualTimers final : public TimerSource {
public:
    std::unique_ptr<ProgramTimer> make(const char* name, int intervalMs) override
    {
        auto timer = std::make_unique<ManualTimer>(intervalMs);
        timers_[name] = timer.get();
        madeWith_[name] = intervalMs;
        if (whenFree_.contains(name))
            timer->tickWhenFree();
        return timer;
    }

    ManualTimer& operator[](const std::string& name)
    {
        const auto found = timers_.find(name);
        if (found == timers_.end() || !found->second)
            throw std::runtime_error("no timer " + name);
        return *found->second;
    }

    // The interval the last timer of this name was made with, gone or not; 0 when none was made.
    int madeWith(const std::string& name) const
    {
        const auto found = madeWith_.find(name);
        return found == madeWith_.end() ? 0 : found->second;
    }

    void fire(const std::string& name, int ticks = 1)
    {
        for (int i = 0; i < ticks; ++i)
            (*this)[name].fire();
    }

    bool running(const std::string& name) const
    {
        const auto found = timers_.find(name);
        return found != timers_.end() && found->second && found->second->isActive();
    }
    // One tick of a timer that exists and runs; nothing otherwise.
    void fireIfRunning(const std::string& name)
    {
        const auto found = timers_.find(name);
        if (found != timers_.end() && found->second && found->second->isActive())
            found->second->fire();
    }

    // While `context` lives, a running timer of this name ticks whenever the program is idle (see
    // whenIdle) and `wanted` holds: an update's look for late acknowledgements, the simulated
    // host's gap between chunks.
    void tickWhenIdle(
        const std::string& name, QObject* context, std::function<bool()> wanted = [] { return true; })
    {
        whenIdle(
            context, [this, name, wanted] { return wanted() && running(name); }, [this, name] { fireIfRunning(name); });
    }

    // Timers of this name, made now or later, tick whenever the program is free to see them.
    void tickWhenFree(const std::string& name)
    {
        whenFree_.insert(name);
        if (const auto found = timers_.find(name); found != timers_.end() && found->second)
            found->second->tickWhenFree();
    }

private:
    std::map<std::string, QPointer<ManualTimer>> timers_;
    std::map<std::string, int> madeWith_;
    std::set<std::string> whenFree_;
};

} // namespace corvane::test
