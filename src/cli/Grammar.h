#pragma once

#include <QString>
#include <QStringList>

#include <initializer_list>
#include <optional>
#include <utility>
#include <vector>

namespace corvane::cli {

// What a command does with the options every command knows: those it does not use are refused
// rather than passed over, so that a script that gives --host to a local command learns it.
enum Use : unsigned {
    ConnectsToHost = 1u << 0, // --host, --port, --host-number, --timeout
    LogsIn = 1u << 1, // --user, --password, --password-file
    WritesJson = 1u << 2, // --json
    Asks = 1u << 3, // --yes
};

// How a command's own option takes its value: not at all, the next word (or "=value"), or every
// word up to the next option.
enum class Takes { Nothing, Value, Words };
struct OwnOption {
    const char* name;
    Takes takes;
};

struct CommandGrammar {
    const char* name;
    unsigned uses;
    std::vector<OwnOption> own;
};

// Every command and what it takes.
const std::vector<CommandGrammar>& commandGrammars();
const CommandGrammar* grammarOf(const QString& name);

// The options every command knows, and the command with its own words and options. Global
// options go before or after the command; after it, an option of the command's own is the
// command's (history's --user names whose changes, users add's --password is the new user's);
// "--" ends the options.
struct Options {
    std::optional<QString> host;
    std::optional<int> port;
    std::optional<int> hostNumber;
    std::optional<int> timeoutSeconds;
    std::optional<QString> user;
    std::optional<QString> password;
    bool passwordOnCommandLine = false; // seen in the process list: warned about
    std::optional<QString> passwordFile;
    bool json = false;
    bool yes = false;
    QString command;
    QStringList arguments; // the command's words, its options taken out
    std::vector<std::pair<QString, QStringList>> own; // the command's own options, in order

    bool has(const char* name) const;
    // The last value given; none when the option was not.
    std::optional<QString> value(const char* name) const;
    // Every word given to the option, over all its uses.
    QStringList words(const char* name) const;
    // A usage error when an own option other than these was given (`what` names the subcommand).
    void allowOnly(std::initializer_list<const char*> names, const QString& what) const;
};

// A usage error: what was wrong, for standard error; exits 2.
struct UsageError {
    QString what;
};

// A whole number from `least` to `most` given to `option`; a usage error otherwise.
int numberOption(const QString& option, const QString& value, int least, int most);

// `environmentPassword`: what the environment offers (CORVANE_PASSWORD), taken when no other is given.
Options parseOptions(const QStringList& arguments, std::optional<QString> environmentPassword = {}); // throws UsageError

} // namespace corvane::cli
