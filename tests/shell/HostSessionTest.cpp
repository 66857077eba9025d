#include "session/HostSession.h"
#include "commparms/ExchangeTexts.h"
#include "commparms/ParmsRules.h"
#include "hostsim/HostPackets.h"
#include "protocol/PortParmsPacket.h"
#include "protocol/Requests.h"
#include "runtime/RunTimeError.h"
#include "session/HostConfiguration.h"
#include "shell/SessionMessages.h"
#include "support/ChangeRecordLines.h"
#include "support/ManualTimers.h"
#include "support/SimulatedPlant.h"
#include "support/Wait.h"
#include "support/Wire.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTcpServer>
#include <QTimer>

#include <gtest/gtest.h>

#include <deque>
#include <filesystem>

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
    void showSocketStatus(const QString& c, std::uint32_t) override { caption = c; }
    void portTableChanged() override { ++tableChanges; }
    void rememberGridPosition() override { }
    void afterDisconnect() override { ++disconnects; }
    void notFtpRefused() override { ++ftpRefusals; }
    void idleLoggedOff() override { ++logOffs; }
};

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
        session = std::make_unique<HostSession>(*config, ui, timers, plant->folder.logs());
        // An update looks for late acknowledgements for a moment before its trailer: that moment
        // passes once the host has sent all it had to send, a surplus included.
        timers.tickWhenIdle("tmrAckSettle", session.get(), [this] { return host().allSent(); });
    }
    HostSimulator& host() { return plant->host; }
    bool settled()
    {
        return waitFor([this] {
            return session->connectState() != ConnectState::Connecting
                && session->connectState() != ConnectState::AwaitingVersion;
        });
    }

    void connectAndFill()
    {
        session->Command1_Click(QStringLiteral("127.0.0.1"));
        ASSERT_TRUE(settled());
        ASSERT_TRUE(session->connected());
        ASSERT_TRUE(waitFor([this] { return !session->portStatus()[0].WorkstationName.empty(); }));
    }

    // The editor's exchanges wait for each reply or for tmrPacketWait, which a test ticks once the
    // host has taken the request in and stays silent.
    void whenHostHas(std::int16_t type, std::size_t count, std::function<void()> act)
    {
        test::whenReady(
            [this, type, count]() -> bool* {
                static bool ready = true;
                return plant->receivedOfType(type) >= count ? &ready : nullptr;
            },
            [act](bool&) { act(); });
    }
    void expireWhenHostHas(std::int16_t type, std::size_t count)
    {
        whenHostHas(type, count, [this] { timers.fire("tmrPacketWait"); });
    }
};

// The host the simulator runs (4.12, asking for this terminal's own 1.02) is accepted silently
// by every other connect here.
TEST_F(Session, ConnectOutcomes)
{
    session->Command1_Click(QString());
    session->cboHostName_Click(2);
    session->Command1_Click(QStringLiteral("Undefined"));
    EXPECT_EQ(ui.messages, (std::vector<std::string>{message::noAddress(), message::undefinedHost()}));

    start();
    host().faults.version = "4.11";
    session->Command1_Click(QStringLiteral("127.0.0.1"));
    ASSERT_TRUE(settled());
    EXPECT_EQ(ui.messages, std::vector<std::string>{message::hostTooOld("4.11")});
    EXPECT_FALSE(session->connected());

    start();
    host().faults.minimumRemoteVersion = "1.3";
    connectAndFill();
    EXPECT_EQ(ui.messages, std::vector<std::string>{message::upgradeAdvisory("4.12", "1.3")});
    session->Command1_Click(QStringLiteral("127.0.0.1"));
    EXPECT_EQ(ui.messages.back(), message::alreadyConnected());
}

TEST_F(Session, TheConnectWaitGivesUpOnItsFourteenthTick)
{
    QTcpServer probe;
    probe.listen(QHostAddress::LocalHost, 0);
    config->SocketPorts[1] = probe.serverPort();
    probe.close(); // nothing listens there any more
    session->Command1_Click(QStringLiteral("127.0.0.1"));
    timers.fire("tmrConnectionTimeout", 13);
    EXPECT_TRUE(ui.messages.empty());
    timers.fire("tmrConnectionTimeout");
    EXPECT_EQ(ui.messages, std::vector<std::string>{message::connectionTimeOut()});
    EXPECT_EQ(session->connectState(), ConnectState::Idle);
}

TEST_F(Session, AHostThatNeverAnswersTheVersionTimesOut)
{
    host().faults.silent = true;
    session->Command1_Click(QStringLiteral("127.0.0.1"));
    ASSERT_TRUE(waitFor([this] { return plant->receivedOfType(packet_type::VersionRequest) == 1; }));
    timers.fire("tmrPacketTimeOut");
    EXPECT_EQ(ui.messages, std::vector<std::string>{message::fetchVersionTimeout()});
    EXPECT_FALSE(session->connected());
}

// SECTION= is read from every packet but an acknowledgement; a type the terminal does not know
// is logged, one it takes without action is not.
TEST_F(Session, WhatTheDispatchLogsAndTraps)
{
    connectAndFill();
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
        {"an acknowledgement nobody awaits is logged, and passed over", "<SOH>ACK<EOT>"_w, "", 2, false},
        {"a parameter section nobody asked for is logged, not taken in",
            "<SOH>PKT_TYPE=100<STX>SECTION=1<STX>Port=0<STX>wstat_name=PLANTED<STX><EOT>"_w, "", 1, false},
        {"a known type", "<SOH>PKT_TYPE=301<STX>SECTION=0<STX><EOT>"_w, "", 0, false},
        {"an unknown type", "<SOH>PKT_TYPE=555<STX>SECTION=0<STX><EOT>"_w, "", 1, false},
    };
    for (const auto& c : cases) {
        std::filesystem::remove(plant->folder.file("error.log"));
        std::filesystem::remove(plant->folder.file("PacketError-Current.log"));
        const std::string before = session->portStatus()[0].WorkstationName;
        session->Process_Received_Socket_Packet(c.chunk);
        const std::string errors = plant->folder.exists("error.log") ? plant->folder.read("error.log") : "";
        EXPECT_TRUE(
            c.errorLog.empty() ? errors.empty() : errors.find("Error Location 155 " + c.errorLog) != std::string::npos)
            << c.name << ": " << errors;
        const char* const packetLog = "PacketError-Current.log";
        EXPECT_EQ(
            plant->folder.exists(packetLog) ? plant->folder.lines(packetLog).size() : std::size_t{0}, c.packetLogLines)
            << c.name;
        EXPECT_EQ(session->portStatus()[0].WorkstationName != before, c.routed) << c.name;
    }
    EXPECT_EQ(session->parmsTables().PortCommParmsTable[0], PortCommParms{});
}

TEST_F(Session, AShortStatusReplyUpdatesItsRowsOnly)
{
    connectAndFill();
    const PortStatusRecord third = session->portStatus()[2];
    const int before = ui.tableChanges;
    host().sendRaw(hostsim::statusReply({{"NEW 1", "A.NC", "Idle", "1", "9"}, {"NEW 2", "B.NC", "Idle", "2", "8"}}));
    ASSERT_TRUE(waitFor([this] { return session->portStatus()[0].WorkstationName == "NEW 1"; }));
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
    host().sendNoPacketText();
    EXPECT_TRUE(waitFor([&] { return boxes == 2; }));
}

TEST_F(Session, CommandsOnFtpPortsAndThePurgeQuestion)
{
    connectAndFill();
    session->rowChanged(24); // CELL A FTP
    session->cmdPurgeAndReset_Click();
    EXPECT_FALSE(session->cmdCommParms_Click([] { return true; }));
    EXPECT_EQ(ui.ftpRefusals, 2);

    session->rowChanged(0);
    // No, a box ended without an answer, Cancel: nothing; then Yes purges.
    ui.answers = {7, 0, 2, 6};
    for (int i = 0; i < 4; ++i)
        session->cmdPurgeAndReset_Click();
    session->cmdRefresh_Click();
    ASSERT_TRUE(waitFor([this] { return session->portStatus()[0].Status == "Idle"; }));
    // In order, the host got: version, status, then the one purge, for row 0, and the refresh.
    ASSERT_EQ(plant->received.size(), 4u);
    EXPECT_EQ(plant->received[2], Build_Purge_Reset_Request(0).substr(1));
    EXPECT_EQ(plant->received[3], Build_Status_Request().substr(1));

    EXPECT_FALSE(session->cmdCommParms_Click([] { return false; }));
    EXPECT_TRUE(session->cmdCommParms_Click([] { return true; }));
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
    for (std::int16_t limit : {std::int16_t{0}, std::int16_t{3}}) {
        start();
        config->IdleMinutes = limit;
        connectAndFill();
        session->cmdRefresh_Click(); // the last command
        timers.fire("tmrIdleLogoff", limit);
        EXPECT_EQ(ui.logOffs, 0) << limit;
        timers.fire("tmrIdleLogoff");
        EXPECT_EQ(ui.logOffs, limit == 0 ? 0 : 1) << limit;
        EXPECT_EQ(session->connected(), limit == 0) << limit;
    }
}

// The log-off goes ahead, but a port's changes that were not sent are kept in a file the client
// can import, and the message says where; the rules' own corrections on showing are no change.
TEST_F(Session, TheIdleLogOffKeepsAnEditThatWasNotSent)
{
    config->IdleMinutes = 1;
    connectAndFill();
    ASSERT_TRUE(session->FetchCommParms(3));
    ASSERT_TRUE(session->FetchCommParms(4));
    EXPECT_FALSE(session->hasUnsentEdit(3));
    session->parmsTables().commParms(3).ConfirmFooter = "M77";
    EXPECT_TRUE(session->hasUnsentEdit(3));
    timers.fire("tmrIdleLogoff", 2);
    ASSERT_EQ(ui.logOffs, 1);
    const std::string said = ui.messages.back();
    EXPECT_EQ(said.rfind(message::idleLogOff(1), 0), 0u) << "the log-off's own words first";
    std::vector<std::filesystem::path> kept;
    for (const auto& entry : std::filesystem::directory_iterator(plant->folder.path()))
        if (entry.path().filename().string().starts_with("unsent-port-"))
            kept.push_back(entry.path());
    ASSERT_EQ(kept.size(), 1u) << "port 5's fetch holds nothing unsent";
    EXPECT_NE(said.find(kept[0].string()), std::string::npos) << said;
    const QJsonObject port = QJsonDocument::fromJson(QByteArray::fromStdString(plant->folder.read(kept[0].filename().string())))
                                 .object()
                                 .value(QStringLiteral("ports"))
                                 .toArray()
                                 .at(0)
                                 .toObject();
    EXPECT_EQ(port.value(QStringLiteral("port")).toInt(), 4);
    EXPECT_EQ(port.value(QStringLiteral("PortCommParms")).toObject().value(QStringLiteral("ConfirmFooter")).toString(),
        QStringLiteral("M77"));
}

TEST_F(Session, DisconnectAndALostSocketReturnToIdle)
{
    connectAndFill();
    ASSERT_TRUE(session->FetchCommParms(3));
    session->cmdDisconnect_Click();
    EXPECT_FALSE(session->connected());
    EXPECT_EQ(ui.disconnects, 1);
    EXPECT_EQ(session->portStatus()[0], PortStatusRecord{});
    // The editor's exchanges send nothing now; only the update's trailer fails, to its caller. A
    // fetch that could ask for nothing is no fetch: the port is not shown or sent until one is.
    const std::size_t sent = plant->received.size();
    EXPECT_FALSE(session->UpdateCommParms(3)) << "said, with the edit kept";
    EXPECT_FALSE(session->FetchCommParms(3)) << "sections are skipped, silently";
    EXPECT_EQ(plant->received.size(), sent);
    EXPECT_EQ(ui.messages, std::vector<std::string>{message::noSocketConnection()});
    EXPECT_FALSE(session->UpdateCommParms(3));
    EXPECT_EQ(ui.messages.back(), notFetchedWhole(4, session->fetchState(3)));

    ASSERT_TRUE(waitFor([this] { return !host().hasTerminal(); }));
    connectAndFill();
    timers.fire("tmrConnectionTimeout"); // starts the status polling
    host().faults.closeAfterPackets = 1; // the host goes away under the terminal
    session->cmdRefresh_Click();
    ASSERT_TRUE(waitFor([this] { return !session->connected(); }));
    timers.fire("tmrSocketStatus");
    EXPECT_EQ(ui.caption, QStringLiteral("Idle"));
    EXPECT_EQ(session->connectState(), ConnectState::Idle);
}

TEST_F(Session, ACancelledWaitLeavesLaterWaitsAlone)
{
    bool flag = false;
    QTimer::singleShot(0, session.get(), [this] { session->cancelWaits(); });
    EXPECT_FALSE(session->waitUntil([&] { return flag; }));
    // A later wait runs until what it waits for holds: the idle tick wakes it to look again.
    QTimer::singleShot(0, session.get(), [&] {
        flag = true;
        timers.fire("tmrIdleLogoff");
    });
    EXPECT_TRUE(session->waitUntil([&] { return flag; }));
}

// How a host may behave while a port is fetched and sent back: politely, pushing its status
// between the replies, acknowledging every section twice, or acknowledging ahead.
enum class Peer { Polite, PushesStatus, DuplicateAcks, EarlyAcks };

// The host's machine types come unasked and when asked for; a change made while a section is
// awaited goes out with a section still to be built, and not with one already sent. Whatever the
// host pushes in between, the fetch holds exactly what the host holds; an update that gets more
// acknowledgements than it sent sections is uncertain: no trailer, said, and the port must be
// fetched again before it can be sent.
TEST_F(Session, FetchThenUpdateAgainstPoliteAndHostilePeers)
{
    for (const Peer peer : {Peer::Polite, Peer::PushesStatus, Peer::DuplicateAcks, Peer::EarlyAcks}) {
        SCOPED_TRACE(static_cast<int>(peer));
        start();
        if (peer == Peer::PushesStatus)
            QObject::connect(&host(), &HostSimulator::packetReceived, &host(),
                [this] { host().sendRaw(hostsim::statusReply(host().plant().status)); });
        host().faults.duplicateAck = peer == Peer::DuplicateAcks;
        host().faults.earlyAck = peer == Peer::EarlyAcks;
        connectAndFill();
        ASSERT_TRUE(waitFor([this] { return !session->machineTypes().empty(); })) << "announced unasked";
        EXPECT_EQ(session->machineTypes().front(), host().plant().machineTypes.front());

        const std::int16_t port = 14;
        const int tablesBefore = ui.tableChanges;
        ASSERT_TRUE(session->FetchCommParms(port));
        if (peer == Peer::PushesStatus) {
            EXPECT_GE(ui.tableChanges - tablesBefore, 6) << "a status table taken in before each reply";
        }
        PortParmsTables& mine = session->parmsTables();
        EXPECT_EQ(*session->received(port), host().plant().parms.records(port));
        PortRecords shown = host().plant().parms.records(port);
        applyShowRules(shown.comm);
        EXPECT_EQ(mine.records(port), shown);
        EXPECT_TRUE(session->fetchState(port).complete);

        PortCommParms& record = mine.PortCommParmsTable[port];
        const std::string name = record.wstat_name;
        mine.DataCollectionTable[port].MaxDataSegment = 750;
        whenHostHas(packet_type::PortParms, 1, [&record] {
            record.wstat_name = "RENAMED"; // section 1, already on its way
            record.ConfirmFooter = "LATE"; // section 5, not yet built
        });
        const bool hostile = peer == Peer::DuplicateAcks || peer == Peer::EarlyAcks;
        EXPECT_EQ(session->UpdateCommParms(port), !hostile);
        if (hostile) {
            EXPECT_EQ(ui.messages, std::vector<std::string>{updateUncertain(port + 1)});
            ASSERT_TRUE(test::waitUntilIdle());
            EXPECT_EQ(plant->receivedOfType(packet_type::UpdateComplete), 0u) << "no trailer";
            EXPECT_TRUE(session->fetchState(port).uncertain);
            EXPECT_FALSE(session->UpdateCommParms(port)) << "not again before a fetch";
            EXPECT_EQ(ui.messages.back(), notFetchedWhole(port + 1, session->fetchState(port)));
            continue;
        }
        ASSERT_TRUE(waitFor([this] { return host().updatesCompleted() == 1; }));
        const auto& theirs = host().plant().parms;
        EXPECT_EQ(theirs.PortCommParmsTable[port].wstat_name, name);
        EXPECT_EQ(theirs.PortCommParmsTable[port].ConfirmFooter, "LATE");
        EXPECT_EQ(theirs.DataCollectionTable[port].MaxDataSegment, 750);
        EXPECT_TRUE(ui.messages.empty());
    }
}

// A fetch that stops short keeps nothing of what it got: the records stand as they were, the
// missing sections are named, and nothing of the port is sent.
TEST_F(Session, AFetchCutShortKeepsNothingAndSendsNothing)
{
    connectAndFill();
    const std::int16_t port = 9;
    const PortRecords before = session->parmsTables().records(port);
    QObject::connect(&host(), &HostSimulator::packetReceived, &host(), [this] {
        if (plant->receivedOfType(packet_type::PortParmsRequest) == 4)
            host().faults.silent = true;
    });
    expireWhenHostHas(packet_type::PortParmsRequest, 4);
    EXPECT_FALSE(session->FetchCommParms(port));
    EXPECT_EQ(session->parmsTables().records(port), before);
    EXPECT_EQ(session->fetchState(port).missing, (std::vector<std::int16_t>{4, 5, 6}));
    EXPECT_TRUE(session->received(port) == nullptr);
    EXPECT_FALSE(session->UpdateCommParms(port));
    EXPECT_EQ(ui.messages.back(), notFetchedWhole(port + 1, session->fetchState(port)));
    ASSERT_TRUE(test::waitUntilIdle());
    EXPECT_EQ(plant->receivedOfType(packet_type::PortParms), 0u);
}

// Showing a record runs the rules that belong to showing it: what the editor shows is what the
// record holds is what Update sends, and the corrections are told apart from the host's values.
TEST_F(Session, TheRulesOfShowingARecordRunOnEveryFetch)
{
    connectAndFill();
    const std::int16_t port = 20;
    PortCommParms& theirs = host().plant().parms.PortCommParmsTable[port];
    theirs.SpecificProtocol = protocol::Ge2000;
    theirs.bPurgeIfInactive = TrueValue;
    theirs.StripOutgoingHeader = FalseValue;
    theirs.OutHdrEobVal = 0;
    for (std::int16_t* value : {&theirs.OutHdrVal1, &theirs.OutHdrVal2, &theirs.OutHdrVal3, &theirs.OutHdrVal4,
             &theirs.OutHdrVal5, &theirs.OutHdrVal6})
        *value = -1;
    theirs.OutHdrVal2 = 13;
    ASSERT_TRUE(session->FetchCommParms(port));
    const PortCommParms& mine = session->parmsTables().PortCommParmsTable[port];
    EXPECT_EQ(mine.bPurgeIfInactive, FalseValue);
    EXPECT_EQ(mine.OutHdrVal2, -1);
    EXPECT_EQ(session->received(port)->comm, theirs) << "as the host sent it";
    std::vector<std::string> corrected;
    for (const ChangedField& c : session->showCorrections(port)) {
        corrected.emplace_back(c.name);
        EXPECT_EQ(c.by, "rule");
    }
    EXPECT_EQ(corrected, (std::vector<std::string>{"bPurgeIfInactive", "OutHdrVal2"}));

    // Sent, the corrections are recorded as the rules', not the user's.
    ASSERT_TRUE(session->UpdateCommParms(port));
    QStringList byRule;
    for (const QJsonValue& field : test::changeRecordLines(plant->folder.logs()).at(0).value(QStringLiteral("fields")).toArray())
        if (field.toObject().value(QStringLiteral("by")).toString() == QStringLiteral("rule"))
            byRule << field.toObject().value(QStringLiteral("name")).toString();
    EXPECT_EQ(byRule, (QStringList{QStringLiteral("bPurgeIfInactive"), QStringLiteral("OutHdrVal2")}));
}

TEST_F(Session, AHostThatStopsAcknowledgingGetsOneMessageAndNoTrailer)
{
    connectAndFill();
    ASSERT_TRUE(session->FetchCommParms(3));
    host().faults.ackSectionsUpTo = 2;
    expireWhenHostHas(packet_type::PortParms, 3);
    EXPECT_FALSE(session->UpdateCommParms(3));
    EXPECT_EQ(ui.messages, std::vector<std::string>{std::string(message::UpdateNoAck)});
    ASSERT_TRUE(test::waitUntilIdle());
    EXPECT_EQ(plant->receivedOfType(packet_type::PortParms), 3u) << "nothing after the unacknowledged section";
    EXPECT_EQ(plant->receivedOfType(packet_type::UpdateComplete), 0u);
}

// However an update ends while section 3 is awaited, it leaves one line saying so: the host
// silent, the cable pulled, or the program ending (its window closes the socket, then calls off
// the waits).
TEST_F(Session, EveryEndOfAnUpdateLeavesOneLineThatSaysWhere)
{
    struct Case {
        const char* outcome;
        std::function<void(Session&)> atSectionThree;
    } const cases[] = {
        {"no-ack", [](Session& t) { t.timers.fire("tmrPacketWait"); }},
        {"connection-lost",
            [](Session& t) {
                t.host().pullCable();
                test::whenReady(
                    [&t]() -> bool* {
                        static bool gone = true;
                        return t.session->connected() ? nullptr : &gone;
                    },
                    [&t](bool&) { t.timers.fire("tmrPacketWait"); });
            }},
        {"interrupted",
            [](Session& t) {
                t.session->closeSocket();
                t.session->cancelWaits();
            }},
    };
    for (const auto& c : cases) {
        start();
        connectAndFill();
        ASSERT_TRUE(session->FetchCommParms(2));
        host().faults.ackSectionsUpTo = 2;
        whenHostHas(packet_type::PortParms, 3, [this, &c] { c.atSectionThree(*this); });
        EXPECT_FALSE(session->UpdateCommParms(2));
        const std::vector<QJsonObject> record = test::changeRecordLines(plant->folder.logs());
        ASSERT_EQ(record.size(), 1u) << c.outcome;
        EXPECT_EQ(record[0].value(QStringLiteral("outcome")).toString().toStdString(), c.outcome);
        EXPECT_EQ(record[0].value(QStringLiteral("section")).toInt(), 3) << c.outcome;
        EXPECT_EQ(record[0].value(QStringLiteral("port")).toInt(), 3) << c.outcome;
    }
}

TEST_F(Session, ASilentHostStopsTheFetchAtItsFirstSection)
{
    connectAndFill();
    host().faults.silent = true;
    expireWhenHostHas(packet_type::PortParmsRequest, 1);
    EXPECT_FALSE(session->FetchCommParms(5));
    EXPECT_EQ(ui.messages, std::vector<std::string>{std::string(message::FetchCommParmsTimeout)});
    ASSERT_TRUE(test::waitUntilIdle());
    EXPECT_EQ(plant->receivedOfType(packet_type::PortParmsRequest), 1u);

    ui.messages.clear();
    expireWhenHostHas(packet_type::MachineTypeRequest, 1);
    EXPECT_FALSE(session->FetchMachineTypes(0));
    EXPECT_EQ(ui.messages, std::vector<std::string>{std::string(message::FetchMachineTypeTimeout)});
}

TEST(HostConfigurationStore, DefaultsStandInForWhatIsMissingAndStoredValuesAreUsedAsStored)
{
    test::SimulatedPlant plant;
    struct Case {
        QString stored;
        std::int16_t idleMinutes;
    } const cases[] = {
        {QString(), 5}, {QStringLiteral("-3"), -3}, {QStringLiteral("70000"), 5}, // a read error: the default
    };
    for (const auto& c : cases) {
        plant.registry->writeText(Hive::Machine, ConfigurationKey, QStringLiteral("Idle Minutes"), c.stored);
        HostConfiguration config(*plant.registry);
        config.load();
        EXPECT_EQ(config.IdleMinutes, c.idleMinutes) << c.stored.toStdString();
    }
    HostConfiguration config(*plant.registry);
    config.Save_LastHostIPIndex(2);
    EXPECT_EQ(config.load(), 2) << "the host last used";
}

} // namespace
} // namespace corvane
