#include "platform/ProgramTimer.h"

#include <QTimer>

namespace corvane {
namespace {

class QtTimer final : public ProgramTimer {
public:
    QtTimer(const char* name, int intervalMs)
    {
        setObjectName(QLatin1String(name));
        timer_.setInterval(intervalMs);
        connect(&timer_, &QTimer::timeout, this, &ProgramTimer::timeout);
    }

    void start() override { timer_.start(); }
    void stop() override { timer_.stop(); }
    bool isActive() const override { return timer_.isActive(); }
    void setInterval(int ms) override { timer_.setInterval(ms); }
    int interval() const override { return timer_.interval(); }

private:
    QTimer timer_;
};

} // namespace

std::unique_ptr<ProgramTimer> QtTimers::make(const char* name, int intervalMs)
{
    return std::make_unique<QtTimer>(name, intervalMs);
}

} // namespace corvane
