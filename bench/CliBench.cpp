// corvane-remote-cli as a script runs it, process start to exit, against the simulated host in
// this process: status, export all (128 ports, 768 fetch round trips) and copy-parms 1 2-128;
// beside each, in the same run, this program started as a bare terminal that connects and
// exchanges the same requests (the same bytes) and exits, and this program started only to end
// (what starting any Qt program costs).
//   corvane_bench_cli [RUNS]
#include "Loopback.h"
#include "ScratchTerminal.h"
#include "hostsim/Plant.h"
#include "protocol/PortParmsPacket.h"
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

// Every section of every port fetched, as export all asks for them.
int bareExport(quint16 port)
{
    BareTerminal bare(port);
    bare.exchange({Build_Version_Request(), Build_Status_Request()});
    std::vector<std::string> requests;
    for (std::int16_t row = 0; row < 128; ++row)
        for (std::int16_t section = 1; section <= 6; ++section)
            requests.push_back(Build_Port_Parms_Request(section, row));
    bare.exchange(requests);
    bare.disconnect();
    return 0;
}

// Port 1 fetched, then each other port fetched and sent port 1's records (each section
// acknowledged, then the trailer), as copy-parms 1 2-128 exchanges them.
int bareCopy(quint16 port)
{
    BareTerminal bare(port);
    bare.exchange({Build_Version_Request(), Build_Status_Request()});
    PortParmsTables tables = hostsim::Plant::demo().parms;
    for (std::int16_t section = 1; section <= 6; ++section)
        bare.exchange({Build_Port_Parms_Request(section, 0)});
    for (std::int16_t row = 1; row < 128; ++row) {
        std::vector<std::string> exchanges;
        for (std::int16_t section = 1; section <= 6; ++section)
            exchanges.push_back(Build_Port_Parms_Request(section, row));
        tables.setRecords(row, tables.records(0));
        for (std::int16_t section = 1; section <= 6; ++section)
            exchanges.push_back(Build_Port_Parms_Packet(section, row, tables) + EOT);
        bare.exchange(exchanges);
        bare.send(Build_Update_Complete_Packet());
    }
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
    if (argc == 3 && std::strcmp(argv[1], "--bare-export") == 0) {
        QCoreApplication app(argc, argv);
        return bareExport(static_cast<quint16>(std::atoi(argv[2])));
    }
    if (argc == 3 && std::strcmp(argv[1], "--bare-copy") == 0) {
        QCoreApplication app(argc, argv);
        return bareCopy(static_cast<quint16>(std::atoi(argv[2])));
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

    // The long ones, a few runs each. A copy takes the machine type with the rest: for the client
    // the host announces its list, as a real one does (the bare socket reads no list).
    const int fewRuns = std::max(1, runs / 10);
    const auto beside = [&](const char* what, const QStringList& client, const char* bareMode, bool types) {
        std::vector<double> ours, floor;
        for (int i = 0; i < fewRuns; ++i) {
            host.announceMachineTypes = types;
            ours.push_back(run(QStringLiteral(CORVANE_REMOTE_CLI_EXE), client));
            runUntil([&] { return !host.hasTerminal(); });
            host.announceMachineTypes = false;
            floor.push_back(run(self, {QLatin1String(bareMode), port}));
            runUntil([&] { return !host.hasTerminal(); });
        }
        std::printf("corvane-remote-cli %s, %d runs: median %.0f ms; a bare socket exchanging the same: %.0f ms (%.2fx)\n",
            what, fewRuns, median(ours), median(floor), median(ours) / median(floor));
        std::fflush(stdout);
    };
    beside("export all", {QStringLiteral("export"), QStringLiteral("all"), QStringLiteral("--file"), QStringLiteral("-")},
        "--bare-export", false);
    beside("copy-parms 1 2-128", {QStringLiteral("copy-parms"), QStringLiteral("1"), QStringLiteral("2-128")},
        "--bare-copy", true);
    return 0;
}
