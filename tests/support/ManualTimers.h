#pragma once

#include "platform/ProgramTimer.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QPointer>
#include <QTimer>

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
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

// Counts the events the program handles, so that a tick can tell whether anything came between
// the moment the event loop fell idle and the tick's own turn.
class Activity final : public QObject {
public:
    static Activity& instance()
    {
        static Activity* activity = [] {
            auto* made = new Activity(QCoreApplication::instance());
            QCoreApplication::instance()->installEventFilter(made);
            return made;
        }();
        return *activity;
    }
    std::uint64_t events() const { return events_; }

protected:
    bool eventFilter(QObject*, QEvent*) override
    {
        ++events_;
        return false;
    }

private:
    using QObject::QObject;
    std::uint64_t events_ = 0;
};

// The clock of a test: the program's timers by name (the last one made with that name).
class ManualTimers final : public TimerSource {
public:
    std::unique_ptr<ProgramTimer> make(const char* name, int intervalMs) override
    {
        auto timer = std::make_unique<ManualTimer>(intervalMs);
        timers_[name] = timer.get();
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

    // While `context` lives, a running timer of this name ticks once the program has nothing else to
    // do (an update's look for late acknowledgements, the simulated host's gap between chunks), as
    // long as `wanted` holds. Nothing else to do: the loop, about to sleep, is given a timer of no
    // length, whose turn comes after the posted events' and the sockets'; if the program handles
    // any event before that turn, it was not idle after all (an arrival over loopback not yet
    // read, a packet not yet dispatched), and the next idle moment tries again.
    void tickWhenIdle(
        const std::string& name, QObject* context, std::function<bool()> wanted = [] { return true; })
    {
        Activity& activity = Activity::instance();
        auto* tick = new QTimer(context);
        tick->setSingleShot(true);
        tick->setInterval(0);
        auto eventsWhenIdle = std::make_shared<std::uint64_t>(0);
        QObject::connect(tick, &QTimer::timeout, context, [this, name, eventsWhenIdle, &activity] {
            if (activity.events() == *eventsWhenIdle + 1) // the tick's own event, nothing else
                fireIfRunning(name);
        });
        QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, tick,
            [this, name, tick, wanted, eventsWhenIdle, &activity] {
                if (tick->isActive() || !wanted() || !running(name))
                    return;
                *eventsWhenIdle = activity.events();
                tick->start();
            });
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
    std::set<std::string> whenFree_;
};

} // namespace corvane::test
