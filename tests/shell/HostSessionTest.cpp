#include "shell/HostSession.h"
#include "protocol/PortParmsPacket.h"
#include "protocol/Requests.h"
#include "runtime/RunTimeError.h"
#include "shell/HostConfiguration.h"
#include "shell/SessionMessages.h"
#include "support/ManualTimers.h"
#include "support/SimulatedPlant.h"
#include "support/Wait.h"
#include "support/Wire.h"

#include <QEventLoop>
#include <QTcpServer>

#include <gtest/gtest.h>

#include <deque>

namespace corvane {
namespace {

using hostsim::HostSimulator;
using test::operator""_w;
using test::waitFor;

// Answers the session as a window would, from a script.
struct ScriptedSessionUi : SessionUi {
    std::vector<std::string> messages;
    std::deque<std::int16_t> answers;
    QString caption;
    std::uint32_t colour = 0;
    int tableChanges = 0, disconnects = 0, ftpRefusals = 0, logOffs = 0;

    std::function<void(const std::string&)> whileShown; // what happens while a box is up

    void showMessage(const std::string& text) override
    {
        messages.push_back(text);
        if (whileShown)
            whileShown(text);
    }
    std::int16_t askYesNo(const std::string& text) override
    {
        messages.push_back(text);
        const std::int16_t a = answers.empty() ? 6 : answers.front();
        if (!answers.empty())
            answers.pop_front();
        return a;
    }
    void showSocketStatus(const QString& c, std::uint32_t colourValue) override
    {
        caption = c;
        colour = colourValue;
    }
    void portTableChanged() override { ++tableChanges; }
    void rememberGridPosition() override { }
    void afterDisconnect() override { ++disconnects; }
    void notFtpRefused() override { ++ftpRefusals; }
    void idleLoggedOff() override { ++logOffs; }
};

quint16 closedPort()
{
    QTcpServer probe;
    probe.listen(QHostAddress::LocalHost, 0);
    return probe.serverPort(); // closed again when the probe goes
}

class Session : public ::testing::Test {
public:
    std::unique_ptr<test::SimulatedPlant> plant;
    std::unique_ptr<HostConfiguration> config;
    test::ManualTimers timers;
    ScriptedSessionUi ui;
    std::unique_ptr<HostSession> session;

    void SetUp() override { start(); }

    // A fresh host, configuration and session: host 1 is the simulator.
    void start()
    {
        session.reset();
        ui = ScriptedSessionUi{};
        plant.reset(); // its folders leave the environment before the next one's come in
        plant = std::make_unique<test::SimulatedPlant>();
        config = std::make_unique<HostConfiguration>(*plant->registry);
        config->load();
        session = std::make_unique<HostSession>(*config, ui, timers);
    }
    HostSimulator& host() { return plant->host; }
    bool settled()
    {
        return waitFor([this] {
            return session->connectState() != ConnectState::Connecting
                && session->connectState() != ConnectState::AwaitingVersion;
        });
    }
    bool filled()
    {
        return waitFor([this] { return !session->portStatus()[0].WorkstationName.empty(); });
    }

    void connectAndFill()
    {
        session->Command1_Click(QStringLiteral("127.0.0.1"));
        ASSERT_TRUE(settled());
        ASSERT_TRUE(session->connected());
        ASSERT_TRUE(filled());
    }
};

TEST_F(Session, ConnectOutcomes)
{
    struct Case {
        const char* name;
        std::function<void(Session&)> arrange;
        QString txtIP;
        std::string message; // empty: none
        bool connected;
    } const cases[] = {
        {"undefined host", [](Session& s) { s.session->cboHostName_Click(2); }, QStringLiteral("Undefined"),
            message::undefinedHost(), false},
        {"no address", [](Session&) {}, QString(), message::noAddress(), false},
        {"host 4.11 refused", [](Session& s) { s.host().faults.version = "4.11"; }, QStringLiteral("127.0.0.1"),
            message::hostTooOld("4.11"), false},
        {"host 4.12 accepted", [](Session&) {}, QStringLiteral("127.0.0.1"), "", true},
        {"host asks for a newer terminal", [](Session& s) { s.host().faults.minimumRemoteVersion = "1.3"; },
            QStringLiteral("127.0.0.1"), message::upgradeAdvisory("4.12", "1.3"), true},
        {"host asks for the same terminal", [](Session& s) { s.host().faults.minimumRemoteVersion = "1.02"; },
            QStringLiteral("127.0.0.1"), "", true},
    };
    for (const auto& c : cases) {
        start();
        c.arrange(*this);
        session->Command1_Click(c.txtIP);
        ASSERT_TRUE(settled()) << c.name;
        EXPECT_EQ(ui.messages, c.message.empty() ? std::vector<std::string>{} : std::vector<std::string>{c.message})
            << c.name;
        EXPECT_EQ(session->connected(), c.connected) << c.name;
        if (c.connected) {
            EXPECT_EQ(session->connectState(), ConnectState::Connected) << c.name;
            EXPECT_TRUE(filled()) << c.name;
            // The connection timer's next tick starts the status polling, whose tick turns the label green.
            timers.fire("tmrConnectionTimeout");
            EXPECT_EQ(timers["tmrSocketStatus"].interval(), 1);
            timers.fire("tmrSocketStatus");
            EXPECT_EQ(ui.caption, QStringLiteral("Connected")) << c.name;
            EXPECT_EQ(timers["tmrSocketStatus"].interval(), 3000);
            session->Command1_Click(QStringLiteral("127.0.0.1"));
            EXPECT_EQ(ui.messages.back(), message::alreadyConnected()) << c.name;
        } else if (c.message == message::hostTooOld("4.11")) {
            EXPECT_EQ(ui.caption, QStringLiteral("Idle")) << c.name;
            EXPECT_EQ(ui.colour, IdleColour) << c.name;
        } else {
            EXPECT_TRUE(plant->received.empty()) << c.name << ": a refused connect sends nothing";
        }
    }
}

TEST_F(Session, TheConnectWaitGivesUpOnItsFourteenthTick)
{
    config->SocketPorts[1] = closedPort();
    session->Command1_Click(QStringLiteral("127.0.0.1"));
    EXPECT_EQ(ui.caption, QStringLiteral("Connecting..."));
    timers.fire("tmrConnectionTimeout", 13);
    EXPECT_TRUE(ui.messages.empty());
    EXPECT_EQ(session->connectState(), ConnectState::Connecting);
    timers.fire("tmrConnectionTimeout");
    EXPECT_EQ(ui.messages, std::vector<std::string>{message::connectionTimeOut()});
    EXPECT_EQ(session->connectState(), ConnectState::Idle);
    EXPECT_EQ(ui.caption, QStringLiteral("Idle"));
    EXPECT_FALSE(timers["tmrConnectionTimeout"].isActive());
}

TEST_F(Session, AHostThatNeverAnswersTheVersionTimesOut)
{
    host().faults.silent = true;
    session->Command1_Click(QStringLiteral("127.0.0.1"));
    ASSERT_TRUE(waitFor([this] { return session->connectState() == ConnectState::AwaitingVersion; }));
    ASSERT_TRUE(waitFor([this] { return plant->receivedOfType(packet_type::VersionRequest) == 1; }));
    timers.fire("tmrPacketTimeOut");
    EXPECT_EQ(ui.messages, std::vector<std::string>{message::fetchVersionTimeout()});
    EXPECT_EQ(session->connectState(), ConnectState::Idle);
    EXPECT_FALSE(session->connected());
    EXPECT_EQ(ui.caption, QStringLiteral("Idle"));
}

TEST_F(Session, TheSectionFieldIsReadFromEveryPacketButAnAcknowledgement)
{
    connectAndFill();
    std::filesystem::remove(plant->folder.file("error.log"));
    std::filesystem::remove(plant->folder.file("PacketError-Current.log"));
    struct Case {
        const char* name;
        std::string chunk;
        std::string errorLog; // the trap's line, if any
        std::size_t packetLogLines;
        bool routed; // row 0 took the new machine name
    } const cases[] = {
        {"no SECTION= is still routed, after its log line",
            "<SOH>PKT_TYPE=120<STX>WorkstationName=A<STX>FileName=<STX>DNC_ID=<STX>Status=<STX>ByteCount=<STX><EOT>"_w,
            "", 1, true},
        {"a SECTION= beyond 16 bits drops the packet into the trap",
            "<SOH>PKT_TYPE=120<STX>SECTION=99999<STX>WorkstationName=B<STX><EOT>"_w, "Err = 6 ", 0, false},
        {"text with no type is read for SECTION= too", "<SOH>hello<EOT>"_w, "Err = 5 ", 3, false},
        {"an acknowledgement is not", "<SOH>ACK<EOT>"_w, "", 1, false},
    };
    for (const auto& c : cases) {
        const std::string before = session->portStatus()[0].WorkstationName;
        session->Process_Received_Socket_Packet(c.chunk);
        const std::string errors = plant->folder.exists("error.log") ? plant->folder.read("error.log") : "";
        if (c.errorLog.empty())
            EXPECT_EQ(errors, "") << c.name;
        else
            EXPECT_NE(errors.find("Error Location 155 " + c.errorLog), std::string::npos) << c.name << ": " << errors;
        const auto lines = plant->folder.exists("PacketError-Current.log")
            ? plant->folder.lines("PacketError-Current.log")
            : std::vector<std::string>{};
        EXPECT_EQ(lines.size(), c.packetLogLines) << c.name;
        EXPECT_EQ(session->portStatus()[0].WorkstationName != before, c.routed) << c.name;
        std::filesystem::remove(plant->folder.file("error.log"));
        std::filesystem::remove(plant->folder.file("PacketError-Current.log"));
    }
}

TEST_F(Session, AShortStatusReplyUpdatesItsRowsOnly)
{
    connectAndFill();
    const PortStatusRecord third = session->portStatus()[2];
    const int before = ui.tableChanges;
    host().sendRaw(hostsim::statusReply({{"NEW 1", "A.NC", "Idle", "1", "9"}, {"NEW 2", "B.NC", "Idle", "2", "8"}}));
    ASSERT_TRUE(waitFor([this] { return session->portStatus()[0].WorkstationName == "NEW 1"; }));
    EXPECT_EQ(session->portStatus()[1].WorkstationName, "NEW 2");
    EXPECT_EQ(session->portStatus()[2], third);
    EXPECT_GT(ui.tableChanges, before);
    // The piece after the last record holds no fields: the dispatch's trap writes it down.
    EXPECT_NE(plant->folder.read("error.log").find("Error Location 155 Err = 5 "), std::string::npos);
}

// While "No Packet String" is up, more such text is taken in and logged, but opens no box on
// top of it; once it is closed, the next one has its box again.
TEST_F(Session, OneNoPacketStringBoxAtATime)
{
    connectAndFill();
    const auto logged = [this] { return plant->folder.lines("PacketError-Current.log").size(); };
    int boxes = 0;
    ui.whileShown = [&](const std::string& text) {
        if (text != message::NoPacketString || ++boxes > 1)
            return;
        const std::size_t before = logged();
        for (int i = 0; i < 3; ++i)
            host().sendNoPacketText();
        EXPECT_TRUE(waitFor([&] { return logged() == before + 3; })); // the box's own loop
    };
    host().sendNoPacketText();
    ASSERT_TRUE(waitFor([&] { return boxes == 1 && logged() >= 4; }));
    EXPECT_EQ(boxes, 1);
    host().sendNoPacketText();
    EXPECT_TRUE(waitFor([&] { return boxes == 2; }));
}

TEST_F(Session, UnknownTypesAreLoggedAndKnownOnesAreNot)
{
    connectAndFill();
    std::filesystem::remove(plant->folder.file("PacketError-Current.log"));
    for (const char* packet : {"<SOH>PKT_TYPE=220<STX>SECTION=0<STX><EOT>", "<SOH>PKT_TYPE=301<STX>SECTION=0<STX><EOT>",
             "<SOH>PKT_TYPE=555<STX>SECTION=0<STX><EOT>"})
        session->Process_Received_Socket_Packet(test::wire(packet));
    const auto lines = plant->folder.lines("PacketError-Current.log");
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_TRUE(lines[0].starts_with("Packet Error Location 501 Unknown packet. "));
}

TEST_F(Session, CommandsOnFtpPortsAndThePurgeQuestion)
{
    connectAndFill();
    session->rowChanged(24); // CELL A FTP
    session->cmdPurgeAndReset_Click();
    EXPECT_FALSE(session->cmdCommParms_Click([] { return true; }));
    EXPECT_EQ(ui.ftpRefusals, 2);

    session->rowChanged(0);
    ui.answers = {7}; // No
    session->cmdPurgeAndReset_Click();
    EXPECT_EQ(ui.messages.back(), message::purgeQuestion());
    ui.answers = {6}; // Yes
    session->cmdPurgeAndReset_Click();
    session->cmdRefresh_Click();
    ASSERT_TRUE(waitFor([this] { return session->portStatus()[0].Status == "Idle"; }));
    EXPECT_EQ(session->portStatus()[0].ByteCount, "0");
    // In order, the host got: version, status, then the one purge, for row 0, and the refresh.
    ASSERT_EQ(plant->received.size(), 4u);
    EXPECT_EQ(plant->received[2], Build_Purge_Reset_Request(0).substr(1));
    EXPECT_EQ(plant->received[3], Build_Status_Request().substr(1));

    EXPECT_FALSE(session->cmdCommParms_Click([] { return false; }));
    EXPECT_TRUE(session->cmdCommParms_Click([] { return true; }));
    EXPECT_EQ(session->selectedPortIndex(), 0);
}

TEST_F(Session, CommandsWithoutAConnection)
{
    session->cmdRefresh_Click();
    session->cmdPurgeAndReset_Click();
    EXPECT_FALSE(session->cmdCommParms_Click([] { return true; }));
    EXPECT_EQ(ui.messages, std::vector<std::string>(3, message::noSocketConnection()));
    EXPECT_TRUE(plant->received.empty());
}

TEST_F(Session, IdleLogOffComesOnTheTickAfterTheLimitAndNeverWithZero)
{
    for (std::int16_t limit : {std::int16_t{0}, std::int16_t{1}, std::int16_t{3}}) {
        start();
        config->IdleMinutes = limit;
        connectAndFill();
        ui.messages.clear();
        session->cmdRefresh_Click(); // the last command
        timers.fire("tmrIdleLogoff", limit);
        EXPECT_EQ(ui.logOffs, 0) << limit;
        timers.fire("tmrIdleLogoff");
        if (limit == 0) {
            EXPECT_EQ(ui.logOffs, 0);
            EXPECT_EQ(session->idleMinuteCount(), 1) << "the count runs on";
            EXPECT_TRUE(session->connected());
            continue;
        }
        EXPECT_EQ(ui.logOffs, 1) << limit;
        EXPECT_EQ(ui.messages, std::vector<std::string>{message::idleLogOff(limit)});
        EXPECT_FALSE(session->connected());
        EXPECT_EQ(ui.caption, QStringLiteral("Idle"));
    }
}

TEST_F(Session, DisconnectAndALostSocketReturnToIdle)
{
    connectAndFill();
    session->cmdDisconnect_Click();
    EXPECT_FALSE(session->connected());
    EXPECT_EQ(ui.caption, QStringLiteral("Idle"));
    EXPECT_EQ(ui.disconnects, 1);
    EXPECT_EQ(session->portStatus().size(), 128u);
    EXPECT_EQ(session->portStatus()[0], PortStatusRecord{});

    ASSERT_TRUE(waitFor([this] { return !host().hasTerminal(); }));
    connectAndFill();
    timers.fire("tmrConnectionTimeout"); // starts the status polling
    host().faults.closeAfterPackets = 1; // the host goes away under the terminal
    session->cmdRefresh_Click();
    ASSERT_TRUE(waitFor([this] { return !host().hasTerminal(); }));
    ASSERT_TRUE(waitFor([this] { return !session->connected(); }));
    timers.fire("tmrSocketStatus");
    EXPECT_EQ(ui.caption, QStringLiteral("Idle"));
    EXPECT_EQ(session->connectState(), ConnectState::Idle);
}

TEST_F(Session, ACancelledWaitLeavesLaterWaitsAlone)
{
    bool flag = false;
    QMetaObject::invokeMethod(
        session.get(), [this] { session->cancelWaits(); }, Qt::QueuedConnection);
    EXPECT_FALSE(session->waitUntil([&] { return flag; }));
    // A later wait runs until what it waits for holds: the idle tick wakes it to look again.
    QMetaObject::invokeMethod(
        session.get(),
        [&] {
            flag = true;
            timers.fire("tmrIdleLogoff");
        },
        Qt::QueuedConnection);
    EXPECT_TRUE(session->waitUntil([&] { return flag; }));
}

// The editor's exchanges: each request awaited, each wait ended by the reply or by tmrPacketWait,
// which the test ticks when the host has taken the request in and stays silent.
class Exchange : public Session {
public:
    // Ticks tmrPacketWait once the host holds `count` packets of this type.
    void expireWhenHostHas(std::int16_t type, std::size_t count)
    {
        test::whenReady(
            [this, type, count]() -> bool* {
                static bool ready = true;
                return plant->receivedOfType(type) >= count ? &ready : nullptr;
            },
            [this](bool&) { timers.fire("tmrPacketWait"); });
    }
};

TEST_F(Exchange, FetchThenUpdateRoundTripsChangesIntoTheHostsStore)
{
    connectAndFill();
    const std::int16_t port = 14;
    ASSERT_TRUE(session->FetchCommParms(port));
    PortParmsTables& mine = session->parmsTables();
    EXPECT_EQ(mine.PortCommParmsTable[port], host().plant().parms.PortCommParmsTable[port]);
    EXPECT_EQ(mine.DataCollectionTable[port], host().plant().parms.DataCollectionTable[port]);

    mine.PortCommParmsTable[port].ConfirmFooter = "M30";
    mine.DataCollectionTable[port].MaxDataSegment = 750;
    ASSERT_TRUE(session->UpdateCommParms(port));
    ASSERT_TRUE(waitFor([this] { return host().updatesCompleted() == 1; }));
    EXPECT_EQ(host().plant().parms.PortCommParmsTable[port].ConfirmFooter, "M30");
    EXPECT_EQ(host().plant().parms.DataCollectionTable[port].MaxDataSegment, 750);
    EXPECT_EQ(plant->receivedOfType(packet_type::PortParms), 6u);
    EXPECT_TRUE(ui.messages.empty());
}

TEST_F(Exchange, AHostThatStopsAcknowledgingGetsOneMessageAndNoTrailer)
{
    connectAndFill();
    host().faults.ackSectionsUpTo = 2;
    expireWhenHostHas(packet_type::PortParms, 3);
    EXPECT_FALSE(session->UpdateCommParms(3));
    EXPECT_EQ(ui.messages, std::vector<std::string>{std::string(message::UpdateNoAck)});
    EXPECT_EQ(plant->receivedOfType(packet_type::PortParms), 3u) << "nothing after the unacknowledged section";
    EXPECT_EQ(plant->receivedOfType(packet_type::UpdateComplete), 0u);
}

TEST_F(Exchange, ASilentHostStopsTheFetchAtItsFirstSection)
{
    connectAndFill();
    host().faults.silent = true;
    expireWhenHostHas(packet_type::PortParmsRequest, 1);
    EXPECT_FALSE(session->FetchCommParms(5));
    EXPECT_EQ(ui.messages, std::vector<std::string>{std::string(message::FetchCommParmsTimeout)});
    EXPECT_EQ(plant->receivedOfType(packet_type::PortParmsRequest), 1u);

    ui.messages.clear();
    expireWhenHostHas(packet_type::MachineTypeRequest, 1);
    EXPECT_FALSE(session->FetchMachineTypes(0));
    EXPECT_EQ(ui.messages, std::vector<std::string>{std::string(message::FetchMachineTypeTimeout)});
}

TEST_F(Exchange, WithoutAConnectionNothingGoesOutAndTheTrailerFailsToTheCaller)
{
    connectAndFill();
    session->cmdDisconnect_Click();
    const std::size_t sent = plant->received.size();
    EXPECT_EQ(test::errorNumberRaisedBy([this] { session->UpdateCommParms(3); }), err::SocketBadState);
    EXPECT_TRUE(session->FetchCommParms(3)) << "sections are skipped, silently";
    EXPECT_EQ(plant->received.size(), sent);
    EXPECT_TRUE(ui.messages.empty());
}

// A change made while a section is awaited goes out with a section still to be built, and not
// with one already sent.
TEST_F(Exchange, AChangeMadeDuringTheUpdateGoesOutWithALaterSection)
{
    connectAndFill();
    const std::int16_t port = 20;
    ASSERT_TRUE(session->FetchCommParms(port));
    PortCommParms& record = session->parmsTables().PortCommParmsTable[port];
    const std::string name = record.wstat_name;
    test::whenReady(
        [this]() -> bool* {
            static bool ready = true;
            return plant->receivedOfType(packet_type::PortParms) == 1 ? &ready : nullptr;
        },
        [&record](bool&) {
            record.wstat_name = "RENAMED"; // section 1, already on its way
            record.ConfirmFooter = "LATE"; // section 5, not yet built
        });
    ASSERT_TRUE(session->UpdateCommParms(port));
    EXPECT_EQ(host().plant().parms.PortCommParmsTable[port].wstat_name, name);
    EXPECT_EQ(host().plant().parms.PortCommParmsTable[port].ConfirmFooter, "LATE");
}

TEST_F(Exchange, TheHostsMachineTypesArriveUnaskedAndWhenAskedFor)
{
    connectAndFill();
    ASSERT_FALSE(session->machineTypes().empty()) << "announced before the port states";
    EXPECT_EQ(session->machineTypes().front(), host().plant().machineTypes.front());
    ASSERT_TRUE(session->FetchMachineTypes(0));
}

TEST(HostConfigurationStore, DefaultsStandInForWhatIsMissingAndStoredValuesAreUsedAsStored)
{
    test::SimulatedPlant plant;
    const QString idle = QStringLiteral("Idle Minutes");
    struct Case {
        QString stored;
        std::int16_t idleMinutes;
    } const cases[] = {
        {QString(), 5}, {QStringLiteral("0"), 0}, {QStringLiteral("75"), 75}, {QStringLiteral("-3"), -3},
        {QStringLiteral("abc"), 5}, {QStringLiteral("70000"), 5}, // a read error: the default
    };
    for (const auto& c : cases) {
        plant.registry->writeText(Hive::Machine, ConfigurationKey, idle, c.stored);
        HostConfiguration config(*plant.registry);
        config.load();
        EXPECT_EQ(config.IdleMinutes, c.idleMinutes) << c.stored.toStdString();
    }

    HostConfiguration config(*plant.registry);
    EXPECT_EQ(config.load(), 1);
    EXPECT_EQ(config.HostNames[3], QStringLiteral("Host 3"));
    EXPECT_EQ(config.SocketPorts[5], 49144);
    config.HostNames[2] = QStringLiteral("Bay 2");
    config.SocketPorts[2] = 5000;
    ASSERT_TRUE(config.save());
    config.Save_LastHostIPIndex(2);
    HostConfiguration again(*plant.registry);
    EXPECT_EQ(again.load(), 2);
    EXPECT_EQ(again.HostNames[2], QStringLiteral("Bay 2"));
    EXPECT_EQ(again.SocketPorts[2], 5000);
}

} // namespace
} // namespace corvane
