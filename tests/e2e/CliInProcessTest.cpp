// The client run in this process on a test's clock: its exit statuses, each with what it says (a
// host that never answers, or never acknowledges, and a connection that never comes end the
// command as their time-outs would, with no time passing), its fetch and update against polite
// and hostile peers, its watch and its list of fields.
#include "cli/Cli.h"
#include "commparms/RecordFields.h"
#include "protocol/PacketTypes.h"
#include "security/FirstStore.h"
#include "security/UserStore.h"
#include "session/ChangeRecord.h"
#include "support/ChangeRecordLines.h"
#include "support/ClientRun.h"
#include "support/Peers.h"
#include "support/HangingListener.h"
#include "support/ManualTimers.h"
#include "support/SimulatedPlant.h"
#include "support/Wait.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <functional>

namespace corvane {
namespace {

using test::ClientRun;
using test::runClient;

TEST(CliExitStatus, EachSaysWhatWentWrong)
{
    struct Case {
        const char* name;
        std::function<void(test::SimulatedPlant&)> fault;
        const char* line;
        const char* ticks; // the timer whose time runs out ("": none)
        const char* after; // once the host has received a packet that starts so ("": from the start)
        int status;
        const char* says; // on standard error
    } const cases[] = {
        {"an old host", [](test::SimulatedPlant& p) { p.host.faults.version = "4.11"; }, "status", "", "", 4,
            "You are attempting to connect to Corvane version"},
        {"an unconfigured host", {}, "--host-number 3 status", "", "", 3, "No IP address is assigned."},
        {"a wrong password", {}, "--user supervisor --password x status", "", "", 5, "Invalid Password"},
        {"a port beyond the grid", {}, "purge 129", "", "", 2, "PORT takes 1 to 128"},
        {"a store that is there already", {}, "init-store", "", "", 1, "a user store already exists"},
        {"no user store",
            [](test::SimulatedPlant& p) { std::filesystem::remove(p.folder.file("BRELLWICK/BWKXBIDS.DAT")); }, "status",
            "", "", 5, "no user store at "},
        // An update cut short after two acknowledgements: the host's connection ends.
        {"connection lost", [](test::SimulatedPlant& p) { p.host.faults.closeAfterPackets = 11; },
            "set-parms 3 ConfirmHeader=%B", "", "", 3, "The connection to the host ended before port 3 was done."},
        {"a silent host", [](test::SimulatedPlant& p) { p.host.faults.silent = true; }, "status", "tmrPacketTimeOut",
            "", 1, "Fetch Version Timeout."},
        {"nobody listening", {}, "--port 1 status", "", "", 3, "could not connect to 127.0.0.1:1: Connection refused"},
        {"no acknowledgement", [](test::SimulatedPlant& p) { p.host.faults.ackSectionsUpTo = 2; },
            "set-parms 3 ConfirmHeader=%A", "tmrPacketWait", "PKT_TYPE=100\x02SECTION=3\x02", 1,
            "Update Packet No Ack Received"},
    };
    for (const Case& c : cases) {
        test::SimulatedPlant plant;
        test::giveFirstStore(plant);
        if (c.fault)
            c.fault(plant);
        test::ManualTimers clock;
        const std::string after = c.after;
        if (after.empty() && *c.ticks)
            clock.tickWhenFree(c.ticks);
        QObject::connect(&plant.host, &hostsim::HostSimulator::packetReceived, [&](const QByteArray& packet) {
            if (!after.empty() && packet.startsWith(QByteArray::fromStdString(after)))
                clock.tickWhenFree(c.ticks);
        });
        const ClientRun run = runClient(plant, clock, c.line);
        const QString& said = run.err;
        EXPECT_EQ(run.status, c.status) << c.name << ": " << said.toStdString();
        EXPECT_TRUE(said.contains(QLatin1String(c.says))) << c.name << ": " << said.toStdString();
        // An update cut short stopped at section 3, its trailer never went, and the record says why.
        const std::string_view name = c.name;
        if (name == "no acknowledgement" || name == "connection lost") {
            const std::vector<QJsonObject> record = test::changeRecordLines(plant.folder.logs(), 3);
            ASSERT_EQ(record.size(), 1u) << c.name;
            EXPECT_EQ(record[0].value(QStringLiteral("outcome")).toString(),
                QLatin1String(name == "connection lost" ? "connection-lost" : "no-ack"));
            EXPECT_EQ(record[0].value(QStringLiteral("section")).toInt(), 3) << c.name;
            // The host has read all the client sent once it sees the connection end.
            ASSERT_TRUE(test::waitFor([&] { return !plant.host.hasTerminal(); })) << c.name;
            EXPECT_EQ(plant.receivedOfType(packet_type::UpdateComplete), 0u) << c.name;
        }
    }
}

// A connect that neither completes nor is refused ends at --timeout, naming the address; so does
// a host that takes the connect and answers nothing.
TEST(CliExitStatus, ATimeOutBoundsTheConnectAndTheReply)
{
    test::HangingListener hanging;
    struct Case {
        const char* name;
        QString line;
        const char* ticks;
        int status;
        QString says;
    } const cases[] = {
        {"a connect that never completes", QStringLiteral("--timeout 2 --port %1 status").arg(hanging.port()),
            "tmrConnectLimit", 3, QStringLiteral("could not connect to 127.0.0.1:%1: no answer within 2 s").arg(hanging.port())},
        {"the same in the desktop's time", QStringLiteral("--port %1 status").arg(hanging.port()),
            "tmrConnectionTimeout", 3, QStringLiteral("Connection Time Out.")},
        {"a host that answers nothing", QStringLiteral("--timeout 7 status"), "tmrPacketTimeOut", 1,
            QStringLiteral("Fetch Version Timeout.")},
    };
    for (const Case& c : cases) {
        test::SimulatedPlant plant;
        test::giveFirstStore(plant);
        plant.host.faults.silent = true;
        test::ManualTimers clock;
        int limitMs = 0;
        clock.tickWhenFree(c.ticks);
        QObject::connect(&plant.host, &hostsim::HostSimulator::terminalConnected, [&] { limitMs = clock[c.ticks].interval(); });
        const ClientRun run = runClient(plant, clock, qPrintable(c.line));
        EXPECT_EQ(run.status, c.status) << c.name << ": " << run.err.toStdString();
        EXPECT_TRUE(run.err.contains(c.says)) << c.name << ": " << run.err.toStdString();
        if (std::string_view(c.ticks) == "tmrPacketTimeOut") {
            EXPECT_EQ(limitMs, 7000) << "the version's wait is the time-out";
        } else if (std::string_view(c.ticks) == "tmrConnectLimit") {
            EXPECT_EQ(clock.madeWith(c.ticks), 2000);
        }
    }
}

// get-parms prints what the host holds and set-parms sends it back, against a polite host and
// hostile ones: one that pushes its status between the replies goes unnoticed; one that
// acknowledges twice or ahead makes the update uncertain (exit 1), and no trailer goes.
TEST(CliPeers, FetchAndUpdateAgainstPoliteAndHostilePeers)
{
    for (const test::Peer& c : test::peers()) {
        SCOPED_TRACE(c.name);
        test::SimulatedPlant plant;
        test::giveFirstStore(plant);
        if (c.fault)
            c.fault(plant);
        test::ManualTimers clock;
        // The moment an update looks for late acknowledgements passes once the host has sent all
        // it had to send, a surplus included.
        clock.tickWhenIdle("tmrAckSettle", &plant.host, [&plant] { return plant.host.allSent(); });

        const ClientRun fetched = runClient(plant, clock, "--json get-parms 9");
        ASSERT_EQ(fetched.status, 0) << fetched.err.toStdString();
        const QJsonObject port = QJsonDocument::fromJson(fetched.out.toUtf8()).object();
        const PortParmsTables& held = plant.host.plant().parms;
        for (const RecordField& field : recordFields()) {
            const QJsonValue printed
                = port.value(QLatin1String(field.dataCollection ? "DataCollectionParms" : "PortCommParms"))
                      .toObject()
                      .value(QLatin1String(field.name.data(), static_cast<qsizetype>(field.name.size())));
            if (keptByTerminalOnly(field.name))
                EXPECT_TRUE(printed.isUndefined()) << field.name << " is no value of the host's";
            else
                EXPECT_EQ(printed, jsonOf(fieldValue(held.PortCommParmsTable[8], held.DataCollectionTable[8], field)))
                    << field.name;
        }
        const ClientRun updated = runClient(plant, clock, "set-parms 9 ConfirmFooter=M48");
        EXPECT_EQ(updated.status, c.updateStatus) << updated.err.toStdString();
        // What the client sent before it ended reaches the host: the trailer of a certain update only.
        ASSERT_TRUE(test::waitFor([&] { return !plant.host.hasTerminal(); }));
        EXPECT_EQ(plant.receivedOfType(packet_type::UpdateComplete), c.updateStatus == 0 ? 1u : 0u);
        EXPECT_TRUE(c.updateStatus == 0 || updated.err.contains(QStringLiteral("uncertain")))
            << updated.err.toStdString();
    }
}

// watch prints every row at first, then what changed at each look: the sending ports, which move
// on between two looks.
TEST(CliWatch, PrintsWhatChanged)
{
    test::SimulatedPlant plant;
    test::giveFirstStore(plant);
    test::ManualTimers clock;
    clock.tickWhenIdle("tmrWatchRefresh", &plant.host); // the next look comes once all is shown
    const ClientRun run = runClient(plant, clock, "--json watch --interval 1 --count 1");
    ASSERT_EQ(run.status, 0) << run.err.toStdString();
    const QStringList lines = run.out.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    ASSERT_GT(lines.size(), 36) << "every row at first";
    EXPECT_TRUE(std::any_of(lines.begin() + 36, lines.end(), [](const QString& line) {
        return QJsonDocument::fromJson(line.toUtf8()).object().value(QStringLiteral("port")).toInt() == 1;
    }));
    ASSERT_TRUE(test::waitFor([&] { return !plant.host.hasTerminal(); }));
    EXPECT_EQ(plant.receivedOfType(packet_type::StatusRequest), 2u);
}

// The fields command lists the catalogue: every row, with what each takes and its default, which
// is what a port the host has set up for no machine holds.
TEST(CliFields, ListEveryFieldWithWhatItTakesAndItsDefault)
{
    test::SimulatedPlant plant;
    test::ManualTimers clock;
    const ClientRun listed = runClient(plant, clock, "--json fields");
    ASSERT_EQ(listed.status, 0) << listed.err.toStdString();
    const QJsonArray rows = QJsonDocument::fromJson(listed.out.toUtf8()).array();
    ASSERT_EQ(static_cast<std::size_t>(rows.size()), fieldCatalogue().size());
    const std::int16_t unused = 28; // port 29
    ASSERT_EQ(plant.host.plant().status[unused].Status, "Not Configured");
    const PortRecords fresh = plant.host.plant().parms.records(unused);
    for (const QJsonValue& row : rows) {
        const std::string name = row[QStringLiteral("name")].toString().toStdString();
        EXPECT_EQ(row[QStringLiteral("default")], jsonOf(fieldValue(fresh.comm, fresh.collection, *findField(name))))
            << name;
        if (name == "Baud") {
            EXPECT_EQ(row[QStringLiteral("highest")].toInt(), 14);
            EXPECT_TRUE(row[QStringLiteral("takes")].toString().contains(QStringLiteral("6 9600")));
        }
    }
    const QStringList lines = runClient(plant, clock, "fields").out.split(QLatin1Char('\n'));
    for (const char* line : {R"(^Parity .*; default 1\)$)", R"(^ProgQualifier .*; default "          "\)$)",
             R"(^UseAdvancedPrintOptions .*; default 0; kept by this terminal, never sent\)$)"})
        EXPECT_EQ(lines.filter(QRegularExpression(QString::fromLatin1(line))).size(), 1) << line;
}

} // namespace
} // namespace corvane
