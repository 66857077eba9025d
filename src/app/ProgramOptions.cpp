#include "app/ProgramOptions.h"

#include "shell/ConfigurationRules.h"
#include "shell/GridRules.h"

#include <QCommandLineParser>

namespace corvane {
namespace {

const QLatin1String ConnectOption{"--connect"};

struct Parser {
    QCommandLineParser parser;
    QCommandLineOption help{{QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Show this help.")};
    QCommandLineOption version{{QStringLiteral("v"), QStringLiteral("version")}, QStringLiteral("Show the program's version and the package's.")};
    QCommandLineOption createStore{QStringLiteral("create-user-store"),
        QStringLiteral("Create a first user store (SUPERVISOR and GUEST, no passwords) where the program looks for it "
                       "(/var/lib/corvane/BWKXBIDS.DAT, or $CORVANE_ROOT/BRELLWICK/BWKXBIDS.DAT), unless one is there "
                       "already, there or at the old place /BRELLWICK/BWKXBIDS.DAT.")};
    QCommandLineOption demo{QStringLiteral("demo"),
        QStringLiteral("Run against a simulated host in this process, with a throw-away user store, registry and "
                       "program folder.")};
    QCommandLineOption editPort{QStringLiteral("edit-port"),
        QStringLiteral("With --connect: once connected, open the parameter editor for the port shown as P (1 to "
                       "128) in the grid, as selecting its row and pressing View And Reset Comm Parameters would."),
        QStringLiteral("P")};
    QCommandLineOption screenshot{QStringLiteral("screenshot"),
        QStringLiteral("With --demo: write PNGs of the start-up form, the connected main window and the "
                       "configuration form to DIR, then exit."),
        QStringLiteral("DIR")};

    Parser()
    {
        parser.setApplicationDescription(
            QStringLiteral("Remote terminal of a DNC host.\n\n"
                           "  --connect[=N]            connect to host N (1 to 5; default: the last host) once the\n"
                           "                           main window is up and the log-in answered"));
        parser.addOptions({help, version, createStore, demo, screenshot, editPort});
    }
};

// "--connect" or "--connect=N": the parser wants a value always, and this one may have none.
QString takeConnectOption(QStringList& arguments, std::optional<int>& host)
{
    QStringList kept;
    for (const QString& argument : arguments) {
        if (argument == ConnectOption) {
            host = 0;
        } else if (argument.startsWith(ConnectOption + QLatin1Char('='))) {
            bool number = false;
            const int n = argument.mid(ConnectOption.size() + 1).toInt(&number);
            if (!number || n < 1 || n > HostCount)
                return QStringLiteral("--connect takes a host number from 1 to %1, not \"%2\"")
                    .arg(HostCount)
                    .arg(argument.mid(ConnectOption.size() + 1));
            host = n;
        } else {
            kept << argument;
        }
    }
    arguments = kept;
    return {};
}

} // namespace

ParsedOptions parseProgramOptions(const QStringList& arguments)
{
    ParsedOptions parsed;
    QStringList rest = arguments;
    parsed.error = takeConnectOption(rest, parsed.options.connectHost);
    if (!parsed.error.isEmpty())
        return parsed;

    Parser p;
    if (!p.parser.parse(rest)) {
        parsed.error = p.parser.errorText();
        return parsed;
    }
    if (!p.parser.positionalArguments().isEmpty()) {
        parsed.error = QStringLiteral("Unexpected argument '%1'.").arg(p.parser.positionalArguments().first());
        return parsed;
    }
    ProgramOptions& o = parsed.options;
    o.help = p.parser.isSet(p.help);
    o.version = p.parser.isSet(p.version);
    o.createUserStore = p.parser.isSet(p.createStore);
    o.demo = p.parser.isSet(p.demo);
    o.screenshotFolder = p.parser.value(p.screenshot);
    if (p.parser.isSet(p.screenshot) && !o.demo)
        parsed.error = QStringLiteral("--screenshot goes with --demo");
    if (p.parser.isSet(p.editPort)) {
        bool number = false;
        const int port = p.parser.value(p.editPort).toInt(&number);
        if (!number || port < 1 || port > GridRows)
            parsed.error = QStringLiteral("--edit-port takes a port from 1 to %1, not \"%2\"")
                               .arg(GridRows)
                               .arg(p.parser.value(p.editPort));
        else if (!o.connectHost)
            parsed.error = QStringLiteral("--edit-port goes with --connect");
        else
            o.editPort = port;
    }
    return parsed;
}

QString programHelpText()
{
    return Parser().parser.helpText();
}

} // namespace corvane
