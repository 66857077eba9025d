#pragma once

#include <QObject>

#include <memory>

namespace corvane {

// A timer of the program's, named as the program names it (tmrIdleLogoff, tmrStartup, ...).
// The program's own run on Qt's clock; tests' ones tick when the test says, so that no test
// has to wait a minute for an idle tick or race a short interval.
class ProgramTimer : public QObject {
    Q_OBJECT

public:
    // "Restart" is stop, then start: a full interval runs from now.
    virtual void start() = 0;
    virtual void stop() = 0;
    virtual bool isActive() const = 0;
    virtual void setInterval(int ms) = 0;
    virtual int interval() const = 0;

Q_SIGNALS:
    void timeout();
};

// Makes the program's timers; passed in to whatever owns timers.
class TimerSource {
public:
    virtual ~TimerSource() = default;
    virtual std::unique_ptr<ProgramTimer> make(const char* name, int intervalMs) = 0;
};

// The real clock.
class QtTimers final : public TimerSource {
public:
    std::unique_ptr<ProgramTimer> make(const char* name, int intervalMs) override;
};

} // namespace corvane
