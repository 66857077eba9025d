#include "cli/Cli.h"

#include "cli/PasswordInput.h"

#include "platform/Latin1.h"
#include "runtime/ErrorLog.h"
#include "runtime/MessageStyle.h"
#include "runtime/RunTimeError.h"
#include "session/LastUser.h"
#include "shell/ConfigurationRules.h"
#include "shell/GridRules.h"
#include "shell/SessionMessages.h"
#include "shell/VersionRules.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTimer>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>

namespace corvane::cli {
namespace {

constexpr int AnswerLimitMs = 5000; // a host that answers nothing in this time does not answer

struct Command {
    const char* name;
    int (*run)(Client&);
    const char* usage;
    const char* summary;
};

// In the order the help lists them.
constexpr Command Commands[] = {
    {"status", status, "status", "the port table: one line per port whose row holds any text"},
    {"watch", watch, "watch [--interval SECONDS] [--count N]",
        "refresh every interval (default 5) and print each port whose row changed;\n"
        "stop after N refreshes when given, else on an interrupt"},
    {"purge", purge, "purge PORT", "purge and reset the port shown as PORT (1 to 128) in the grid (asks: --yes)"},
    {"get-parms", getParms, "get-parms PORT", "fetch and print the port's two parameter records"},
    {"set-parms", setParms, "set-parms PORT NAME=VALUE... [--dry-run]",
        "fetch, apply each change through the editor's rules in the order given,\nthen send the update"},
    {"fields", fields, "fields", "the fields set-parms and import take: each one's values and the editor's caption"},
    {"export", exportParms, "export PORT... --file FILE",
        "fetch each port and write its records to FILE (JSON; - for standard output)"},
    {"import", importParms, "import FILE [PORT...] [--to PORT] [--dry-run]",
        "send the records in FILE to their ports (each through the update exchange); with --to,\n"
        "the file's one port (or the PORT named) into another, which keeps its own identity\n"
        "(wstat_name, Port_No)"},
    {"copy-parms", copyParms, "copy-parms FROM TO... [--all-fields] [--dry-run]",
        "give each TO the set FROM's host holds, through the editor's rules; each keeps its own\n"
        "wstat_name and Port_No unless --all-fields; one record line per target"},
    {"revert", revert, "revert PORT [--before TIME] [--force] [--dry-run]",
        "put the port back as it was before its last recorded change (or the last before TIME),\n"
        "through the rules; refused, naming the fields, when the host no longer holds what that\n"
        "change sent, unless --force"},
    {"diff", diff, "diff PORT FILE|PORT", "each field in which the port differs from an export or another port"},
    {"history", history, "history [PORT] [--user NAME] [--since TIME] [--until TIME]",
        "the record of changes (parameters, purges, users, configuration), oldest first;\n"
        "those of one port, of a user (logged in or authorising), from or up to a time\n"
        "(ISO 8601: 2026-11-15, 2026-11-15T08:30, ...; a date alone is the whole day)"},
    {"config", config,
        "config show [--system]\n"
        "config set-host N [--name T] [--address A] [--socket-port P] [--system]\n"
        "config set-idle MINUTES [--system]",
        "the five hosts and the idle minutes, as the configuration form keeps them; --system: those\n"
        "every user of this computer starts from (an administrator's), which a user's own stand before"},
    {"init-store", initStore, "init-store", "create a first user store"},
    {"users", users,
        "users list\n"
        "users add NAME [--password T] [--grant RIGHT...]\n"
        "users passwd NAME [--new-password T | --no-password]   (without either: typed twice, or one line from a "
        "pipe)\n"
        "users grant NAME RIGHT...\n"
        "users revoke NAME RIGHT...\n"
        "users delete NAME   (asks: --yes)",
        "the users and their rights (the supervisor only)"},
};

const Command* commandNamed(const QString& name)
{
    for (const Command& c : Commands)
        if (name == QLatin1String(c.name))
            return &c;
    return nullptr;
}

// Each line of `text` after the first set in by `indent`.
QString indented(const char* text, const QString& indent)
{
    return QLatin1String(text).toString().replace(QLatin1Char('\n'), QLatin1Char('\n') + indent);
}

} // namespace

QString helpText(const QString& command)
{
    if (const Command* c = commandNamed(command))
        return QStringLiteral("Usage: corvane-remote-cli [options] %1\n\n%2\n")
            .arg(indented(c->usage, QStringLiteral("       corvane-remote-cli [options] ")), QLatin1String(c->summary));
    QString text = QStringLiteral(
        "Usage: corvane-remote-cli [options] COMMAND [arguments]\n\n"
        "The remote terminal of a DNC host for scripts: the desktop program's session, rules, user store\n"
        "and access checks, without windows.\n\n"
        "Options:\n"
        "  --host ADDRESS        host address (default: the configured host chosen by --host-number,\n"
        "                        else the last host)\n"
        "  --port N              TCP port (default: the configured socket port of that host; 49140 with\n"
        "                        --host and no configuration)\n"
        "  --host-number N       configured host N, 1 to 5\n"
        "  --timeout SECONDS     the longest wait for the connect and for each reply (default: the\n"
        "                        desktop's own waits)\n"
        "  --user NAME           log in as NAME\n"
        "  --password-file FILE  its password: the first line of FILE, which only its owner may read\n"
        "  --password TEXT       its password, seen by every user in the process list (warned about);\n"
        "                        else CORVANE_PASSWORD, else asked for without echo at a terminal\n"
        "  --json                machine-readable output on standard output\n"
        "  --yes                 answer Yes to the questions (purge, deleting a user, the supervisor's\n"
        "                        first password)\n"
        "  --help, --version     this text (COMMAND --help: the command's own), the program's version\n\n"
        "Options go before or after the command; after it, an option of the command's own is the\n"
        "command's (history --user NAME). \"--\" ends the options. An option the command does not use\n"
        "(--host for a command that connects to no host) is a usage error.\n\n"
        "Commands:\n");
    for (const Command& c : Commands)
        text += QStringLiteral("  %1\n        %2\n")
                    .arg(indented(c.usage, QStringLiteral("  ")), indented(c.summary, QStringLiteral("        ")));
    text += QStringLiteral(
        "\nPORT is the number the grid shows, 1 to 128; where several are taken, also a range or a list\n"
        "(1-16,20) or all. --dry-run fetches and applies the rules, prints what would change (field,\n"
        "old -> new) and sends nothing. RIGHT is a position of the rights list (0, 4) or its\n"
        "short name (all, comm-parameters). Without --user the start-up log-in applies, asking nothing.\n\n"
        "Exit status: 0 done; 1 the host did not answer in time or did not acknowledge an update; 2 usage\n"
        "error or refused value; 3 could not connect, or the connection ended; 4 host version refused;\n"
        "5 access refused or log-in failed; 6 a run-time error ended it (its number is said and logged), or\n"
        "a file could not be written; 128 + N: signal N (SIGINT, SIGTERM, SIGHUP) ended it in order;\n"
        "141: the reader of its output has gone.\n");
    return text;
}

namespace {

void writeOut(QByteArray bytes, const ClientStreams& streams)
{
    if (!bytes.endsWith('\n'))
        bytes.append('\n');
    errno = 0;
    if (std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), streams.out)
            != static_cast<std::size_t>(bytes.size())
        || std::fflush(streams.out) != 0) {
        // A reader that has gone (`| head`) ends the client quietly, as the pipe's signal ends
        // any command; any other failure to write is said.
        if (errno == EPIPE)
            Client::end(128 + SIGPIPE);
        std::fprintf(streams.err, "corvane-remote-cli: cannot write to standard output: %s\n", std::strerror(errno));
        Client::end(RunTimeFault);
    }
}

} // namespace

Client::Client(Options options, Terminal& terminal, ClientStreams streams)
    : options_(std::move(options))
    , terminal_(terminal)
    , streams_(streams)
{
    terminal_.configuration().load();
}

Client::~Client()
{
    terminal_.detach(); // the session answers to this client only
}

HostSession& Client::session()
{
    return terminal_.attach(*this, "cli");
}

// Whatever a stopping signal interrupted has finished its books (an update its line of the
// record) by the time the command returns.
int Client::run()
{
    stops_ = std::make_unique<StopSignals>([this] {
        if (terminal_.attached())
            terminal_.session().cancelWaits();
    });
    const int status = runCommand();
    const int signal = stopSignal();
    stops_.reset();
    return signal ? 128 + signal : status;
}

// Where the password comes from: a file only its owner may read, the command line (which every
// user of the computer can see), the environment, or a prompt without echo.
void Client::resolvePassword()
{
    if (options_.passwordOnCommandLine)
        say("corvane-remote-cli: warning: a password given with --password can be seen by every user of this "
            "computer in the process list; use --password-file, CORVANE_PASSWORD or the prompt.");
    if (options_.passwordFile) {
        const PasswordFromFile read = readPasswordFile(options_.passwordFile->toLocal8Bit().toStdString());
        if (!read.password)
            throw UsageError{QString::fromLocal8Bit(read.refusal.c_str())};
        options_.password = fromLatin1Bytes(*read.password);
    }
    if (options_.user && !options_.password)
        if (const auto typed = askPassword("Password for " + toLatin1Bytes(*options_.user) + ": "))
            options_.password = fromLatin1Bytes(*typed);
}

int Client::runCommand()
{
    try {
        resolvePassword();
        if (options_.command == QLatin1String("help")) {
            writeOut(helpText(options_.arguments.value(0)).toLocal8Bit(), streams_);
            return Done;
        }
        if (options_.arguments.contains(QStringLiteral("--help"))) {
            writeOut(helpText(options_.command).toLocal8Bit(), streams_);
            return Done;
        }
        if (options_.command == QLatin1String("version")) {
            print(QString::fromStdString(versionLine("corvane-remote-cli")));
            return Done;
        }
        const Command* command = commandNamed(options_.command);
        if (!command)
            throw UsageError{QStringLiteral("Unknown command '%1'.").arg(options_.command)};
        return command->run(*this);
    } catch (const UsageError& e) {
        say("corvane-remote-cli: " + toLatin1Bytes(e.what) + "\nTry 'corvane-remote-cli "
            + toLatin1Bytes(options_.command) + " --help'.");
        return Usage;
    } catch (const Ending& e) {
        return e.status;
    } catch (const std::exception& e) {
        // What no routine traps ends the program, as on the desktop: logged, and said.
        const int number = errorNumberOf(e);
        Log_Run_Time_Error(terminal_.logs(), 0, number);
        say("Run-time error '" + std::to_string(number) + "':\n" + errorDescription(number));
        return number == err::SocketBadState ? NoConnection : RunTimeFault;
    }
}

void Client::logIn()
{
    const StoreLoad load = loadUserStore(terminal_.users(), terminal_.logs());
    if (load == StoreLoad::Missing) {
        // A first run, not an attack: where the store was looked for, and how to make one.
        say("corvane-remote-cli: there is no user store at " + terminal_.users().path
            + ".\nCreate the first one with 'corvane-remote-cli init-store' (where the package made the store's"
              "\nfolder, as a member of the group corvane), then log in as SUPERVISOR and give it a password.");
        end(AccessRefused);
    }
    if (load != StoreLoad::Loaded) {
        say(message::accessDenied());
        if (!terminal_.users().fault.empty())
            say(terminal_.users().fault);
        end(AccessRefused);
    }
    Load_Rights_List(terminal_.rights(), "CVREMOTE");
    if (options_.user) {
        std::int16_t index = 0;
        std::string typed = toLatin1Bytes(options_.password.value_or(QString()));
        const LoginCheck check = checkLogin(terminal_.users(), toLatin1Bytes(*options_.user), typed, index);
        // The password has done its work: it stays in no buffer of ours.
        std::fill(typed.begin(), typed.end(), '\0');
        if (options_.password) {
            options_.password->fill(QChar(0));
            options_.password.reset();
        }
        switch (check) {
        case LoginCheck::Ok:
            terminal_.users().CurrentUser = index;
            break;
        case LoginCheck::InvalidUserName:
            say("Invalid User Name");
            end(AccessRefused);
        case LoginCheck::InvalidPassword:
            say("Invalid Password");
            end(AccessRefused);
        }
    } else {
        // The start-up rules, asking nothing: a remembered user with a password falls to the guest.
        Initial_Login(terminal_.users(), Get_Last_User(terminal_.registry()), terminal_.login(), *this);
    }
    const UserEntry* current = terminal_.users().liveUser(terminal_.users().CurrentUser);
    if (!current) {
        say("Nobody could be logged in: the user store holds no entry for this log-in.");
        end(AccessRefused);
    }
    session().setUserName(current->UserName);
}

void Client::needRight(std::int16_t right)
{
    if (!Check_Access(terminal_.users(), right, FalseValue, *this)) {
        showAccessNotAllowed();
        end(AccessRefused);
    }
}

void Client::needSupervisor()
{
    if (!terminal_.users().isSupervisor(terminal_.users().CurrentUser)) {
        showAccessNotAllowed();
        end(AccessRefused);
    }
}

void Client::connect()
{
    const int n = options_.hostNumber.value_or(std::clamp(terminal_.configuration().Get_LastHostIPIndex().toInt(), 1, HostCount));
    const auto i = static_cast<std::size_t>(n);
    if (options_.host) {
        // An address given for a host slot nobody configured goes to the host's usual port.
        if (terminal_.configuration().HostIPs[i].isEmpty())
            terminal_.configuration().SocketPorts[i] = DefaultHostPort;
        terminal_.configuration().HostIPs[i] = *options_.host;
    }
    if (options_.port)
        terminal_.configuration().SocketPorts[i] = *options_.port;
    const QString where
        = QStringLiteral("%1:%2").arg(terminal_.configuration().HostIPs[i]).arg(terminal_.configuration().SocketPorts[i]);
    HostSession& s = session();
    if (options_.timeoutSeconds)
        s.setReplyLimit(replyLimitMs());
    s.cboHostName_Click(n);
    const int tableChangesBefore = tableChanges_;
    s.Command1_Click(terminal_.configuration().HostIPs[i]);
    // The connect and the version's reply within --timeout; a socket that fails (refused, no
    // route) ends it at once, with the system's reason, rather than at the end of the wait.
    bool expired = false;
    std::unique_ptr<ProgramTimer> limit;
    if (options_.timeoutSeconds) {
        limit = terminal_.timers().make("tmrConnectLimit", *options_.timeoutSeconds * 1000);
        QObject::connect(limit.get(), &ProgramTimer::timeout, [&expired, &limit, &s] {
            limit->stop();
            expired = true;
            s.cancelWaits();
        });
        limit->start();
    }
    const auto connecting = [&s] {
        return s.connectState() == ConnectState::Connecting || s.connectState() == ConnectState::AwaitingVersion;
    };
    s.waitUntil([&] { return stopSignal() != 0 || !connecting() || expired || !s.socketFailure().isEmpty(); });
    endIfStopped();
    const QString reason = s.socketFailure();
    if (connecting()) {
        s.abandonConnect();
        say(toLatin1Bytes(QStringLiteral("corvane-remote-cli: could not connect to %1: %2")
                .arg(where, !reason.isEmpty() ? reason : QStringLiteral("no answer within %1 s").arg(*options_.timeoutSeconds))));
        end(s.connectFailure() == ConnectFailure::VersionTimedOut ? NoAnswer : NoConnection);
    }
    switch (s.connectFailure()) {
    case ConnectFailure::None:
        if (!s.connected())
            end(NoConnection);
        // The host answers the connect's own status request after announcing its machine
        // types; a command that starts before then would take those for its own answers.
        awaitPortStates(tableChangesBefore);
        return;
    case ConnectFailure::VersionTimedOut:
        end(NoAnswer);
    case ConnectFailure::VersionRefused:
        end(VersionRefused);
    case ConnectFailure::Refused:
    case ConnectFailure::TimedOut:
        say(toLatin1Bytes(QStringLiteral("corvane-remote-cli: could not connect to %1: %2")
                .arg(where, reason.isEmpty() ? QStringLiteral("no answer") : reason)));
        end(NoConnection);
    }
}

int Client::replyLimitMs() const
{
    return options_.timeoutSeconds ? *options_.timeoutSeconds * 1000 : AnswerLimitMs;
}

void Client::awaitPortStates(int before)
{
    if (!waitFor([this, before] { return tableChanges_ > before; }, replyLimitMs())) {
        say("The host sent no port states.");
        end(NoAnswer);
    }
}

bool Client::waitFor(const std::function<bool()>& done, int limitMs, const char* timer)
{
    bool expired = false;
    const std::unique_ptr<ProgramTimer> limit = terminal_.timers().make(timer, limitMs);
    QObject::connect(limit.get(), &ProgramTimer::timeout, [this, &expired, &limit] {
        limit->stop();
        expired = true;
        session().cancelWaits();
    });
    limit->start();
    session().waitUntil([&] { return done() || expired || stopSignal() != 0; });
    endIfStopped();
    return done();
}

void Client::pause(const char* name, int ms)
{
    waitFor([] { return false; }, ms, name);
}

void Client::endIfStopped() const
{
    if (const int signal = stopSignal())
        end(128 + signal);
}

void Client::recordLocalChange(std::string_view kind, std::vector<RecordedField> fields)
{
    corvane::recordLocalChange(terminal_.logs(), kind, session().changeActor(), std::move(fields));
}

void Client::drain()
{
    waitFor([this] { return session().allSent(); }, replyLimitMs());
}

std::int16_t Client::portArgument(const QString& text) const
{
    if (text.contains(QLatin1Char(',')) || text.indexOf(QLatin1Char('-'), 1) > 0 || text == QLatin1String("all"))
        throw UsageError{QStringLiteral("%1 takes one PORT, not \"%2\"").arg(options_.command, text)};
    return static_cast<std::int16_t>(numberOption(QStringLiteral("PORT"), text, 1, GridRows));
}

std::vector<std::int16_t> Client::portSet(const QStringList& words) const
{
    std::vector<bool> chosen(GridRows + 1, false);
    const auto refuse = [](const QString& word) {
        return UsageError{QStringLiteral("PORT takes 1 to %1, a range such as 1-16, a list such as 1,3,5, or all; not \"%2\"")
                .arg(GridRows)
                .arg(word)};
    };
    for (const QString& word : words)
        for (const QString& item : word.split(QLatin1Char(','))) {
            if (item == QLatin1String("all")) {
                std::fill(chosen.begin() + 1, chosen.end(), true);
                continue;
            }
            const qsizetype dash = item.indexOf(QLatin1Char('-'), 1);
            bool ok = true, okTo = true;
            const int from = (dash > 0 ? item.left(dash) : item).toInt(&ok);
            const int to = dash > 0 ? item.mid(dash + 1).toInt(&okTo) : from;
            if (!ok || !okTo || from < 1 || to > GridRows || from > to)
                throw refuse(word);
            std::fill(chosen.begin() + from, chosen.begin() + to + 1, true);
        }
    std::vector<std::int16_t> ports;
    for (int port = 1; port <= GridRows; ++port)
        if (chosen[static_cast<std::size_t>(port)])
            ports.push_back(static_cast<std::int16_t>(port));
    if (ports.empty())
        throw UsageError{QStringLiteral("%1 takes at least one PORT").arg(options_.command)};
    return ports;
}

// Text from the host (names, messages, versions) reaches a terminal as it stands only where it
// is plain: a control character (C0, DEL, or C1, which some terminals take as the start of a
// command) is written as \xNN, so that no host can move the cursor, ring, retitle the window or
// forge a line of output.
QString shownOnTerminal(const QString& text, bool keepLineBreaks)
{
    QString out;
    out.reserve(text.size());
    for (const QChar c : text) {
        const char16_t u = c.unicode();
        const bool control = u < 0x20 || (u >= 0x7f && u < 0xa0);
        if (!control || u == u'\t' || (keepLineBreaks && u == u'\n'))
            out += c;
        else
            out += QStringLiteral("\\x%1").arg(static_cast<int>(u), 2, 16, QLatin1Char('0'));
    }
    return out;
}

void Client::say(const std::string& text) const
{
    std::string lines = text;
    for (std::size_t at = lines.find("\r\n"); at != std::string::npos; at = lines.find("\r\n", at))
        lines.erase(at, 1);
    std::fprintf(streams_.err, "%s\n", qPrintable(shownOnTerminal(fromLatin1Bytes(lines), true)));
    std::fflush(streams_.err);
}

void Client::print(const QString& text) const
{
    writeOut(shownOnTerminal(text, false).toLocal8Bit(), streams_);
}

void Client::printJson(const QJsonValue& value, bool indented) const
{
    const auto format = indented ? QJsonDocument::Indented : QJsonDocument::Compact;
    writeOut(value.isArray() ? QJsonDocument(value.toArray()).toJson(format)
                             : QJsonDocument(value.toObject()).toJson(format),
        streams_);
}

// SessionUi: what the desktop shows in a box goes to standard error; a question is answered by --yes.

void Client::showMessage(const std::string& text)
{
    say(text);
}

std::int16_t Client::askYesNo(const std::string& text)
{
    say(text);
    return options_.yes ? msg::ResultYes : msg::ResultNo;
}

void Client::portTableChanged()
{
    ++tableChanges_;
}

void Client::notFtpRefused()
{
    say(std::string(message::NotFtpCaption));
    ftpRefused_ = true;
}

void Client::idleLoggedOff()
{
    loggedOff_ = true;
    session().cancelWaits();
}

TempUserAnswer Client::askTemporaryUser()
{
    return {false, true, {}, {}};
}

void Client::showAccessNotAllowed()
{
    say(std::string(AccessNotAllowed));
}

void Client::showChangeUser(LoginValues& values)
{
    values.LoginResult = std::string(LoginCancelled);
}

} // namespace corvane::cli
