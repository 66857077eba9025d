// The desktop program as a process, against the simulated host in this process (offscreen, so
// that it runs anywhere; a real display adds its own drawing buffers):
//  1. process start to main window shown: `--connect` connects the moment the main window is
//     shown and the log-in answered, so the host's taking the connection marks it. The start-up
//     form waits 2.5 s by design before it goes on (a coarse timer, which may end a little
//     early), so the CPU the process has used by then says what the start costs.
//  2. resident memory with the 128 ports shown and the parameter editor open on a port:
//     `--connect --edit-port 15`, read once the editor has its port and the program is quiet.
//   corvane_bench_desktop [RUNS]
#include "Loopback.h"
#include "ScratchTerminal.h"
#include "protocol/PacketTypes.h"

#include <QCoreApplication>
#include <QProcess>
#include <QTimer>

#include <cstdio>
#include <fstream>
#include <sstream>
#include <unistd.h>

using namespace corvane;
using namespace corvane::bench;

namespace {

long procStatusKb(qint64 pid, const std::string& key)
{
    std::ifstream in("/proc/" + std::to_string(pid) + "/status");
    for (std::string line; std::getline(in, line);)
        if (line.starts_with(key + ":"))
            return std::stol(line.substr(key.size() + 1));
    return -1;
}

long cpuTicks(qint64 pid)
{
    std::ifstream in("/proc/" + std::to_string(pid) + "/stat");
    const std::string stat((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    std::istringstream fields(stat.substr(stat.rfind(')') + 2));
    std::string field;
    long ticks = 0;
    for (int i = 3; i <= 15 && fields >> field; ++i)
        if (i == 14 || i == 15)
            ticks += std::stol(field);
    return ticks;
}

void pause(int ms)
{
    bool over = false;
    QTimer::singleShot(ms, [&] { over = true; });
    runUntil([&] { return over; });
}

std::unique_ptr<QProcess> startTerminal(const QStringList& arguments)
{
    auto process = std::make_unique<QProcess>();
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    process->setProcessEnvironment(env);
    process->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process->start(QStringLiteral(CORVANE_REMOTE_EXE), arguments);
    return process;
}

void stop(QProcess& process)
{
    process.kill();
    process.waitForFinished();
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const int runs = argc > 1 ? std::max(1, std::atoi(argv[1])) : 5;
    ScratchTerminal terminal;
    hostsim::HostSimulator& host = terminal.host;

    std::vector<double> shown, cpu;
    const double msPerTick = 1000.0 / static_cast<double>(::sysconf(_SC_CLK_TCK));
    for (int i = 0; i < runs; ++i) {
        QElapsedTimer clock;
        clock.start();
        auto process = startTerminal({QStringLiteral("--connect=1")});
        runUntil([&] { return host.hasTerminal() || process->state() == QProcess::NotRunning; });
        shown.push_back(msSince(clock));
        cpu.push_back(static_cast<double>(cpuTicks(process->processId())) * msPerTick);
        stop(*process);
        runUntil([&] { return !host.hasTerminal(); });
    }
    std::printf("process start to main window shown, %d runs: median %.0f ms, nearly all of it the start-up "
                "form's 2.5 s wait; CPU used by then: median %.0f ms\n",
        runs, median(shown), median(cpu));

    int requests = 0;
    QObject::connect(&host, &hostsim::HostSimulator::packetReceived, [&](const QByteArray& packet) {
        if (packet.startsWith("PKT_TYPE=200\x02"))
            ++requests;
    });
    auto process = startTerminal({QStringLiteral("--connect=1"), QStringLiteral("--edit-port"), QStringLiteral("15")});
    runUntil([&] { return requests >= 6 || process->state() == QProcess::NotRunning; });
    for (long before = -1, now = cpuTicks(process->processId()); now != before; now = cpuTicks(process->processId())) {
        before = now;
        pause(300);
    }
    const long rss = procStatusKb(process->processId(), "VmRSS");
    const long peak = procStatusKb(process->processId(), "VmHWM");
    std::printf("resident memory with 128 ports shown and the editor open: %.1f MB (at the most %.1f MB)\n",
        static_cast<double>(rss) / 1024.0, static_cast<double>(peak) / 1024.0);
    stop(*process);
    return 0;
}
