#pragma once

#include "cli/Grammar.h"
#include "platform/ProgramTimer.h"
#include "platform/Registry.h"
#include "platform/StopSignals.h"
#include "security/Login.h"
#include "security/Rights.h"
#include "security/UserStore.h"
#include "session/HostConfiguration.h"
#include "session/HostSession.h"
#include "session/Terminal.h"

#include <QDateTime>
#include <QJsonValue>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace corvane::cli {

// How the client ends, for scripts.
enum Exit : int {
    Done = 0,
    NoAnswer = 1, // the host did not answer in time, or did not acknowledge an update
    Usage = 2, // a usage error, or a value refused
    NoConnection = 3, // could not connect (an unconfigured host included), or the connection went
    VersionRefused = 4,
    AccessRefused = 5, // access refused or log-in failed
    RunTimeFault = 6, // a run-time error no routine traps (a store that cannot be written, ...)
    // A signal (SIGINT, SIGTERM, SIGHUP) ends it with 128 + its number.
};

// Where a host listens unless it is configured otherwise.
inline constexpr int DefaultHostPort = 49140;

// An end the command reached on its way: the status, the message already said.
struct Ending {
    int status;
};

// Text as it may reach a terminal: control characters written as \xNN (line breaks kept when
// asked).
QString shownOnTerminal(const QString& text, bool keepLineBreaks);
QString helpText(const QString& command = {});
// A TIME option's value (--since, --until, --before): an ISO 8601 date or date and time, local
// unless it carries an offset; a date alone is the whole of that day (`until`: up to its end).
QDateTime timeArgument(const QString& option, const QString& text, bool until);

// The client: the desktop's session, rules, user store and access checks, answered on the
// terminal. Every message the desktop shows in a box goes to standard error, word for word.
// Where the client writes: standard output and standard error, unless a test gives others.
struct ClientStreams {
    std::FILE* out = stdout;
    std::FILE* err = stderr;
};

class Client : private SessionUi, private AccessUi, private LoginUi {
public:
    // The terminal it answers for: its hosts, user store, clock (the real one, or a test's) and
    // the account running the client (for the record of changes).
    Client(Options options, Terminal& terminal, ClientStreams streams = {});
    ~Client() override;

    // Runs the command; the exit status.
    int run();

    // What the commands share.
    const Options& options() const { return options_; }
    Registry& registry() { return terminal_.registry(); }
    HostConfiguration& configuration() { return terminal_.configuration(); }
    UserStore& users() { return terminal_.users(); }
    Logs& logs() { return terminal_.logs(); }
    const RightsList& rights() const { return terminal_.rights(); }
    TimerSource& timers() { return terminal_.timers(); }
    HostSession& session();
    // The user store loaded and the user logged in: the start-up rules, or --user and its
    // password. Ends with 5 when it cannot be done.
    void logIn();
    // The right the command needs (no temporary user): ends with 5 on a refusal.
    void needRight(std::int16_t right);
    void needSupervisor();
    // Connected to the chosen host, its version accepted and its first port states in; ends
    // with 1, 3 or 4 otherwise.
    void connect();
    int portTableChanges() const { return tableChanges_; }
    // The longest wait for a reply: --timeout, else the client's own.
    int replyLimitMs() const;
    bool ftpRefused() const { return ftpRefused_; }
    bool loggedOff() const { return loggedOff_; }
    // Waits until `done` holds, the session's events waking the wait; false after `limitMs`.
    // A stopping signal ends the client.
    bool waitFor(const std::function<bool()>& done, int limitMs, const char* timer = "tmrAnswerLimit");
    // The stopping signal that came (SIGINT, SIGTERM, SIGHUP), 0 while none has; once one has,
    // the session's waits are called off and endIfStopped() ends the client with 128 + it.
    int stopSignal() const { return stops_ ? stops_->caught() : 0; }
    void endIfStopped() const;
    // A change made on this computer (users, configuration), recorded in the client's name.
    void recordLocalChange(std::string_view kind, std::vector<RecordedField> fields);
    // What was sent goes out before the client ends.
    void drain();
    // Nothing for `ms` on the timer `name`; a stopping signal ends the client.
    void pause(const char* name, int ms);
    // A port as the grid shows it (1-128) from an argument; ends with 2 when it is none.
    std::int16_t portArgument(const QString& text) const;
    // Ports from arguments: numbers, ranges and lists ("1-16,20"), or "all"; each once, in the
    // grid's order. Ends with 2 on a word that is none of these, or when none is given.
    std::vector<std::int16_t> portSet(const QStringList& words) const;
    // Whether the command only shows what it would send (--dry-run).
    bool dryRun() const { return options_.has("--dry-run"); }

    void say(const std::string& text) const; // standard error, CR LF as new lines
    std::FILE* errorStream() const { return streams_.err; }
    std::FILE* outputStream() const { return streams_.out; }
    // Standard output, one line; a write that fails ends the client with 6.
    void print(const QString& text) const;
    void printJson(const QJsonValue& value, bool indented = false) const;
    [[noreturn]] static void end(int status) { throw Ending{status}; }

private:
    int runCommand();
    void resolvePassword();
    void awaitPortStates(int tableChangesBefore);
    // SessionUi
    void showMessage(const std::string& text) override;
    std::int16_t askYesNo(const std::string& text) override;
    void showSocketStatus(const QString&, std::uint32_t) override { }
    void portTableChanged() override;
    void rememberGridPosition() override { }
    void afterDisconnect() override { }
    void notFtpRefused() override;
    void idleLoggedOff() override;
    // AccessUi, LoginUi: nothing is ever asked.
    TempUserAnswer askTemporaryUser() override;
    void showAccessNotAllowed() override;
    void showChangeUser(LoginValues& values) override;

    Options options_;
    Terminal& terminal_;
    ClientStreams streams_;
    std::unique_ptr<StopSignals> stops_;
    int tableChanges_ = 0;
    bool ftpRefused_ = false;
    bool loggedOff_ = false;
};

// The commands, each in its own place.
int status(Client& client);
int watch(Client& client);
int purge(Client& client);
int getParms(Client& client);
int fields(Client& client);
int setParms(Client& client);
int exportParms(Client& client);
int importParms(Client& client);
int copyParms(Client& client);
int revert(Client& client);
int diff(Client& client);
int history(Client& client);
int config(Client& client);
int initStore(Client& client);
int users(Client& client);

} // namespace corvane::cli
