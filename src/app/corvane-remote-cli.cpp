// The terminal for scripts: corvane-remote-cli status
#include "app/OsUser.h"
#include "cli/Cli.h"
#include "platform/ProgramTimer.h"
#include "runtime/NoCoreDumps.h"
#include "runtime/ProgramFolder.h"

#include <QCoreApplication>

#include <cstdio>

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    corvane::keepSecretsOutOfCoreDumps(); // before the user store or any password is read
    QCoreApplication::setApplicationName(QStringLiteral("Corvane Remote"));
    corvane::setExecutableFolder(QCoreApplication::applicationDirPath().toStdString());
    try {
        corvane::QtTimers clock;
        corvane::cli::Client client(
            corvane::cli::parseOptions(QCoreApplication::arguments()), corvane::osUserName(), clock);
        return client.run();
    } catch (const corvane::cli::UsageError& e) {
        std::fprintf(stderr, "corvane-remote-cli: %s\nTry 'corvane-remote-cli --help'.\n", qPrintable(e.what));
        return corvane::cli::Usage;
    }
}
