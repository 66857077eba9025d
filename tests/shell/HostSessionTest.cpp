#include "shell/HostSession.h"
#include "hostsim/HostSimulator.h"
#include "shell/HostConfiguration.h"
#include "platform/Registry.h"
#include "shell/ConfigurationRules.h"
#include "shell/GridRules.h"
#include "shell/SessionMessages.h"
#include "shell/VersionRules.h"
#include "support/ScratchProgramFolder.h"
#include "support/Wait.h"
#include "support/Wire.h"

#include <QTcpServer>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <deque>

namespace corvane {
namespace {

using hostsim::HostSimulator;
using test::operator""_w;

struct ScriptedSessionUi : SessionUi {
    std::vector<std::string> messages;
    std::deque<std::int16_t> answers;
    QString caption;
    std::uint32_t colour = 0;
    int tableChanges = 0, disconnects = 0, ftpRefusals = 0, logOffs = 0;

    void showMessage(const std::string& text) override { messages.push_back(text); }
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
    test::ScratchProgramFolder folder;
    QTemporaryDir registryDir;
    std::unique_ptr<Registry> registry;
    std::unique_ptr<HostConfiguration> config;
    ScriptedSessionUi ui;
    std::unique_ptr<HostSimulator> host;
    std::unique_ptr<HostSession> session;
    int packetsAtHost = 0;

    void SetUp() override { start(); }
    void TearDown() override { qunsetenv("CORVANE_REGISTRY_DIR"); }

    // A fresh host, configuration and session: host 1 is the simulator.
    void start()
    {
        session.reset();
        ui = ScriptedSessionUi{};
        packetsAtHost = 0;
        qputenv("CORVANE_REGISTRY_DIR", registryDir.path().toLocal8Bit());
        registry = openSystemRegistry();
        config = std::make_unique<HostConfiguration>(*registry);
        config->load();
        host = std::make_unique<HostSimulator>();
        ASSERT_TRUE(host->listen());
        config->HostIPs[1] = QStringLiteral("127.0.0.1");
        config->SocketPorts[1] = host->port();
        QObject::connect(host.get(), &HostSimulator::packetReceived, [this] { ++packetsAtHost; });
        // A tick of the connect wait is 20 ms, the version wait 200 ms, an idle minute 30 ms.
        session = std::make_unique<HostSession>(*config, ui, SessionTimings{20, 100, 200, 30});
        session->tmrIdleLogoff.stop();
    }

    void connectAndFill()
    {
        session->Command1_Click(QStringLiteral("127.0.0.1"));
        ASSERT_TRUE(session->connected());
        ASSERT_TRUE(test::waitUntil([this] { return !session->PortStatus[0].WorkstationName.empty(); }));
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
        {"undefined host", [](Session& s) { s.config->HostIPs[1] = QStringLiteral("Undefined"); },
            QStringLiteral("Undefined"), message::undefinedHost(), false},
        {"no address", [](Session&) {}, QString(), message::noAddress(), false},
        {"nobody listening", [](Session& s) { s.config->SocketPorts[1] = closedPort(); }, QStringLiteral("127.0.0.1"),
            message::connectionTimeOut(), false},
        {"host 4.11 refused", [](Session& s) { s.host->faults.version = "4.11"; }, QStringLiteral("127.0.0.1"),
            message::hostTooOld("4.11"), false},
        {"host 4.12 accepted", [](Session&) {}, QStringLiteral("127.0.0.1"), "", true},
        {"host asks for a newer terminal", [](Session& s) { s.host->faults.minimumRemoteVersion = "1.3"; },
            QStringLiteral("127.0.0.1"), message::upgradeAdvisory("4.12", "1.3"), true},
        {"host asks for the same terminal", [](Session& s) { s.host->faults.minimumRemoteVersion = "1.02"; },
            QStringLiteral("127.0.0.1"), "", true},
        {"host never answers the version", [](Session& s) { s.host->faults.silent = true; },
            QStringLiteral("127.0.0.1"), message::fetchVersionTimeout(), false},
    };
    for (const auto& c : cases) {
        start();
        c.arrange(*this);
        session->Command1_Click(c.txtIP);
        EXPECT_EQ(ui.messages, c.message.empty() ? std::vector<std::string>{} : std::vector<std::string>{c.message})
            << c.name;
        EXPECT_EQ(session->connected(), c.connected) << c.name;
        if (c.connected) {
            EXPECT_TRUE(test::waitUntil([this] { return ui.caption == QStringLiteral("Connected"); })) << c.name;
            EXPECT_EQ(ui.colour, ConnectedColour);
            EXPECT_TRUE(test::waitUntil([this] { return !session->PortStatus[0].WorkstationName.empty(); })) << c.name;
            session->Command1_Click(QStringLiteral("127.0.0.1"));
            EXPECT_EQ(ui.messages.back(), message::alreadyConnected()) << c.name;
        } else if (!c.message.empty() && c.message != message::undefinedHost() && c.message != message::noAddress()) {
            EXPECT_EQ(ui.caption, QStringLiteral("Idle")) << c.name;
            EXPECT_EQ(ui.colour, IdleColour) << c.name;
        }
    }
}

TEST_F(Session, AShortStatusReplyUpdatesItsRowsOnly)
{
    connectAndFill();
    const PortStatusRecord third = session->PortStatus[2];
    const int before = ui.tableChanges;
    host->sendRaw(hostsim::statusReply({{"NEW 1", "A.NC", "Idle", "1", "9"}, {"NEW 2", "B.NC", "Idle", "2", "8"}}));
    ASSERT_TRUE(test::waitUntil([this] { return session->PortStatus[0].WorkstationName == "NEW 1"; }));
    EXPECT_EQ(session->PortStatus[1].WorkstationName, "NEW 2");
    EXPECT_EQ(session->PortStatus[2], third);
    EXPECT_GT(ui.tableChanges, before);
    // The piece after the last record holds no fields: the dispatch's trap writes it down.
    EXPECT_NE(folder.read("error.log").find("Error Location 155 Err = 5 "), std::string::npos);
}

TEST_F(Session, UnknownTypesAreLoggedAndKnownOnesAreNot)
{
    connectAndFill();
    std::filesystem::remove(folder.file("PacketError-Current.log"));
    host->sendRaw("<SOH>PKT_TYPE=220<STX>SECTION=0<STX><EOT>"_w);
    host->sendRaw("<SOH>PKT_TYPE=301<STX>SECTION=0<STX><EOT>"_w);
    host->sendRaw("<SOH>PKT_TYPE=555<STX>SECTION=0<STX><EOT>"_w);
    ASSERT_TRUE(test::waitUntil([this] { return folder.exists("PacketError-Current.log"); }));
    const auto lines = folder.lines("PacketError-Current.log");
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_TRUE(lines[0].starts_with("Packet Error Location 501 Unknown packet. "));
}

TEST_F(Session, CommandsOnFtpPortsAndThePurgeQuestion)
{
    connectAndFill();
    session->SelectedPortRow = 24; // CELL A FTP
    const int sent = packetsAtHost;
    session->cmdPurgeAndReset_Click();
    EXPECT_FALSE(session->cmdCommParms_Click([] { return true; }));
    EXPECT_EQ(ui.ftpRefusals, 2);

    session->SelectedPortRow = 0;
    ui.answers = {7}; // No
    session->cmdPurgeAndReset_Click();
    EXPECT_EQ(ui.messages.back(), message::purgeQuestion());
    test::waitUntil([] { return false; }, 100);
    EXPECT_EQ(packetsAtHost, sent) << "nothing goes out on No or to an FTP port";

    ui.answers = {6}; // Yes
    session->cmdPurgeAndReset_Click();
    ASSERT_TRUE(test::waitUntil([&] { return packetsAtHost == sent + 1; }));
    session->cmdRefresh_Click();
    ASSERT_TRUE(test::waitUntil([this] { return session->PortStatus[0].Status == "Idle"; }));
    EXPECT_EQ(session->PortStatus[0].ByteCount, "0");

    EXPECT_FALSE(session->cmdCommParms_Click([] { return false; }));
    EXPECT_TRUE(session->cmdCommParms_Click([] { return true; }));
    EXPECT_EQ(session->SelectedPortIndex, 0);
}

TEST_F(Session, CommandsWithoutAConnection)
{
    session->cmdRefresh_Click();
    session->cmdPurgeAndReset_Click();
    EXPECT_FALSE(session->cmdCommParms_Click([] { return true; }));
    EXPECT_EQ(ui.messages, std::vector<std::string>(3, message::noSocketConnection()));
    EXPECT_EQ(packetsAtHost, 0);
}

TEST_F(Session, IdleLogOffComesAfterTheLimitAndNeverWithZero)
{
    for (std::int16_t limit : {std::int16_t{0}, std::int16_t{1}}) {
        config->IdleMinutes = limit;
        connectAndFill();
        ui.messages.clear();
        session->IdleMinuteCount = 0;
        session->tmrIdleLogoff.start();
        if (limit == 0) {
            EXPECT_FALSE(test::waitUntil([this] { return ui.logOffs > 0; }, 300));
            EXPECT_GT(session->IdleMinuteCount, 3) << "the count runs on";
            EXPECT_TRUE(session->connected());
            session->cmdDisconnect_Click();
            session->tmrIdleLogoff.stop();
        } else {
            ASSERT_TRUE(test::waitUntil([this] { return ui.logOffs > 0; }));
            EXPECT_EQ(session->IdleMinuteCount, 2) << "on the second tick after the last command";
            EXPECT_EQ(ui.messages, std::vector<std::string>{message::idleLogOff(1)});
            EXPECT_FALSE(session->connected());
            EXPECT_EQ(ui.caption, QStringLiteral("Idle"));
        }
    }
}

TEST_F(Session, DisconnectAndALostSocketReturnToIdle)
{
    connectAndFill();
    session->cmdDisconnect_Click();
    EXPECT_FALSE(session->connected());
    EXPECT_EQ(ui.caption, QStringLiteral("Idle"));
    EXPECT_EQ(ui.disconnects, 1);
    EXPECT_EQ(session->PortStatus.size(), 128u);
    EXPECT_EQ(session->PortStatus[0], PortStatusRecord{});

    ASSERT_TRUE(test::waitUntil([this] { return !host->hasTerminal(); }));
    connectAndFill();
    host->faults.closeAfterPackets = 1; // the host goes away under the terminal
    // The socket status polling starts on the connection timer's first tick after the connect.
    ASSERT_TRUE(test::waitUntil([this] { return ui.caption == QStringLiteral("Connected"); }));
    session->cmdRefresh_Click();
    ASSERT_TRUE(test::waitUntil([this] { return ui.caption == QStringLiteral("Idle"); }));
    EXPECT_FALSE(session->connected());
}

TEST(HostConfigurationStore, AnEmptyRegistryGivesTheDefaults)
{
    QTemporaryDir dir;
    qputenv("CORVANE_REGISTRY_DIR", dir.path().toLocal8Bit());
    auto registry = openSystemRegistry();
    HostConfiguration config(*registry);
    EXPECT_EQ(config.load(), 1);
    for (int n = 1; n <= 5; ++n) {
        EXPECT_EQ(config.HostNames[static_cast<std::size_t>(n)], QStringLiteral("Host %1").arg(n));
        EXPECT_EQ(config.HostIPs[static_cast<std::size_t>(n)], QString());
        EXPECT_EQ(config.SocketPorts[static_cast<std::size_t>(n)], 49139 + n);
    }
    EXPECT_EQ(config.IdleMinutes, 5);

    config.HostNames[2] = QStringLiteral("Bay 2");
    config.SocketPorts[2] = 5000;
    config.IdleMinutes = 0;
    ASSERT_TRUE(config.save());
    config.Save_LastHostIPIndex(2);
    HostConfiguration again(*registry);
    EXPECT_EQ(again.load(), 2);
    EXPECT_EQ(again.HostNames[2], QStringLiteral("Bay 2"));
    EXPECT_EQ(again.SocketPorts[2], 5000);
    EXPECT_EQ(again.IdleMinutes, 0);
    qunsetenv("CORVANE_REGISTRY_DIR");
}

} // namespace
} // namespace corvane
