#include "hostsim/HostSimulator.h"
#include "protocol/PortParmsPacket.h"
#include "protocol/Requests.h"
#include "support/ManualTimers.h"
#include "support/Records.h"
#include "support/ScratchProgramFolder.h"
#include "support/TerminalPeer.h"
#include "support/Wire.h"

#include <gtest/gtest.h>

#include <tuple>

namespace corvane::hostsim {
namespace {

using test::errorNumberRaisedBy;
using test::operator""_w;
using test::TerminalPeer;
using test::waitFor;

class Host : public ::testing::Test {
protected:
    test::ScratchProgramFolder folder; // the terminal side's packet log lands here
    test::ManualTimers clock;
    HostSimulator host{Plant::demo(), &clock};
    TerminalPeer terminal;

    void SetUp() override
    {
        host.announceMachineTypes = false; // each request here gets its own answer and nothing else
        clock.tickWhenIdle("tmrChunkGap", &host);
        QObject::connect(&host, &HostSimulator::packetReceived, [this] { ++received; });
        ASSERT_TRUE(host.listen());
        ASSERT_TRUE(terminal.connectTo(host.port()));
        ASSERT_TRUE(waitFor([this] { return host.hasTerminal(); }));
    }

    std::vector<PortStatusRecord> status()
    {
        std::vector<PortStatusRecord> rows(PortCount);
        const auto reply = terminal.request(Build_Status_Request());
        EXPECT_TRUE(reply);
        // The piece after the last record lies past the 128 rows, as in the terminal itself.
        EXPECT_EQ(
            errorNumberRaisedBy([&] { Extract_Status_Packet(reply.value_or(""), rows, {}); }), err::SubscriptOutOfRange);
        return rows;
    }

    // Sends a request and tells, once the host has taken it in, whether it answered it.
    bool answered(const std::string& request)
    {
        const int answersBefore = host.answers();
        const int expected = received + 1;
        terminal.send(request);
        EXPECT_TRUE(waitFor([&] { return received == expected; }));
        return host.answers() > answersBefore;
    }
    int received = 0;
};

TEST_F(Host, StatusAndMachineTypesComeBackAsTheTerminalReadsThem)
{
    EXPECT_EQ(status(), host.plant().status);
    const auto types = terminal.request(Build_Machine_Type_Request(0));
    ASSERT_TRUE(types);
    std::vector<MachineTypeRecord> table;
    std::int16_t count = 0;
    EXPECT_EQ(errorNumberRaisedBy([&] { Extract_Machine_Types(*types, table, count, {}); }), err::InvalidProcedureCall);
    ASSERT_EQ(count, 7); // six types and the piece after the last ETX
    EXPECT_TRUE(std::equal(host.plant().machineTypes.begin(), host.plant().machineTypes.end(), table.begin()));
}

TEST_F(Host, APurgeShowsInTheNextStatus)
{
    ASSERT_EQ(status()[0].Status, "Sending");
    terminal.send(Build_Purge_Reset_Request(0));
    const PortStatusRecord purged = status()[0];
    EXPECT_EQ(std::tuple(purged.Status, purged.ByteCount, purged.FileName, purged.WorkstationName),
        std::tuple("Idle", "0", "", "LATHE 01"));
}

TEST_F(Host, ASectionThatCannotBeStoredIsNotAcknowledged)
{
    const std::int16_t port = 3;
    const PortParmsTables before = host.plant().parms;
    struct Case {
        const char* name;
        std::function<void(PortParmsTables&)> change;
        std::int16_t section;
    } const cases[] = {
        {"a negative baud index", [](PortParmsTables& t) { t.PortCommParmsTable[3].Baud = -1; }, 1},
        {"a baud index past the list", [](PortParmsTables& t) { t.PortCommParmsTable[3].Baud = 15; }, 1},
        {"a print option no port has", [](PortParmsTables& t) { t.DataCollectionTable[3].PrintOption = 7; }, 6},
    };
    for (const auto& c : cases) {
        PortParmsTables mine = before;
        c.change(mine);
        EXPECT_FALSE(answered(Build_Port_Parms_Packet(c.section, port, mine) + EOT)) << c.name;
        EXPECT_EQ(host.plant().parms.PortCommParmsTable[port], before.PortCommParmsTable[port]) << c.name;
        EXPECT_EQ(host.plant().parms.DataCollectionTable[port], before.DataCollectionTable[port]) << c.name;
    }
    // A value that does not convert is no better.
    EXPECT_FALSE(answered("<SOH>PKT_TYPE=100<STX>SECTION=1<STX>Port=3<STX>wstat_name=X<STX>Port_No=abc<STX><EOT>"_w));
    EXPECT_EQ(host.plant().parms.PortCommParmsTable[port].wstat_name, before.PortCommParmsTable[port].wstat_name);
    EXPECT_FALSE(answered(Build_Port_Parms_Request(1, 128))) << "no such port, no reply";
}

// The other fault switches are held to account by the session and program tests that use them;
// these two leave the packets the terminal reads unchanged, so the chunks show them.
TEST_F(Host, SplitAndJoinedRepliesAreSentAsTheirSwitchesSay)
{
    host.faults.splitInto = 3;
    const int before = host.chunksWritten();
    const int readBefore = terminal.chunks;
    auto version = terminal.request(Build_Version_Request());
    ASSERT_TRUE(version);
    EXPECT_EQ(Get_Host_Version(*version, {}), "4.12");
    EXPECT_EQ(host.chunksWritten() - before, 3);
    EXPECT_EQ(terminal.chunks - readBefore, 3) << "each piece read as a chunk of its own";
    host.faults.splitInto = 1;

    host.faults.joinWithStatus = true;
    version = terminal.request(Build_Version_Request());
    ASSERT_TRUE(version);
    EXPECT_EQ(Get_Packet_Type(*version, {}), packet_type::VersionReply); // the first packet's type wins
    EXPECT_NE(version->find("WorkstationName=LATHE 01"), std::string::npos);
}

TEST_F(Host, TextThatIsNoPacketAndPushedStatusKeepTheirDistance)
{
    // What follows a packet nobody asked for waits out the gap, so the two stay apart.
    host.sendNoPacketText();
    terminal.send(Build_Version_Request());
    const auto text = terminal.nextPacket();
    ASSERT_TRUE(text);
    EXPECT_EQ(Get_Packet_Type(*text, {}), packet_type::NoPacket);
    const auto version = terminal.nextPacket();
    ASSERT_TRUE(version);
    EXPECT_EQ(Get_Packet_Type(*version, {}), packet_type::VersionReply);

    host.setPushStatusInterval(2000);
    clock.fire("tmrPushStatus");
    const auto pushed = terminal.nextPacket();
    ASSERT_TRUE(pushed);
    EXPECT_EQ(Get_Packet_Type(*pushed, {}), packet_type::PortStatusReply);
}

// The end of the sending side comes after all that waits to go: a terminal reads the whole reply
// before the end, and closing its side then is the host's sign that it has read everything.
TEST_F(Host, TheSendingSideEndsAfterAllThatWaits)
{
    host.faults.splitInto = 3;
    terminal.send(Build_Version_Request());
    ASSERT_TRUE(waitFor([this] { return received == 1; }));
    host.endSending(); // the second and third pieces still wait out their gaps
    const auto version = terminal.nextPacket();
    ASSERT_TRUE(version);
    EXPECT_EQ(Get_Host_Version(*version, {}), "4.12");
    EXPECT_TRUE(waitFor([this] { return !host.hasTerminal(); }));
}

// A second terminal is refused while one is connected; a silent one goes after the idle time,
// and the next one gets in.
TEST_F(Host, OneTerminalAtATimeAndASilentOneIsDropped)
{
    TerminalPeer second;
    EXPECT_TRUE(second.connectionRefused(host.port()));
    clock.fire("tmrIdleDrop");
    EXPECT_TRUE(terminal.waitForDisconnect());
    ASSERT_TRUE(waitFor([this] { return !host.hasTerminal(); }));
    TerminalPeer third;
    EXPECT_TRUE(third.connectTo(host.port()));
}

TEST_F(Host, ATerminalThatNeverEndsItsRequestCannotGrowTheHost)
{
    QStringList lines;
    host.setLog([&lines](const QString& line) { lines << line; });
    terminal.send("<SOH>PKT_TYPE=220<STX>"_w + std::string(RequestSplitter::MaxRequest, 'x'));
    ASSERT_TRUE(waitFor([&] { return lines.filter(QStringLiteral("dropped a request")).size() == 1; }));
    terminal.send("more of the same, then its end<EOT>"_w);
    EXPECT_TRUE(terminal.request(Build_Version_Request())) << "the next request is answered";
}

} // namespace
} // namespace corvane::hostsim
