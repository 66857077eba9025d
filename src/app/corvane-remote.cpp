// The desktop terminal's executable.
#include "runtime/RunTimeError.h"
#include "security/FirstStore.h"
#include "security/UserStore.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <cstdio>

namespace {

int createUserStore()
{
    using namespace corvane;
    const std::string path = userStorePath();
    try {
        if (createFirstUserStore(path) == FirstStore::AlreadyThere) {
            std::fprintf(stderr,
                "corvane-remote: a user store already exists at %s; it was left untouched.\n"
                "Remove it first to start again with a new one.\n",
                path.c_str());
            return 1;
        }
    } catch (const RunTimeError& e) {
        std::fprintf(stderr, "corvane-remote: could not create the user store at %s: %s (error %d).\n", path.c_str(),
            errorDescription(e.number()).c_str(), e.number());
        return 2;
    }
    std::printf("Created the user store at %s\n"
                "with the users SUPERVISOR and GUEST, both without password and without rights.\n"
                "Log in as SUPERVISOR and give it a password to activate security.\n",
        path.c_str());
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("Corvane Remote"));
    QCoreApplication::setApplicationVersion(QStringLiteral("1.02 (build 8)"));

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Remote terminal of a DNC host."));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption createStore(QStringLiteral("create-user-store"),
        QStringLiteral("Create a first user store (SUPERVISOR and GUEST, no passwords) where the program looks for it "
                       "($CORVANE_ROOT/BRELLWICK/BWKXBIDS.DAT), unless one is there already."));
    parser.addOption(createStore);
    parser.process(app);

    if (parser.isSet(createStore))
        return createUserStore();

    std::printf("Corvane Remote: the main window is not part of this build yet.\n"
                "Run with --create-user-store to create a first user store, or --help for the options.\n");
    return 0;
}
