// corvane-remote-cli status as a script runs it, process start to exit, against the simulated
// host in this process; beside it, in the same run, this program started as a bare terminal
// that connects and exchanges the same requests (the same bytes) and exits, and this program
// started only to end (what starting any Qt program costs).
//   corvane_bench_cli [RUNS]
#include "Loopback.h"
#include "ScratchTerminal.h"
#include "protocol/Requests.h"

#include <QCoreApplication>
#include <QProcess>

#include <cstdio>
#include <cstring>

using namespace corvane;
using namespace corvane::bench;

namespace {

int bareStatus(quint16 port)
{
    BareTerminal bare(port);
    bare.exchange({Build_Version_Request(), Build_Status_Request()});
    bare.disconnect();
    return 0;
}

// Start to exit of one process; the run is void unless it ended with status 0.
double run(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.setStandardOutputFile(QProcess::nullDevice());
    QElapsedTimer clock;
    clock.start();
    process.start(program, arguments);
    runUntil([&] { return process.state() == QProcess::NotRunning; });
    const double ms = msSince(clock);
    if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0) {
        std::fprintf(stderr, "%s %s ended with %d: %s\n", qPrintable(program),
            qPrintable(arguments.join(QLatin1Char(' '))), process.exitCode(),
            process.readAllStandardError().constData());
        std::exit(1);
    }
    return ms;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc == 3 && std::strcmp(argv[1], "--bare-status") == 0) {
        QCoreApplication app(argc, argv);
        return bareStatus(static_cast<quint16>(std::atoi(argv[2])));
    }
    if (argc == 2 && std::strcmp(argv[1], "--exit") == 0) {
        QCoreApplication app(argc, argv);
        return 0;
    }
    QCoreApplication app(argc, argv);
    const int runs = argc > 1 ? std::max(1, std::atoi(argv[1])) : 20;
    ScratchTerminal terminal;
    hostsim::HostSimulator& host = terminal.host;

    const QString self = QCoreApplication::applicationFilePath();
    const QString port = QString::number(host.port());
    std::vector<double> cli, bare, empty;
    for (int i = 0; i < runs; ++i) {
        cli.push_back(run(QStringLiteral(CORVANE_REMOTE_CLI_EXE), {QStringLiteral("status")}));
        runUntil([&] { return !host.hasTerminal(); });
        bare.push_back(run(self, {QStringLiteral("--bare-status"), port}));
        runUntil([&] { return !host.hasTerminal(); });
        empty.push_back(run(self, {QStringLiteral("--exit")}));
    }
    std::printf("corvane-remote-cli status, start to exit, %d runs: median %.1f ms\n", runs, median(cli));
    std::printf("a bare-socket process exchanging the same bytes: median %.1f ms (the client: %.2fx)\n", median(bare),
        median(cli) / median(bare));
    std::printf("a Qt process that only starts and ends: median %.1f ms\n", median(empty));
    return 0;
}
