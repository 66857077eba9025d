#pragma once

#include "runtime/Logs.h"
#include "runtime/Places.h"
#include "security/Login.h"
#include "security/Rights.h"
#include "security/UserStore.h"
#include "session/HostConfiguration.h"
#include "session/HostSession.h"

#include <memory>
#include <string>
#include <string_view>

namespace corvane {

class Registry;
class SessionUi;
class TimerSource;

// One terminal of a DNC host, as the desktop program, the command-line client and the tests each
// hold one: its places, the configured hosts, the user store with the logged-in user's rights and
// log-in values, the clock of its timers, its logs and the clock they write the time by, the
// account running it, and the session with the host. Made once where a program starts (from the
// places its main found) and handed to what needs it. Its session comes with the front end
// that answers what the session shows and asks (the main window, the client).
class Terminal {
public:
    Terminal(Registry& registry, TimerSource& timers, std::string osUser, Places places, Clock clock = systemClock,
        LogWriter writer = {});
    ~Terminal();
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;

    const Places& places() const { return places_; }
    Logs& logs() { return logs_; }
    Registry& registry() { return registry_; }
    TimerSource& timers() { return timers_; }
    const std::string& osUser() const { return osUser_; }
    HostConfiguration& configuration() { return config_; }
    UserStore& users() { return store_; }
    const UserStore& users() const { return store_; }
    RightsList& rights() { return rights_; }
    LoginValues& login() { return login_; }

    // The session, made by the first front end that attaches (`via` names it in the record of
    // changes: "desktop", "cli"); one front end at a time answers it.
    HostSession& attach(SessionUi& ui, std::string_view via);
    bool attached() const { return session_ != nullptr; }
    // The attached session; a run-time error before any front end attached.
    HostSession& session();
    // The front end goes: its session ends with it (an update under way has been recorded).
    void detach() { session_.reset(); }

private:
    Places places_;
    Logs logs_;
    Registry& registry_;
    TimerSource& timers_;
    std::string osUser_;
    HostConfiguration config_;
    UserStore store_;
    RightsList rights_;
    LoginValues login_;
    std::unique_ptr<HostSession> session_;
};

// A front end's hold on its terminal's session, for as long as the front end lives.
class SessionHold {
public:
    SessionHold(Terminal& terminal, SessionUi& ui, std::string_view via)
        : terminal_(terminal)
        , session_(terminal.attach(ui, via))
    {
    }
    ~SessionHold() { terminal_.detach(); }
    SessionHold(const SessionHold&) = delete;
    SessionHold& operator=(const SessionHold&) = delete;
    HostSession& session() const { return session_; }

private:
    Terminal& terminal_;
    HostSession& session_;
};

} // namespace corvane
