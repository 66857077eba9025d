#include "cli/Grammar.h"

#include "session/HostConfiguration.h"

#include <algorithm>

namespace corvane::cli {

const std::vector<CommandGrammar>& commandGrammars()
{
    constexpr unsigned Session = ConnectsToHost | LogsIn;
    constexpr Takes Value = Takes::Value;
    constexpr Takes Nothing = Takes::Nothing;
    static const std::vector<CommandGrammar> table = {
        {"status", Session | WritesJson, {}},
        {"watch", Session | WritesJson, {{"--interval", Value}, {"--count", Value}, {"--poll", Nothing}}},
        {"purge", Session | Asks, {}},
        {"get-parms", Session | WritesJson, {}},
        {"set-parms", Session | WritesJson, {{"--dry-run", Nothing}}},
        {"fields", WritesJson, {}},
        {"export", Session, {{"--file", Value}}},
        {"import", Session | WritesJson, {{"--to", Value}, {"--dry-run", Nothing}}},
        {"copy-parms", Session | WritesJson, {{"--all-fields", Nothing}, {"--dry-run", Nothing}}},
        {"revert", Session | WritesJson, {{"--before", Value}, {"--force", Nothing}, {"--dry-run", Nothing}}},
        {"diff", Session | WritesJson, {}},
        {"history", WritesJson, {{"--user", Value}, {"--since", Value}, {"--until", Value}}},
        {"config", LogsIn | WritesJson,
            {{"--name", Value}, {"--address", Value}, {"--socket-port", Value}, {"--system", Nothing}}},
        {"init-store", 0, {}},
        {"users", LogsIn | WritesJson | Asks,
            {{"--password", Value}, {"--grant", Takes::Words}, {"--new-password", Value},
                {"--no-password", Nothing}}},
    };
    return table;
}

const CommandGrammar* grammarOf(const QString& name)
{
    const auto& table = commandGrammars();
    const auto found = std::find_if(
        table.begin(), table.end(), [&name](const CommandGrammar& s) { return name == QLatin1String(s.name); });
    return found == table.end() ? nullptr : &*found;
}

bool Options::has(const char* name) const
{
    return std::any_of(own.begin(), own.end(), [name](const auto& o) { return o.first == QLatin1String(name); });
}

std::optional<QString> Options::value(const char* name) const
{
    for (auto it = own.rbegin(); it != own.rend(); ++it)
        if (it->first == QLatin1String(name))
            return it->second.value(0);
    return std::nullopt;
}

QStringList Options::words(const char* name) const
{
    QStringList out;
    for (const auto& [option, values] : own)
        if (option == QLatin1String(name))
            out << values;
    return out;
}

void Options::allowOnly(std::initializer_list<const char*> names, const QString& what) const
{
    for (const auto& [option, values] : own)
        if (std::none_of(names.begin(), names.end(), [&option](const char* n) { return option == QLatin1String(n); }))
            throw UsageError{QStringLiteral("%1 does not take %2").arg(what, option)};
}

int numberOption(const QString& option, const QString& value, int least, int most)
{
    bool ok = false;
    const int n = value.toInt(&ok);
    if (!ok || n < least || n > most)
        throw UsageError{QStringLiteral("%1 takes %2 to %3, not \"%4\"").arg(option).arg(least).arg(most).arg(value)};
    return n;
}

namespace {

// The longest a script may ask the client to wait for a connect or a reply.
constexpr int MostTimeoutSeconds = 3600;

// Where a global option given to a command that does not use it is refused, with why.
void refuseUnused(const Options& o, const CommandGrammar& grammar, const QStringList& given)
{
    const auto refuse = [&](const QString& option, const char* why) {
        throw UsageError{QStringLiteral("%1 %2: %3 is not used").arg(o.command, QLatin1String(why), option)};
    };
    for (const QString& option : given) {
        const bool hostOption = option == QLatin1String("--host") || option == QLatin1String("--port")
            || option == QLatin1String("--host-number") || option == QLatin1String("--timeout");
        const bool logInOption = option == QLatin1String("--user") || option == QLatin1String("--password")
            || option == QLatin1String("--password-file");
        if (hostOption && !(grammar.uses & ConnectsToHost))
            refuse(option, "does not connect to a host");
        if (logInOption && !(grammar.uses & LogsIn))
            refuse(option, "logs nobody in");
        if (option == QLatin1String("--json") && !(grammar.uses & WritesJson))
            refuse(option, "writes no JSON");
        if (option == QLatin1String("--yes") && !(grammar.uses & Asks))
            refuse(option, "asks nothing");
    }
}

} // namespace

Options parseOptions(const QStringList& arguments, std::optional<QString> environmentPassword)
{
    Options o;
    const CommandGrammar* grammar = nullptr;
    bool optionsEnded = false;
    QStringList globalsGiven;
    for (qsizetype i = 1; i < arguments.size(); ++i) {
        const QString& a = arguments[i];
        const bool isOption = !optionsEnded && a.startsWith(QLatin1Char('-')) && a != QLatin1String("-");
        if (!isOption) {
            if (o.command.isEmpty()) {
                o.command = a;
                grammar = grammarOf(a);
                if (!grammar)
                    throw UsageError{QStringLiteral("Unknown command '%1'.").arg(a)};
            } else {
                o.arguments << a;
            }
            continue;
        }
        if (a == QLatin1String("--")) {
            optionsEnded = true;
            continue;
        }
        const qsizetype equals = a.indexOf(QLatin1Char('='));
        const QString name = equals < 0 ? a : a.left(equals);
        const auto value = [&]() -> QString {
            if (equals >= 0)
                return a.mid(equals + 1);
            if (i + 1 >= arguments.size())
                throw UsageError{name + QStringLiteral(" needs a value")};
            return arguments[++i];
        };
        const auto noValue = [&] {
            if (equals >= 0)
                throw UsageError{name + QStringLiteral(" takes no value")};
        };
        // The command's own first: after the command, its own option wins over a global one.
        if (grammar) {
            const auto ownOption = std::find_if(grammar->own.begin(), grammar->own.end(),
                [&name](const OwnOption& s) { return name == QLatin1String(s.name); });
            if (ownOption != grammar->own.end()) {
                QStringList values;
                if (ownOption->takes == Takes::Nothing)
                    noValue();
                else if (ownOption->takes == Takes::Value)
                    values << value();
                else {
                    if (equals >= 0)
                        values << a.mid(equals + 1);
                    while (i + 1 < arguments.size() && !arguments[i + 1].startsWith(QLatin1Char('-')))
                        values << arguments[++i];
                    if (values.isEmpty())
                        throw UsageError{name + QStringLiteral(" needs at least one value")};
                }
                o.own.emplace_back(name, values);
                continue;
            }
        }
        if (name == QLatin1String("--help") || name == QLatin1String("-h")) {
            // The help of the command given, or of the one that follows; what else follows is
            // not looked at: the help is what was asked for.
            noValue();
            QString topic = o.command;
            if (topic.isEmpty() && i + 1 < arguments.size() && grammarOf(arguments[i + 1]))
                topic = arguments[i + 1];
            o.command = QStringLiteral("help");
            o.arguments = QStringList{topic};
            return o;
        }
        if (name == QLatin1String("--version")) {
            noValue();
            o.command = QStringLiteral("version");
            o.arguments.clear();
            break;
        }
        globalsGiven << name;
        if (name == QLatin1String("--json")) {
            noValue();
            o.json = true;
        } else if (name == QLatin1String("--yes")) {
            noValue();
            o.yes = true;
        } else if (name == QLatin1String("--host")) {
            o.host = value();
        } else if (name == QLatin1String("--port")) {
            o.port = numberOption(name, value(), 1, 65535);
        } else if (name == QLatin1String("--host-number")) {
            o.hostNumber = numberOption(name, value(), 1, HostCount);
        } else if (name == QLatin1String("--timeout")) {
            o.timeoutSeconds = numberOption(name, value(), 1, MostTimeoutSeconds);
        } else if (name == QLatin1String("--user")) {
            o.user = value();
        } else if (name == QLatin1String("--password-file")) {
            o.passwordFile = value();
        } else if (name == QLatin1String("--password")) {
            o.password = value();
            o.passwordOnCommandLine = true;
        } else {
            throw UsageError{grammar ? QStringLiteral("Unknown option '%1' for %2.").arg(a, o.command)
                                  : QStringLiteral("Unknown option '%1'.").arg(a)};
        }
    }
    if (o.command == QLatin1String("version"))
        return o;
    if (o.password && o.passwordFile)
        throw UsageError{QStringLiteral("give --password or --password-file, not both")};
    if (o.command.isEmpty())
        throw UsageError{QStringLiteral("no command given")};
    refuseUnused(o, *grammar, globalsGiven);
    if (!o.password && !o.passwordFile && environmentPassword && (grammar->uses & LogsIn))
        o.password = std::move(environmentPassword);
    return o;
}

} // namespace corvane::cli
