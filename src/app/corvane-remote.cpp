// The desktop terminal.
#include "app/Demo.h"
#include "app/DesktopProgram.h"
#include "app/OsUser.h"
#include "app/ProgramOptions.h"
#include "app/Screenshots.h"
#include "dialogs/MessageBoxes.h"
#include "dialogs/ProgramHelp.h"
#include "platform/ProgramTimer.h"
#include "platform/Registry.h"
#include "platform/SystemLog.h"
#include "platform/StopSignals.h"
#include "runtime/NoCoreDumps.h"
#include "runtime/Places.h"
#include "runtime/RunTimeError.h"
#include "security/FirstStore.h"
#include "security/UserStore.h"
#include "shell/VersionRules.h"
#include "startup/StartupPlaces.h"
#include "widgets/Desktop.h"
#include "widgets/ProgramStyle.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <cstdio>
#include <optional>

using namespace corvane;

namespace {

bool hasDisplay()
{
#if defined(Q_OS_WIN) || defined(Q_OS_MACOS)
    return true;
#else
    const auto set = [](const char* name) { return !qEnvironmentVariableIsEmpty(name); };
    return set("QT_QPA_PLATFORM") || set("DISPLAY") || set("WAYLAND_DISPLAY");
#endif
}

// The command that would run this very call under a virtual display.
std::string underVirtualDisplay(int argc, char** argv)
{
    std::string command = "xvfb-run -a";
    for (int i = 0; i < argc; ++i) {
        const std::string argument = argv[i];
        const bool plain = argument.find_first_of(" \t'\"\\$`*?[]{}()<>|&;") == std::string::npos;
        command += plain ? " " + argument : " '" + argument + "'";
    }
    return command;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication::setApplicationName(QStringLiteral("Corvane Remote"));
    QCoreApplication::setApplicationVersion(QString::fromStdString(clientVersionText()));
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments << QString::fromLocal8Bit(argv[i]);

    const ParsedOptions parsed = parseProgramOptions(arguments);
    if (!parsed.error.isEmpty()) {
        std::fprintf(
            stderr, "corvane-remote: %s\nTry 'corvane-remote --help' for the options.\n", qPrintable(parsed.error));
        return 2;
    }
    const ProgramOptions& options = parsed.options;
    if (options.help) {
        const QCoreApplication core(argc, argv); // where the program lies, for its help page
        const Places places = placesFromEnvironment(QCoreApplication::applicationDirPath().toStdString());
        std::printf("%s", qPrintable(programHelpText()));
        const QStringList pages = programHelpCandidates(places.programFolder);
        const auto found
            = std::find_if(pages.begin(), pages.end(), [](const QString& p) { return QFileInfo::exists(p); });
        // Where they are on this computer; the manual page says where they are in general.
        std::printf("\nFiles:\n  Help page (F1): %s\n  Logs: %s\n  User store: %s\n"
                    "\nEnvironment:\n"
                    "  CORVANE_ROOT          the user store is $CORVANE_ROOT/BRELLWICK/BWKXBIDS.DAT\n"
                    "  CORVANE_PROGRAM_DIR   the folder of the logs\n"
                    "  CORVANE_REGISTRY_DIR  the folder of the settings (default ~/.config/CorvaneRemote)\n",
            qPrintable(found != pages.end()
                    ? QDir::toNativeSeparators(*found)
                    : QStringLiteral("missing (looked for %1)").arg(pages.join(QLatin1String(", ")))),
            places.programFolder.c_str(), places.storeFile.c_str());
        return 0;
    }
    if (options.version) {
        std::printf("%s\n", versionLine("corvane-remote").c_str());
        return 0;
    }
    if (options.createUserStore) {
        const QCoreApplication core(argc, argv);
        return createFirstUserStoreCommand(
            "corvane-remote", placesFromEnvironment(QCoreApplication::applicationDirPath().toStdString()).storeFile);
    }

    if (!hasDisplay()) {
        if (options.screenshotFolder.isEmpty()) {
            std::fprintf(stderr,
                "Corvane Remote is a desktop program and this session has no display.\n"
                "Run it on a desktop, or under a virtual display:\n"
                "    %s\n",
                underVirtualDisplay(argc, argv).c_str());
            return 1;
        }
        qputenv("QT_QPA_PLATFORM", "offscreen"); // the pictures need no screen
    }

    QApplication app(argc, argv);
    applyProgramLook(app);
    keepSecretsOutOfCoreDumps(); // before the user store or any password is read
    Places places = placesFromEnvironment(QApplication::applicationDirPath().toStdString());

    Demo demoHost;
    if (options.demo) {
        QString error;
        if (!demoHost.start(places, error)) {
            std::fprintf(stderr, "corvane-remote: the demo could not start: %s\n", qPrintable(error));
            return 1;
        }
    }

    auto registry = openSystemRegistry(QString::fromStdString(places.registryFolder));
    GenMsgBoxes boxes([](int exitStatus) { QCoreApplication::exit(exitStatus); });
    QtTimers timers;
    SystemDesktop desktop;
    Services services{boxes, desktop};
    Terminal terminal(*registry, timers, osUserName(), std::move(places)); // the program's one terminal
    if (!options.demo)
        terminal.logs().setSystemLog(systemLog()); // the demo's changes are nobody's
    DesktopProgram program(options, terminal, services);
    QObject::connect(
        &program, &DesktopProgram::finished, &app, [](int exitStatus) { QCoreApplication::exit(exitStatus); });

    std::optional<Screenshots> pictures;
    if (!options.screenshotFolder.isEmpty()) {
        pictures.emplace(options.screenshotFolder, services);
        QObject::connect(&program, &DesktopProgram::startupShown, &app,
            [&pictures](frmCVRemoteStartup& form) { pictures->startupShown(form); });
        QObject::connect(&program, &DesktopProgram::mainWindowShown, &app,
            [&pictures](frmCVRemote& window) { pictures->mainShown(window); });
    }
    // A signal ends the session as closing the window does: an update under way is called off
    // and says so in the record of changes before the program exits with 128 + the signal.
    StopSignals stops([&stops] { QCoreApplication::exit(128 + stops.caught()); });
    program.start();
    const int status = QApplication::exec();
    return stops.caught() != 0 ? 128 + stops.caught() : status;
}
