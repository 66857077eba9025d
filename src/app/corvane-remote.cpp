// The desktop terminal.
#include "app/Demo.h"
#include "app/Screenshots.h"
#include "dialogs/MessageBoxes.h"
#include "protocol/Framing.h"
#include "runtime/ProgramFolder.h"
#include "runtime/RunTimeError.h"
#include "security/FirstStore.h"
#include "security/UserStore.h"
#include "platform/Registry.h"
#include "shell/forms/frmCVRemote.h"
#include "shell/VersionRules.h"
#include "shell/forms/frmCVRemoteStartup.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QPointer>
#include <QPushButton>
#include <QTimer>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>

using namespace corvane;

namespace {

int createUserStore()
{
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

bool hasDisplay()
{
#if defined(Q_OS_WIN) || defined(Q_OS_MACOS)
    return true;
#else
    const auto set = [](const char* name) { return !qEnvironmentVariableIsEmpty(name); };
    return set("QT_QPA_PLATFORM") || set("DISPLAY") || set("WAYLAND_DISPLAY");
#endif
}

// "--connect" or "--connect=N" (the parser wants a value always; this one may have none).
std::optional<int> takeConnectOption(int& argc, char** argv)
{
    std::optional<int> host;
    int kept = 1;
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--connect") == 0) {
            host = 0; // the last host
        } else if (std::strncmp(argv[i], "--connect=", 10) == 0) {
            host = std::atoi(argv[i] + 10);
        } else {
            argv[kept++] = argv[i];
        }
    }
    argc = kept;
    return host;
}

} // namespace

int main(int argc, char** argv)
{
    const std::optional<int> connectHost = takeConnectOption(argc, argv);
    bool wantsScreenshots = false;
    bool wantsWindows = true;
    for (int i = 1; i < argc; ++i) {
        const std::string_view a = argv[i];
        wantsScreenshots |= a == "--screenshot" || a.starts_with("--screenshot=");
        wantsWindows &= a != "--help" && a != "-h" && a != "--version" && a != "-v" && a != "--create-user-store";
    }
    if ((wantsScreenshots || !wantsWindows) && !hasDisplay())
        qputenv("QT_QPA_PLATFORM", "offscreen"); // pictures, help and the store command need no screen
    if (wantsWindows && !hasDisplay()) {
        std::fprintf(stderr,
            "Corvane Remote is a desktop program and this session has no display.\n"
            "Run it on a desktop, or under a virtual display:\n"
            "    xvfb-run -a %s%s\n",
            argv[0], argc > 1 ? " ..." : "");
        return 1;
    }

    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Corvane Remote"));
    QApplication::setApplicationVersion(QString::fromStdString(clientVersionText()));
    setExecutableFolder(QApplication::applicationDirPath().toStdString());

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Remote terminal of a DNC host.\n\n"
        "  --connect[=N]            connect to host N (default: the last host) once the main window is up"));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption createStore(QStringLiteral("create-user-store"),
        QStringLiteral("Create a first user store (SUPERVISOR and GUEST, no passwords) where the program looks for it "
                       "($CORVANE_ROOT/BRELLWICK/BWKXBIDS.DAT), unless one is there already."));
    const QCommandLineOption demo(QStringLiteral("demo"),
        QStringLiteral("Run against a simulated host in this process, with a throw-away user "
                       "store, registry and program folder."));
    const QCommandLineOption screenshot(QStringLiteral("screenshot"),
        QStringLiteral("With --demo: write PNGs of the start-up form, the connected main "
                       "window and the configuration form to DIR, then exit."),
        QStringLiteral("DIR"));
    parser.addOptions({createStore, demo, screenshot});
    parser.process(app);

    if (parser.isSet(createStore))
        return createUserStore();
    if (parser.isSet(screenshot) && !parser.isSet(demo)) {
        std::fprintf(stderr, "corvane-remote: --screenshot goes with --demo\n");
        return 2;
    }

    Demo demoHost;
    if (parser.isSet(demo)) {
        QString error;
        if (!demoHost.start(error)) {
            std::fprintf(stderr, "corvane-remote: the demo could not start: %s\n", qPrintable(error));
            return 1;
        }
    }

    auto registry = openSystemRegistry();
    GenMsgBoxes boxes;
    Services services{*registry, boxes};
    std::optional<Screenshots> pictures;
    if (parser.isSet(screenshot))
        pictures.emplace(parser.value(screenshot), services);
    setNoPacketStringHandler([&boxes] { boxes.MsgBox("No Packet String", 0, "Corvane Remote"); });

    QPointer<frmCVRemote> mainWindow;
    auto* startup = new frmCVRemoteStartup(services);
    QObject::connect(startup, &frmCVRemoteStartup::exited, &app, [] { QCoreApplication::exit(0); });
    QObject::connect(startup, &frmCVRemoteStartup::continued, &app, [&] {
        mainWindow = new frmCVRemote(services);
        mainWindow->setAttribute(Qt::WA_DeleteOnClose);
        mainWindow->show();
        if (pictures)
            pictures->mainShown(*mainWindow);
        else if (connectHost)
            QTimer::singleShot(0, mainWindow, [&mainWindow, &connectHost] {
                if (*connectHost >= 1)
                    mainWindow->selectHost(*connectHost);
                mainWindow->findChild<QPushButton*>(QStringLiteral("Command1"))->click();
            });
    });
    startup->show();
    if (pictures)
        pictures->startupShown(*startup);
    return QApplication::exec();
}
