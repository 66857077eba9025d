// The terminal for scripts: corvane-remote-cli status
#include "app/OsUser.h"
#include "startup/StartupPlaces.h"
#include "cli/Cli.h"
#include "platform/ProgramTimer.h"
#include "platform/Registry.h"
#include "platform/SystemLog.h"
#include "runtime/NoCoreDumps.h"
#include "runtime/Places.h"

#include <QCoreApplication>

#include <cstdio>
#include <memory>
#include <optional>

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    corvane::keepSecretsOutOfCoreDumps(); // before the user store or any password is read
    QCoreApplication::setApplicationName(QStringLiteral("Corvane Remote"));
    corvane::Places places = corvane::placesFromEnvironment(QCoreApplication::applicationDirPath().toStdString());
    try {
        // The password a script may leave in the environment, for when no other is given.
        std::optional<QString> environmentPassword;
        if (!qEnvironmentVariableIsEmpty("CORVANE_PASSWORD"))
            environmentPassword = qEnvironmentVariable("CORVANE_PASSWORD");
        corvane::cli::Options options
            = corvane::cli::parseOptions(QCoreApplication::arguments(), std::move(environmentPassword));
        const std::unique_ptr<corvane::Registry> registry
            = corvane::openSystemRegistry(QString::fromStdString(places.registryFolder));
        corvane::QtTimers clock;
        corvane::Terminal terminal(*registry, clock, corvane::osUserName(), std::move(places));
        terminal.logs().setSystemLog(corvane::systemLog());
        corvane::cli::Client client(std::move(options), terminal);
        return client.run();
    } catch (const corvane::cli::UsageError& e) {
        std::fprintf(stderr, "corvane-remote-cli: %s\nTry 'corvane-remote-cli --help'.\n", qPrintable(e.what));
        return corvane::cli::Usage;
    }
}
