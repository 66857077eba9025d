// The client's waits on a test's clock: a host that never answers, or never acknowledges, and a
// connection that never comes end the command as their time-outs would, with no time passing.
#include "cli/Cli.h"
#include "security/FirstStore.h"
#include "security/UserStore.h"
#include "support/ChangeRecordLines.h"
#include "support/ManualTimers.h"
#include "support/SimulatedPlant.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <functional>

namespace corvane {
namespace {

// What the client wrote to one of its streams.
QString written(std::FILE* stream)
{
    std::rewind(stream);
    QByteArray bytes;
    char chunk[4096];
    for (std::size_t n; (n = std::fread(chunk, 1, sizeof chunk, stream)) > 0;)
        bytes.append(chunk, static_cast<qsizetype>(n));
    return QString::fromLocal8Bit(bytes);
}

TEST(CliWaits, TimeOutsEndTheCommandWithTheirStatusAndMessage)
{
    struct Case {
        const char* name;
        std::function<void(hostsim::Faults&)> fault;
        const char* line;
        const char* ticks; // the timer whose time runs out
        const char* after; // once the host has received a packet that starts so ("": from the start)
        int status;
        const char* says;
    } const cases[] = {
        {"a silent host", [](hostsim::Faults& f) { f.silent = true; }, "status", "tmrPacketTimeOut", "", 1,
            "Fetch Version Timeout."},
        {"nobody listening", {}, "--port 1 status", "tmrConnectionTimeout", "", 3, "Connection Time Out."},
        {"no acknowledgement", [](hostsim::Faults& f) { f.ackSectionsUpTo = 2; }, "set-parms 3 ConfirmHeader=%A",
            "tmrPacketWait", "PKT_TYPE=100\x02SECTION=3\x02", 1, "Update Packet No Ack Received"},
    };
    for (const Case& c : cases) {
        test::SimulatedPlant plant;
        plant.folder.useAsStoreRoot();
        ASSERT_EQ(createFirstUserStore(userStorePath()), FirstStore::Created);
        if (c.fault)
            c.fault(plant.host.faults);
        test::ManualTimers clock;
        const std::string after = c.after;
        if (after.empty())
            clock.tickWhenFree(c.ticks);
        QObject::connect(&plant.host, &hostsim::HostSimulator::packetReceived, [&](const QByteArray& packet) {
            if (!after.empty() && packet.startsWith(QByteArray::fromStdString(after)))
                clock.tickWhenFree(c.ticks);
        });
        std::FILE* out = std::tmpfile();
        std::FILE* err = std::tmpfile();
        QStringList arguments = QString::fromLatin1(c.line).split(QLatin1Char(' '));
        arguments.prepend(QStringLiteral("corvane-remote-cli"));
        Terminal terminal(*plant.registry, clock, "tester");
        const int status = cli::Client(cli::parseOptions(arguments), terminal, {out, err}).run();
        const QString said = written(err);
        EXPECT_EQ(status, c.status) << c.name << ": " << said.toStdString();
        EXPECT_TRUE(said.contains(QLatin1String(c.says))) << c.name << ": " << said.toStdString();
        if (std::string_view(c.name) == "no acknowledgement") {
            const std::vector<QJsonObject> record = test::changeRecordLines(3);
            ASSERT_EQ(record.size(), 1u);
            EXPECT_EQ(record[0].value(QStringLiteral("outcome")).toString(), QStringLiteral("no-ack"));
            EXPECT_EQ(record[0].value(QStringLiteral("section")).toInt(), 3);
        }
        std::fclose(out);
        std::fclose(err);
    }
}

} // namespace
} // namespace corvane
