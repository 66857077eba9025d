// The desktop program, run as a user runs it, under 50 MB of traffic that no real host sends:
// its resident memory stays under a ceiling, it goes on running, and its logs keep their bound.
#include "hostsim/Flood.h"
#include "protocol/PacketTypes.h"
#include "security/FirstStore.h"
#include "security/UserStore.h"
#include "support/SimulatedPlant.h"
#include "support/Wait.h"

#include <QFile>
#include <QProcess>

#include <gtest/gtest.h>

#include <fstream>

namespace corvane {
namespace {

using hostsim::FloodKind;

// The terminal takes some 40 MB here: the ceiling leaves room for what a run may take in at once,
// none for what the traffic's size would bring. Under the sanitizers every allocation is larger.
#ifdef CORVANE_SANITIZED
constexpr long CeilingKb = 200 * 1024;
#else
constexpr long CeilingKb = 100 * 1024;
#endif

// A figure of /proc/PID/status, in kB.
long procStatus(qint64 pid, const std::string& key)
{
    std::ifstream in("/proc/" + std::to_string(pid) + "/status");
    for (std::string line; std::getline(in, line);)
        if (line.starts_with(key + ":"))
            return std::stol(line.substr(key.size() + 1));
    return -1;
}

TEST(BoundedMemory, FiftyMegabytesOfEachFloodLeaveTheTerminalUnderItsCeiling)
{
    const std::pair<const char*, FloodKind> cases[] = {
        {"a packet that never ends", FloodKind::EndlessPacket},
        {"machine-type lists of a million records", FloodKind::MachineTypeLists},
        {"long status replies under a No Packet String box", FloodKind::LongStatusReplies},
    };
    for (const auto& [name, kind] : cases) {
        test::SimulatedPlant plant{test::TerminalIn::AnotherProcess};
        plant.folder.useAsStoreRoot();
        ASSERT_EQ(createFirstUserStore(plant.folder.places().storeFile), FirstStore::Created);
        QProcess terminal;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        // The sanitizer's quarantine of freed memory would be counted as the terminal's own.
        env.insert(QStringLiteral("ASAN_OPTIONS"),
            env.value(QStringLiteral("ASAN_OPTIONS")) + QStringLiteral(":quarantine_size_mb=16"));
        terminal.setProcessEnvironment(env);
        terminal.start(QStringLiteral(CORVANE_REMOTE_EXE), {QStringLiteral("--connect=1")});
        // The start-up form continues by itself; then the connect and the first port states.
        ASSERT_TRUE(test::waitFor(
            [&] { return plant.host.answers() >= 2 && plant.receivedOfType(packet_type::StatusRequest) >= 1; }, 30000))
            << name;
        if (kind == FloodKind::LongStatusReplies)
            plant.host.sendNoPacketText(); // its box stays up: nobody is there to press OK
        ASSERT_TRUE(plant.host.flood(kind, 50ll << 20));
        // Taken in: the host ends its side once the flood has gone; the terminal reads that end
        // only after the last byte, once every chunk before it has been dispatched (each is an
        // event of its own, handled before the socket is read again), and closes its side.
        plant.host.endSending();
        ASSERT_TRUE(test::waitFor([&] { return !plant.host.hasTerminal(); }, 240000)) << name;
        EXPECT_TRUE(plant.host.flooded()) << name;

        EXPECT_EQ(terminal.state(), QProcess::Running) << name;
        const long peak = procStatus(terminal.processId(), "VmHWM");
        EXPECT_GT(peak, 0);
        EXPECT_LT(peak, CeilingKb) << name << ": " << peak << " kB at the most";
        std::printf("[ figure ] %s: %ld kB resident at the most\n", name, peak);
        // The packet log keeps two generations, each closed at its bound (a line may be long).
        for (const char* log : {"PacketError-Current.log", "PacketError-Previous.log"})
            if (plant.folder.exists(log)) {
                const auto lines = plant.folder.lines(log);
                EXPECT_LE(std::filesystem::file_size(plant.folder.file(log)), 10'000u + lines.back().size() + 2) << log;
            }
        terminal.kill();
        terminal.waitForFinished();
    }
}

} // namespace
} // namespace corvane
