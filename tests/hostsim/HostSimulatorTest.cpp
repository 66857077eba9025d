#include "hostsim/HostSimulator.h"
#include "protocol/PortParmsPacket.h"
#include "protocol/Requests.h"
#include "support/Records.h"
#include "support/ScratchProgramFolder.h"
#include "support/TerminalPeer.h"

#include <gtest/gtest.h>

namespace corvane::hostsim {
namespace {

using test::errorNumberRaisedBy;
using test::TerminalPeer;

class Host : public ::testing::Test {
protected:
    test::ScratchProgramFolder folder; // the terminal side's packet log lands here
    HostSimulator host;
    TerminalPeer terminal;

    void SetUp() override
    {
        ASSERT_TRUE(host.listen());
        ASSERT_TRUE(terminal.connectTo(host.port()));
        ASSERT_TRUE(
            terminal.waitFor([this] { return host.hasTerminal(); }, 3000, &host, &HostSimulator::terminalConnected));
    }

    std::vector<PortStatusRecord> status()
    {
        std::vector<PortStatusRecord> rows(PortCount);
        const auto reply = terminal.request(Build_Status_Request());
        EXPECT_TRUE(reply);
        // The piece after the last record lies past the 128 rows, as in the terminal itself.
        EXPECT_EQ(
            errorNumberRaisedBy([&] { Extract_Status_Packet(reply.value_or(""), rows); }), err::SubscriptOutOfRange);
        return rows;
    }
};

TEST_F(Host, VersionStatusAndMachineTypesComeBackAsTheTerminalReadsThem)
{
    const auto version = terminal.request(Build_Version_Request());
    ASSERT_TRUE(version);
    EXPECT_EQ(Get_Packet_Type(*version), packet_type::VersionReply);
    EXPECT_EQ(Get_Host_Version(*version), "4.12");
    EXPECT_EQ(Get_Minimum_Remote_Version(*version), "1.02");

    const auto rows = status();
    EXPECT_EQ(rows[0].WorkstationName, "LATHE 01");
    EXPECT_EQ(rows[127].WorkstationName, "SPARE");
    std::set<std::string> modes;
    for (const auto& row : rows)
        modes.insert(row.Status);
    for (const char* mode : Plant::FtpModes)
        EXPECT_TRUE(modes.count(mode)) << mode;

    const auto types = terminal.request(Build_Machine_Type_Request(0));
    ASSERT_TRUE(types);
    std::vector<MachineTypeRecord> table;
    std::int16_t count = 0;
    EXPECT_EQ(errorNumberRaisedBy([&] { Extract_Machine_Types(*types, table, count); }), err::InvalidProcedureCall);
    EXPECT_EQ(count, 7); // six types and the piece after the last ETX
    EXPECT_EQ(table[2].machine_type, "HEIDENHAIN TNC 640");
    EXPECT_EQ(terminal.chunks, 3) << "each packet starts and ends a chunk of its own";
}

TEST_F(Host, SendingPortsMoveOnAndAPurgeShowsInTheNextStatus)
{
    const auto before = status();
    ASSERT_EQ(before[0].Status, "Sending");
    const auto after = status();
    EXPECT_GT(std::stol(after[0].ByteCount), std::stol(before[0].ByteCount));
    EXPECT_EQ(after[1].ByteCount, before[1].ByteCount); // idle ports stay put

    terminal.send(Build_Purge_Reset_Request(0));
    const auto purged = status();
    EXPECT_EQ(purged[0].Status, "Idle");
    EXPECT_EQ(purged[0].ByteCount, "0");
    EXPECT_EQ(purged[0].FileName, "");
    EXPECT_EQ(purged[0].WorkstationName, "LATHE 01");
}

TEST_F(Host, AllSixSectionsTravelBothWays)
{
    const std::int16_t port = 14; // EDM 1 collects data
    PortParmsTables mine;
    mine.resize();
    for (std::int16_t section = 1; section <= 6; ++section) {
        const auto reply = terminal.request(Build_Port_Parms_Request(section, port));
        ASSERT_TRUE(reply) << section;
        EXPECT_EQ(Get_Packet_Type(*reply), packet_type::PortParms);
        Extract_Port_Parms_Packet(*reply, mine);
    }
    PortCommParms expected = host.plant().parms.PortCommParmsTable[port];
    expected.EnableRemotePrinting = 0; // never taken from the host
    EXPECT_EQ(mine.PortCommParmsTable[port], expected);
    EXPECT_EQ(mine.DataCollectionTable[port].SaveToFolder, "C:\\DNC\\COLLECTED\\EDM 1");

    mine.PortCommParmsTable[port].Baud = 9;
    mine.PortCommParmsTable[port].ConfirmFooter = "M02";
    mine.DataCollectionTable[port].MaxDataSegment = 250;
    for (std::int16_t section = 1; section <= 6; ++section) {
        const auto ack = terminal.request(Build_Port_Parms_Packet(section, port, mine) + EOT);
        ASSERT_TRUE(ack) << section;
        EXPECT_EQ(Get_Packet_Type(*ack), packet_type::Ack) << section;
    }
    terminal.send(Build_Update_Complete_Packet());
    ASSERT_TRUE(
        terminal.waitFor([this] { return host.updatesCompleted() == 1; }, 3000, &host, &HostSimulator::packetReceived));
    EXPECT_EQ(host.plant().parms.PortCommParmsTable[port].Baud, 9);
    EXPECT_EQ(host.plant().parms.PortCommParmsTable[port].ConfirmFooter, "M02");
    EXPECT_EQ(host.plant().parms.DataCollectionTable[port].MaxDataSegment, 250);

    EXPECT_FALSE(terminal.request(Build_Port_Parms_Request(1, 128), 300)) << "no such port, no reply";
}

TEST_F(Host, FaultsDoWhatTheySay)
{
    host.faults.version = "4.11";
    host.faults.minimumRemoteVersion = "1.03";
    auto version = terminal.request(Build_Version_Request());
    ASSERT_TRUE(version);
    EXPECT_EQ(Get_Host_Version(*version), "4.11");
    EXPECT_EQ(Get_Minimum_Remote_Version(*version), "1.03");

    host.faults.ackSectionsUpTo = 2;
    PortParmsTables mine;
    mine.resize();
    EXPECT_TRUE(terminal.request(Build_Port_Parms_Packet(2, 5, mine) + EOT));
    EXPECT_FALSE(terminal.request(Build_Port_Parms_Packet(3, 5, mine) + EOT, 300));

    host.faults.splitInto = 3;
    const int before = terminal.chunks;
    version = terminal.request(Build_Version_Request());
    ASSERT_TRUE(version);
    EXPECT_EQ(Get_Host_Version(*version), "4.11");
    EXPECT_EQ(terminal.chunks - before, 3);
    host.faults.splitInto = 1;

    host.faults.joinWithStatus = true;
    version = terminal.request(Build_Version_Request());
    ASSERT_TRUE(version);
    EXPECT_EQ(Get_Packet_Type(*version), packet_type::VersionReply); // the first packet's type wins
    EXPECT_NE(version->find("WorkstationName=LATHE 01"), std::string::npos);
    host.faults.joinWithStatus = false;

    host.faults.replyDelayMs = 400;
    terminal.send(Build_Version_Request());
    EXPECT_FALSE(terminal.nextPacket(50));
    EXPECT_TRUE(terminal.nextPacket(3000));
    host.faults.replyDelayMs = 0;

    host.faults.silent = true;
    EXPECT_FALSE(terminal.request(Build_Version_Request(), 300));
}

TEST_F(Host, InProcessTextThatIsNoPacketAndAnOversizedPacket)
{
    host.sendNoPacketText();
    const auto text = terminal.nextPacket();
    ASSERT_TRUE(text);
    EXPECT_EQ(Get_Packet_Type(*text), packet_type::NoPacket);

    host.faults.bigPacketSize = 40000;
    const auto big = terminal.request(Build_Status_Request());
    ASSERT_TRUE(big);
    EXPECT_EQ(big->size(), 39999u); // without its SOH
    EXPECT_EQ(Get_Packet_Type(*big), packet_type::PortStatusReply);
    EXPECT_EQ(errorNumberRaisedBy([&] { Get_Packet_Field(*big, "Padding="); }), err::Overflow);
    EXPECT_EQ(status()[0].WorkstationName, "LATHE 01"); // only the first status request is oversized
}

TEST_F(Host, OneTerminalAtATimeAndTheConnectionCanBeClosedUnderIt)
{
    TerminalPeer second;
    EXPECT_FALSE(second.connectTo(host.port(), 1000));

    host.faults.closeAfterPackets = 1;
    EXPECT_TRUE(terminal.request(Build_Version_Request()));
    EXPECT_TRUE(terminal.waitForDisconnect());
    ASSERT_TRUE(
        terminal.waitFor([this] { return !host.hasTerminal(); }, 3000, &host, &HostSimulator::terminalDisconnected));

    host.faults.closeAfterPackets = 0;
    host.faults.noPacketTextOnConnect = true;
    TerminalPeer third;
    ASSERT_TRUE(third.connectTo(host.port()));
    const auto greeting = third.nextPacket();
    ASSERT_TRUE(greeting);
    EXPECT_FALSE(greeting->starts_with("PKT_TYPE="));
}

TEST_F(Host, PushedStatusAndTheVerboseLog)
{
    QStringList lines;
    host.setLog([&lines](const QString& line) { lines << line; });
    host.setPushStatusInterval(20);
    const auto pushed = terminal.nextPacket();
    ASSERT_TRUE(pushed);
    EXPECT_EQ(Get_Packet_Type(*pushed), packet_type::PortStatusReply);
    host.setPushStatusInterval(0);

    terminal.request(Build_Version_Request());
    EXPECT_TRUE(lines.contains(QStringLiteral("recv PKT_TYPE=270<STX>SECTION=0<STX><ETX><EOT>")));
    EXPECT_TRUE(std::any_of(lines.begin(), lines.end(), [](const QString& l) {
        return l.startsWith(QStringLiteral("sent <SOH>PKT_TYPE=170<STX>SECTION=0<STX>VersionMajor=4<STX>"));
    }));
}

TEST(Plant, ProgramsFinishAndPurgesLeaveUnusedPortsAlone)
{
    Plant plant = Plant::demo();
    plant.status[0].ByteCount = std::to_string((1 << 21) - 10);
    plant.advance();
    EXPECT_EQ(plant.status[0].Status, "Complete");
    const PortStatusRecord unused = plant.status[100];
    plant.purge(100);
    plant.purge(-1);
    plant.purge(128);
    EXPECT_EQ(plant.status[100], unused);
}

} // namespace
} // namespace corvane::hostsim
