#pragma once

#include "platform/Idle.h"
#include "support/QtPrinting.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>

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

// Runs the event loop until the program is idle (see whenIdle) while `also` holds, or the limit
// passes: for what must not happen, which by then has not.
inline bool waitUntilIdle(
    const std::function<bool()>& also = [] { return true; }, int limitMs = 5000)
{
    return corvane::waitUntilIdle(also, limitMs);
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
