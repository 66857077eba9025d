// corvane-remote-cli as scripts run it, against a simulated host in this process.
#include "protocol/PortParmsPacket.h"
#include "protocol/Requests.h"
#include "security/FirstStore.h"
#include "shell/ChangeRecord.h"
#include "support/SimulatedPlant.h"
#include "support/Users.h"
#include "support/Wait.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

#include <gtest/gtest.h>

namespace corvane {
namespace {

struct Outcome {
    int status = -1;
    QString out;
    QString err;
};

class Cli : public ::testing::Test {
public:
    test::SimulatedPlant plant;

    void SetUp() override
    {
        plant.folder.useAsStoreRoot();
        ASSERT_EQ(createFirstUserStore(userStorePath()), FirstStore::Created);
    }

    // Runs the client to its end while this process's event loop keeps the host answering.
    Outcome cli(QStringList arguments, const QProcessEnvironment& extra = {}, const QByteArray& input = {})
    {
        QProcess process;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(extra);
        process.setProcessEnvironment(env);
        process.start(QStringLiteral(CORVANE_REMOTE_CLI_EXE), arguments);
        process.write(input);
        process.closeWriteChannel();
        EXPECT_TRUE(test::waitFor([&] { return process.state() == QProcess::NotRunning; }, 30000))
            << arguments.join(QLatin1Char(' ')).toStdString();
        return {process.exitCode(), QString::fromLocal8Bit(process.readAllStandardOutput()),
            QString::fromLocal8Bit(process.readAllStandardError())};
    }
    QJsonDocument json(const QString& text) { return QJsonDocument::fromJson(text.toUtf8()); }
    std::size_t hostGot(std::int16_t type) const { return plant.receivedOfType(type); }
};

TEST_F(Cli, StatusListsThePortsThatHoldAnything)
{
    const Outcome text = cli({QStringLiteral("status")});
    ASSERT_EQ(text.status, 0) << text.err.toStdString();
    EXPECT_TRUE(text.out.startsWith(QStringLiteral("Port  Machine"))) << text.out.toStdString();
    EXPECT_TRUE(text.out.contains(QStringLiteral("CELL A FTP"))) << text.out.toStdString();

    const Outcome machine = cli({QStringLiteral("--json"), QStringLiteral("status")});
    ASSERT_EQ(machine.status, 0);
    const QJsonArray rows = json(machine.out).array();
    std::size_t holding = 0;
    for (const PortStatusRecord& r : plant.host.plant().status)
        holding += !(r.WorkstationName.empty() && r.Status.empty() && r.FileName.empty());
    EXPECT_EQ(static_cast<std::size_t>(rows.size()), holding);
    const QJsonObject first = rows.first().toObject();
    EXPECT_EQ(first.value(QStringLiteral("port")).toInt(), 1);
    EXPECT_EQ(first.value(QStringLiteral("machine")).toString(), QStringLiteral("LATHE 01"));
    for (const char* key : {"program", "id", "status", "byteCount"})
        EXPECT_TRUE(first.contains(QLatin1String(key))) << key;
}

TEST_F(Cli, ExitStatusesSayWhatWentWrong)
{
    struct Case {
        const char* name;
        std::function<void(Cli&)> arrange;
        QStringList arguments;
        int status;
        const char* says; // on standard error
    } const cases[] = {
        {"an old host", [](Cli& c) { c.plant.host.faults.version = "4.11"; }, {QStringLiteral("status")}, 4,
            "You are attempting to connect to Corvane version"},
        {"an unconfigured host", [](Cli&) {},
            {QStringLiteral("--host-number"), QStringLiteral("3"), QStringLiteral("status")}, 3,
            "No IP address is assigned."},
        {"an undefined host", [](Cli&) {}, {QStringLiteral("--host-number=2"), QStringLiteral("status")}, 3,
            "Please use the configuration menu"},
        {"nobody listening", [](Cli&) {}, {QStringLiteral("--port"), QStringLiteral("1"), QStringLiteral("status")}, 3,
            "Connection Time Out."},
        {"a wrong password", [](Cli&) {},
            {QStringLiteral("--user"), QStringLiteral("supervisor"), QStringLiteral("--password"), QStringLiteral("x"),
                QStringLiteral("status")},
            5, "Invalid Password"},
        {"a user there is not", [](Cli&) {},
            {QStringLiteral("--user"), QStringLiteral("NOBODY"), QStringLiteral("status")}, 5, "Invalid User Name"},
        {"an unknown command", [](Cli&) {}, {QStringLiteral("frobnicate")}, 2, "Unknown command"},
        {"a port beyond the grid", [](Cli&) {}, {QStringLiteral("purge"), QStringLiteral("129")}, 2,
            "PORT takes 1 to 128"},
        {"a store that is there already", [](Cli&) {}, {QStringLiteral("init-store")}, 1,
            "a user store already exists"},
        {"no user store", [](Cli& c) { std::filesystem::remove(c.plant.folder.file("BRELLWICK/BWKXBIDS.DAT")); },
            {QStringLiteral("status")}, 5, "Password Security has been compromised."},
    };
    for (const auto& c : cases) {
        c.arrange(*this);
        const Outcome r = cli(c.arguments);
        EXPECT_EQ(r.status, c.status) << c.name << ": " << r.err.toStdString();
        EXPECT_TRUE(r.err.contains(QLatin1String(c.says))) << c.name << ": " << r.err.toStdString();
        plant.host.faults = {};
    }
}

TEST_F(Cli, EveryCommandHasItsHelpAndNeedsNoHostForIt)
{
    for (const char* command : {"status", "watch", "purge", "get-parms", "set-parms", "export", "import", "history",
             "config", "init-store", "users"}) {
        const Outcome r = cli({QLatin1String(command), QStringLiteral("--help")});
        EXPECT_EQ(r.status, 0) << command;
        EXPECT_TRUE(r.out.startsWith(QStringLiteral("Usage: corvane-remote-cli [options] ") + QLatin1String(command)))
            << r.out.toStdString();
    }
    EXPECT_EQ(plant.host.answers(), 0);
}

TEST_F(Cli, ASilentHostIsOneThatDidNotAnswerInTime)
{
    plant.host.faults.silent = true;
    const Outcome r = cli({QStringLiteral("status")});
    EXPECT_EQ(r.status, 1);
    EXPECT_TRUE(r.err.startsWith(QStringLiteral("Fetch Version Timeout.\n"))) << r.err.toStdString();
}

TEST_F(Cli, GetParmsPrintsTheRecordsAsTheHostKeepsThem)
{
    const Outcome r = cli({QStringLiteral("--json"), QStringLiteral("get-parms"), QStringLiteral("15")});
    ASSERT_EQ(r.status, 0) << r.err.toStdString();
    const QJsonObject port = json(r.out).object();
    EXPECT_EQ(port.value(QStringLiteral("port")).toInt(), 15);
    const PortCommParms& held = plant.host.plant().parms.PortCommParmsTable[14];
    const QJsonObject comm = port.value(QStringLiteral("PortCommParms")).toObject();
    EXPECT_EQ(comm.value(QStringLiteral("wstat_name")).toString(), QStringLiteral("EDM 1"));
    EXPECT_EQ(comm.value(QStringLiteral("Baud")).toInt(), held.Baud);
    EXPECT_EQ(comm.value(QStringLiteral("CompressComment")).toInt(), held.CompressComment) << "flags as stored";
    EXPECT_EQ(
        port.value(QStringLiteral("DataCollectionParms")).toObject().value(QStringLiteral("SaveToFolder")).toString(),
        QStringLiteral("C:\\DNC\\COLLECTED\\EDM 1"));
    EXPECT_EQ(hostGot(packet_type::PortParmsRequest), 6u);
    const std::string request = Build_Port_Parms_Request(1, 14).substr(1);
    EXPECT_EQ(plant.received[2], request) << "the wire carries the grid row";
}

TEST_F(Cli, SetParmsGoesThroughTheRulesAndIsRecorded)
{
    const Outcome r = cli({QStringLiteral("set-parms"), QStringLiteral("15"), QStringLiteral("Baud=14"),
        QStringLiteral("iPurgeIfInactiveSeconds=3"), QStringLiteral("ConfirmFooter=M77"),
        QStringLiteral("SpecificProtocol=4")});
    ASSERT_EQ(r.status, 0) << r.err.toStdString();
    EXPECT_TRUE(
        r.err.contains(QStringLiteral("Some communications ports or devices cannot use the baud rates 56,000 \n")));
    EXPECT_TRUE(r.err.contains(QStringLiteral("If you intend to Receive in Binary mode")));
    ASSERT_TRUE(test::waitFor([&] { return plant.host.updatesCompleted() == 1; }));
    const PortCommParms& held = plant.host.plant().parms.PortCommParmsTable[14];
    EXPECT_EQ(held.ConfirmFooter, "M77");
    EXPECT_EQ(held.SpecificProtocol, 4);
    EXPECT_EQ(held.Baud, 5) << "GE 2000's preset, through the baud rate's own rule";
    EXPECT_EQ(held.Handshaking, 2);
    EXPECT_EQ(held.iPurgeIfInactiveSeconds, held.iMinimumPurgeSeconds) << "the minimum comes back";

    const std::vector<QJsonObject> record = readChangeRecord(15);
    ASSERT_EQ(record.size(), 1u);
    EXPECT_EQ(record[0].value(QStringLiteral("outcome")).toString(), QStringLiteral("complete"));
    EXPECT_EQ(record[0].value(QStringLiteral("user")).toString(), QStringLiteral("SUPERVISOR"));
    EXPECT_EQ(record[0].value(QStringLiteral("hostPort")).toInt(), plant.host.port());
    QStringList fields;
    for (const QJsonValue& change : record[0].value(QStringLiteral("changes")).toArray())
        fields << change.toObject().value(QStringLiteral("field")).toString();
    EXPECT_TRUE(fields.contains(QStringLiteral("ConfirmFooter")));
    EXPECT_FALSE(fields.contains(QStringLiteral("wstat_name")));
    const Outcome history = cli({QStringLiteral("history"), QStringLiteral("15")});
    EXPECT_TRUE(history.out.contains(QStringLiteral("ConfirmFooter M30 -> M77"))) << history.out.toStdString();

    // A value a rule refuses, or a name no control has: nothing is sent.
    for (const char* change : {"Baud=15", "OutHdrVal1=300", "Nonsense=1", "DataType=abc", "ConfirmFooter=M\x03"}) {
        const std::size_t sections = hostGot(packet_type::PortParms);
        const Outcome refused = cli({QStringLiteral("set-parms"), QStringLiteral("15"), QLatin1String(change)});
        EXPECT_EQ(refused.status, 2) << change << ": " << refused.err.toStdString();
        EXPECT_EQ(hostGot(packet_type::PortParms), sections) << change;
    }
}

TEST_F(Cli, AnUpdateTheHostStopsAcknowledgingEndsWithOneAndNoTrailer)
{
    plant.host.faults.ackSectionsUpTo = 2;
    const Outcome r = cli({QStringLiteral("set-parms"), QStringLiteral("3"), QStringLiteral("ConfirmHeader=%")});
    EXPECT_EQ(r.status, 1);
    EXPECT_TRUE(r.err.contains(QStringLiteral("Update Packet No Ack Received"))) << r.err.toStdString();
    EXPECT_EQ(hostGot(packet_type::PortParms), 3u);
    EXPECT_EQ(hostGot(packet_type::UpdateComplete), 0u);
    const std::vector<QJsonObject> record = readChangeRecord(3);
    ASSERT_EQ(record.size(), 1u);
    EXPECT_EQ(record[0].value(QStringLiteral("outcome")).toString(), QStringLiteral("no acknowledgement"));
    EXPECT_EQ(record[0].value(QStringLiteral("section")).toInt(), 3);
}

// The host closes the connection after the version, its machine types, the port states, six
// fetched sections and two acknowledgements: the third section is never acknowledged.
TEST_F(Cli, AConnectionLostInTheMiddleOfAnUpdateSaysWhereItStopped)
{
    plant.host.faults.closeAfterPackets = 11;
    const Outcome r = cli({QStringLiteral("set-parms"), QStringLiteral("3"), QStringLiteral("ConfirmHeader=%%")});
    EXPECT_EQ(r.status, 3) << r.err.toStdString();
    EXPECT_EQ(hostGot(packet_type::UpdateComplete), 0u);
    const std::vector<QJsonObject> record = readChangeRecord(3);
    ASSERT_EQ(record.size(), 1u);
    EXPECT_EQ(record[0].value(QStringLiteral("outcome")).toString(), QStringLiteral("connection lost"));
    EXPECT_EQ(record[0].value(QStringLiteral("section")).toInt(), 3);
    EXPECT_EQ(record[0].value(QStringLiteral("changes")).toArray().size(), 1) << "the edit is kept in the record";
}

TEST_F(Cli, AccessIsTheDesktopsAndNoPasswordIsEverShown)
{
    test::createStore({test::user("SUPERVISOR", "Bo55q", {}, 1), test::user("GUEST", ""),
        test::user("SMITH", "Pw7x", {4}), test::user("CLERK", "cl")});
    struct Case {
        QStringList arguments;
        int status;
    } const cases[] = {
        {{QStringLiteral("get-parms"), QStringLiteral("3")}, 5}, // the guest, security being on
        {{QStringLiteral("--user"), QStringLiteral("clerk"), QStringLiteral("--password"), QStringLiteral("CL"),
             QStringLiteral("get-parms"), QStringLiteral("3")},
            5},
        {{QStringLiteral("--user"), QStringLiteral("smith"), QStringLiteral("--password"), QStringLiteral("Pw7x"),
             QStringLiteral("get-parms"), QStringLiteral("3")},
            0},
        {{QStringLiteral("--user"), QStringLiteral("smith"), QStringLiteral("--password"), QStringLiteral("Pw7x"),
             QStringLiteral("users"), QStringLiteral("list")},
            5}, // Setup Users is the supervisor's
        {{QStringLiteral("--user"), QStringLiteral("SUPERVISOR"), QStringLiteral("users"), QStringLiteral("list")}, 0},
    };
    const QProcessEnvironment supervisorsPassword = [] {
        QProcessEnvironment e;
        e.insert(QStringLiteral("CORVANE_PASSWORD"), QStringLiteral("Bo55q"));
        return e;
    }();
    for (const auto& c : cases) {
        const Outcome r = cli(c.arguments, supervisorsPassword);
        EXPECT_EQ(r.status, c.status) << c.arguments.join(QLatin1Char(' ')).toStdString() << ": "
                                      << r.err.toStdString();
        if (c.status == 5) {
            EXPECT_TRUE(r.err.contains(QStringLiteral("No access to the selected function."))) << r.err.toStdString();
        }
        for (const QString& secret : {QStringLiteral("Bo55q"), QStringLiteral("Pw7x")})
            EXPECT_FALSE((r.out + r.err).contains(secret, Qt::CaseInsensitive)) << secret.toStdString();
    }
}

TEST_F(Cli, PurgeAsksAndOnlyYesSendsIt)
{
    const Outcome asked = cli({QStringLiteral("purge"), QStringLiteral("1")});
    EXPECT_EQ(asked.status, 2);
    EXPECT_TRUE(asked.err.contains(
        QStringLiteral("This action will purge and reset the specified port.\nDo you want to continue?")));
    EXPECT_EQ(hostGot(packet_type::PurgeReset), 0u);

    const Outcome ftp = cli({QStringLiteral("--yes"), QStringLiteral("purge"), QStringLiteral("25")}); // CELL A FTP
    EXPECT_EQ(ftp.status, 2);
    EXPECT_TRUE(ftp.err.contains(QStringLiteral("Not for use with FTP or Timer Folder connections")));

    const Outcome yes = cli({QStringLiteral("--yes"), QStringLiteral("purge"), QStringLiteral("1")});
    EXPECT_EQ(yes.status, 0) << yes.err.toStdString();
    ASSERT_TRUE(test::waitFor([&] { return hostGot(packet_type::PurgeReset) == 1; }));
    EXPECT_EQ(plant.host.plant().status[0].Status, "Idle");
}

TEST_F(Cli, ExportThenImportPutsThePortsBack)
{
    const QString file = QString::fromStdString(plant.folder.file("backup.json").string());
    const Outcome exported
        = cli({QStringLiteral("export"), QStringLiteral("3"), QStringLiteral("15"), QStringLiteral("--file"), file});
    ASSERT_EQ(exported.status, 0) << exported.err.toStdString();
    const PortParmsTables before = plant.host.plant().parms;
    plant.host.plant().parms.PortCommParmsTable[2].ConfirmFooter = "CHANGED";
    plant.host.plant().parms.DataCollectionTable[14].MaxDataSegment = 999;

    const Outcome imported = cli({QStringLiteral("import"), file});
    ASSERT_EQ(imported.status, 0) << imported.err.toStdString();
    ASSERT_TRUE(test::waitFor([&] { return plant.host.updatesCompleted() == 2; }));
    EXPECT_EQ(plant.host.plant().parms.PortCommParmsTable[2], before.PortCommParmsTable[2]);
    EXPECT_EQ(plant.host.plant().parms.DataCollectionTable[14], before.DataCollectionTable[14]);

    // A file with some fields only: the others keep what the host holds.
    plant.folder.write("footer.json", "{\"ports\": [{\"port\": 3, \"PortCommParms\": {\"ConfirmFooter\": \"M02\"}}]}");
    ASSERT_EQ(
        cli({QStringLiteral("import"), QString::fromStdString(plant.folder.file("footer.json").string())}).status, 0);
    ASSERT_TRUE(test::waitFor([&] { return plant.host.updatesCompleted() == 3; }));
    PortCommParms expected = before.PortCommParmsTable[2];
    expected.ConfirmFooter = "M02";
    EXPECT_EQ(plant.host.plant().parms.PortCommParmsTable[2], expected);

    // A value of the wrong kind, or a text that would end its packet: nothing is sent.
    for (const char* broken : {"{\"ports\": [{\"port\": 3, \"PortCommParms\": {\"Baud\": \"fast\"}}]}",
             "{\"ports\": [{\"port\": 3, \"PortCommParms\": {\"ConfirmFooter\": \"M30\\u0004\"}}]}"}) {
        plant.folder.write("broken.json", broken);
        const Outcome r
            = cli({QStringLiteral("import"), QString::fromStdString(plant.folder.file("broken.json").string())});
        EXPECT_EQ(r.status, 2) << broken;
    }
    EXPECT_EQ(plant.host.updatesCompleted(), 3) << "nothing sent";
}

TEST_F(Cli, ConfigIsTheConfigurationFormsAndItsRules)
{
    EXPECT_EQ(cli({QStringLiteral("config"), QStringLiteral("set-host"), QStringLiteral("4"), QStringLiteral("--name"),
                      QStringLiteral("Bay 4"), QStringLiteral("--address"), QStringLiteral("10.1.2.3"),
                      QStringLiteral("--socket-port"), QStringLiteral("70000")})
                  .status,
        0);
    const Outcome duplicate = cli({QStringLiteral("config"), QStringLiteral("set-host"), QStringLiteral("3"),
        QStringLiteral("--socket-port"), QStringLiteral("65535")});
    EXPECT_EQ(duplicate.status, 2);
    EXPECT_TRUE(duplicate.err.contains(QStringLiteral("Port: 65535 is already assigned to \nanother Host.")));
    EXPECT_EQ(cli({QStringLiteral("config"), QStringLiteral("set-idle"), QStringLiteral("75")}).status, 0);

    const Outcome shown = cli({QStringLiteral("--json"), QStringLiteral("config"), QStringLiteral("show")});
    ASSERT_EQ(shown.status, 0);
    const QJsonObject c = json(shown.out).object();
    const QJsonObject host4 = c.value(QStringLiteral("hosts")).toArray().at(3).toObject();
    EXPECT_EQ(host4.value(QStringLiteral("name")).toString(), QStringLiteral("Bay 4"));
    EXPECT_EQ(host4.value(QStringLiteral("address")).toString(), QStringLiteral("10.1.2.3"));
    EXPECT_EQ(host4.value(QStringLiteral("socketPort")).toInt(), 65535) << "70000 reads 65535, as the form has it";
    EXPECT_EQ(c.value(QStringLiteral("idleMinutes")).toInt(), 60);
}

TEST_F(Cli, UsersFollowTheSupervisorsOperations)
{
    const auto run = [this](QStringList args) {
        return cli(QStringList{QStringLiteral("--user"), QStringLiteral("SUPERVISOR")} + args);
    };
    EXPECT_EQ(
        run({QStringLiteral("users"), QStringLiteral("add"), QStringLiteral("smith"), QStringLiteral("--password"),
                QStringLiteral("pw"), QStringLiteral("--grant"), QStringLiteral("comm-parameters")})
            .status,
        0);
    const Outcome twice = run({QStringLiteral("users"), QStringLiteral("add"), QStringLiteral(" SMITH ")});
    EXPECT_EQ(twice.status, 2);
    EXPECT_TRUE(twice.err.contains(QStringLiteral("Entered user name already exists.  Please change.")));
    EXPECT_EQ(
        run({QStringLiteral("users"), QStringLiteral("grant"), QStringLiteral("smith"), QStringLiteral("0")}).status,
        0);
    EXPECT_EQ(
        run({QStringLiteral("users"), QStringLiteral("revoke"), QStringLiteral("smith"), QStringLiteral("4")}).status,
        0);
    EXPECT_EQ(run({QStringLiteral("users"), QStringLiteral("delete"), QStringLiteral("GUEST"), QStringLiteral("--yes")})
                  .status,
        2);

    UserStore store;
    ASSERT_TRUE(store.Load_User_Store());
    ASSERT_EQ(store.count(), 3);
    EXPECT_EQ(store.users[2], test::user("smith", "pw", {0}));

    // Deleting frees the record, and the next user takes it.
    EXPECT_EQ(run({QStringLiteral("users"), QStringLiteral("delete"), QStringLiteral("smith")}).status, 2)
        << "asked: --yes";
    EXPECT_EQ(run({QStringLiteral("--yes"), QStringLiteral("users"), QStringLiteral("delete"), QStringLiteral("smith")})
                  .status,
        0);
    EXPECT_EQ(run({QStringLiteral("users"), QStringLiteral("add"), QStringLiteral("JONES")}).status, 0);
    ASSERT_TRUE(store.Load_User_Store());
    EXPECT_EQ(store.count(), 3);
    EXPECT_EQ(store.users[2].UserName, "JONES");

    // The supervisor's first password activates security: warned, and only --yes goes on.
    const Outcome warned = run({QStringLiteral("users"), QStringLiteral("passwd"), QStringLiteral("supervisor"),
        QStringLiteral("--new-password"), QStringLiteral("boss")});
    EXPECT_EQ(warned.status, 2);
    EXPECT_TRUE(warned.err.startsWith(QStringLiteral("WARNING!!!\n"))) << warned.err.toStdString();
    EXPECT_EQ(run({QStringLiteral("--yes"), QStringLiteral("users"), QStringLiteral("passwd"),
                      QStringLiteral("supervisor"), QStringLiteral("--new-password"), QStringLiteral("boss")})
                  .status,
        0);
    ASSERT_TRUE(store.Load_User_Store());
    EXPECT_EQ(store.users[0].Password, "boss");
    // A password piped in is in no command line; it is stored trimmed, as the form stores it.
    const QStringList asSupervisor{
        QStringLiteral("--user"), QStringLiteral("supervisor"), QStringLiteral("--password"), QStringLiteral("boss")};
    EXPECT_EQ(cli(asSupervisor
                      + QStringList{QStringLiteral("--yes"), QStringLiteral("users"), QStringLiteral("passwd"),
                          QStringLiteral("jones")},
                  {}, " Jw9 \n")
                  .status,
        0);
    ASSERT_TRUE(store.Load_User_Store());
    EXPECT_EQ(store.users[2].Password, "Jw9");
    const Outcome listed = cli({QStringLiteral("--user"), QStringLiteral("supervisor"), QStringLiteral("--password"),
        QStringLiteral("BOSS"), QStringLiteral("--json"), QStringLiteral("users"), QStringLiteral("list")});
    EXPECT_EQ(listed.status, 0) << listed.err.toStdString();
    EXPECT_FALSE(listed.out.contains(QStringLiteral("boss"), Qt::CaseInsensitive));
    EXPECT_EQ(json(listed.out).array().size(), 3);
    // A store folder that takes no new file: the runtime's error, and the store as it was.
    const std::string stored = plant.folder.read("BRELLWICK/BWKXBIDS.DAT");
    std::filesystem::create_directory(plant.folder.file("BRELLWICK/BWKXBIDS.DAT.new"));
    const Outcome unwritable = cli(
        {QStringLiteral("--user"), QStringLiteral("supervisor"), QStringLiteral("--password"), QStringLiteral("boss"),
            QStringLiteral("users"), QStringLiteral("grant"), QStringLiteral("jones"), QStringLiteral("all")});
    EXPECT_EQ(unwritable.status, 6);
    EXPECT_TRUE(unwritable.err.startsWith(QStringLiteral("Run-time error '75':\n"))) << unwritable.err.toStdString();
    EXPECT_EQ(plant.folder.read("BRELLWICK/BWKXBIDS.DAT"), stored);
    std::filesystem::remove(plant.folder.file("BRELLWICK/BWKXBIDS.DAT.new"));

    // Nor in any log the program folder holds.
    for (const auto& entry : std::filesystem::directory_iterator(plant.folder.path())) {
        if (!entry.is_regular_file())
            continue;
        EXPECT_EQ(plant.folder.read(entry.path().filename().string()).find("boss"), std::string::npos) << entry.path();
    }
}

TEST_F(Cli, WatchPrintsWhatChanged)
{
    const Outcome r = cli({QStringLiteral("--json"), QStringLiteral("watch"), QStringLiteral("--interval"),
        QStringLiteral("1"), QStringLiteral("--count"), QStringLiteral("1")});
    ASSERT_EQ(r.status, 0) << r.err.toStdString();
    const QStringList lines = r.out.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    ASSERT_GT(lines.size(), 36) << "every row at first";
    // Sending ports move on between two looks: they show again.
    EXPECT_TRUE(std::any_of(lines.begin() + 36, lines.end(),
        [this](const QString& line) { return json(line).object().value(QStringLiteral("port")).toInt() == 1; }));
    EXPECT_EQ(hostGot(packet_type::StatusRequest), 2u);
}

} // namespace
} // namespace corvane
