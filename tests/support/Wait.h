#pragma once

#include <QEventLoop>
#include <QTimer>

#include <functional>

namespace corvane::test {

// Runs the event loop until `done` holds or the limit passes, looking again every few
// milliseconds (the loop sleeps in between; nothing spins).
inline bool waitUntil(const std::function<bool()>& done, int limitMs = 5000)
{
    QEventLoop loop;
    QTimer look;
    QTimer limit;
    limit.setSingleShot(true);
    QObject::connect(&look, &QTimer::timeout, &loop, [&] {
        if (done())
            loop.quit();
    });
    QObject::connect(&limit, &QTimer::timeout, &loop, &QEventLoop::quit);
    look.start(5);
    limit.start(limitMs);
    if (!done())
        loop.exec();
    return done();
}

} // namespace corvane::test
