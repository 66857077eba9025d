#include "session/Terminal.h"

#include "runtime/RunTimeError.h"

namespace corvane {

Terminal::Terminal(
    Registry& registry, TimerSource& timers, std::string osUser, Places places, Clock clock, LogWriter writer)
    : places_(std::move(places))
    , logs_(places_.programFolder, std::move(clock), places_.timeLocale, std::move(writer))
    , registry_(registry)
    , timers_(timers)
    , osUser_(std::move(osUser))
    , config_(registry)
    , store_(places_.storeFile)
{
}

Terminal::~Terminal() = default;

HostSession& Terminal::attach(SessionUi& ui, std::string_view via)
{
    if (!session_) {
        session_ = std::make_unique<HostSession>(config_, ui, timers_, logs_);
        session_->setOrigin(std::string(via), osUser_);
    }
    return *session_;
}

HostSession& Terminal::session()
{
    if (!session_)
        raise(err::InternalError); // no front end has attached: a fault of the program
    return *session_;
}

} // namespace corvane
