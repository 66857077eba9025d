#pragma once

#include "support/QtPrinting.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>

#include <cstdint>
#include <functional>
#include <memory>

namespace corvane::test {

// Runs the event loop until `done` holds or the limit passes. `done` is looked at each time the
// loop has run out of events and is about to sleep, so nothing polls and nothing spins.
inline bool waitFor(const std::function<bool()>& done, int limitMs = 5000)
{
    if (done())
        return true;
    QEventLoop loop;
    QTimer limit;
    limit.setSingleShot(true);
    QObject::connect(&limit, &QTimer::timeout, &loop, &QEventLoop::quit);
    const auto look
        = QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, &loop, [&] {
              if (done())
                  loop.quit();
          });
    limit.start(limitMs);
    loop.exec();
    QObject::disconnect(look);
    return done();
}

// Counts the events the program handles, so that a watch for idleness can tell whether anything
// came between the moment the event loop was about to sleep and the watch's own turn.
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

// While `context` lives, calls `act` at each moment the program is idle while `ready` holds. Idle:
// the event loop, about to sleep, is given a timer of no length, whose turn comes after the posted
// events' and the sockets'; if any event is handled before that turn (an arrival over loopback not
// yet read, a packet not yet dispatched), the program was not idle after all, and the next such
// moment tries again. Watches made earlier have their turn first.
inline void whenIdle(QObject* context, std::function<bool()> ready, std::function<void()> act)
{
    Activity& activity = Activity::instance();
    auto* turn = new QTimer(context);
    turn->setSingleShot(true);
    turn->setInterval(0);
    auto handledBefore = std::make_shared<std::uint64_t>(0);
    QObject::connect(turn, &QTimer::timeout, context, [handledBefore, act, &activity] {
        if (activity.events() == *handledBefore + 1) // the turn's own event, nothing else
            act();
    });
    QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, turn,
        [turn, ready, handledBefore, &activity] {
            if (turn->isActive() || !ready())
                return;
            *handledBefore = activity.events();
            turn->start();
        });
}

// Runs the event loop until the program is idle (see whenIdle) while `also` holds, or the limit
// passes: for what must not happen, which by then has not.
inline bool waitUntilIdle(const std::function<bool()>& also = [] { return true; }, int limitMs = 5000)
{
    QEventLoop loop;
    bool idle = false;
    whenIdle(&loop, also, [&] {
        idle = true;
        loop.quit();
    });
    QTimer limit;
    limit.setSingleShot(true);
    QObject::connect(&limit, &QTimer::timeout, &loop, &QEventLoop::quit);
    limit.start(limitMs);
    loop.exec();
    return idle;
}

// Once `ready` returns something, calls `act` with it, once, as an event of its own. Meant for
// what comes up inside a nested loop the test does not run itself, such as a modal box; after
// the limit, `timedOut`.
template <typename Ready, typename Act>
void whenReady(Ready ready, Act act, std::function<void()> timedOut = {}, int limitMs = 5000)
{
    struct Watch {
        QMetaObject::Connection look;
        QTimer limit;
    };
    auto* watch = new Watch;
    auto finish = [watch] {
        QObject::disconnect(watch->look);
        watch->limit.stop();
        QTimer::singleShot(0, [watch] { delete watch; });
    };
    watch->look = QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock,
        QCoreApplication::instance(), [ready, act, finish]() mutable {
            if (auto found = ready()) {
                finish();
                QMetaObject::invokeMethod(
                    QCoreApplication::instance(), [act, found]() mutable { act(*found); }, Qt::QueuedConnection);
            }
        });
    watch->limit.setSingleShot(true);
    QObject::connect(&watch->limit, &QTimer::timeout, QCoreApplication::instance(), [timedOut, finish] {
        finish();
        if (timedOut)
            timedOut();
    });
    watch->limit.start(limitMs);
}

} // namespace corvane::test
