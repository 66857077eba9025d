#include "platform/Idle.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>

#include <cstdint>
#include <memory>

namespace corvane {
namespace {

// Counts the events the program handles, so that a watch can tell whether anything came between
// the moment the loop was about to sleep and the watch's own turn.
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

} // namespace

void whenIdle(QObject* context, std::function<bool()> ready, std::function<void()> act)
{
    Activity& activity = Activity::instance();
    auto* turn = new QTimer(context);
    turn->setSingleShot(true);
    turn->setInterval(0);
    auto handledBefore = std::make_shared<std::uint64_t>(0);
    QObject::connect(turn, &QTimer::timeout, context, [handledBefore, act = std::move(act), &activity] {
        if (activity.events() == *handledBefore + 1) // the turn's own event, nothing else
            act();
    });
    QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, turn,
        [turn, ready = std::move(ready), handledBefore, &activity] {
            if (turn->isActive() || !ready())
                return;
            *handledBefore = activity.events();
            turn->start();
        });
}

bool waitUntilIdle(std::function<bool()> ready, int limitMs)
{
    QEventLoop loop;
    bool idle = false;
    whenIdle(&loop, std::move(ready), [&] {
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

} // namespace corvane
