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

// A command line as a script writes it, for arguments without blanks.
QStringList words(const char* line)
{
    return QString::fromLatin1(line).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

class Cli : public ::testing::Test {
public:
    test::SimulatedPlant plant;

    void SetUp() override
    {
        plant.folder.useAsStoreRoot();
        ASSERT_EQ(createFirstUserStore(userStorePath()), FirstStore::Created);
    }

    // Runs the client to its end while this process's event loop keeps the host answering.
    Outcome cli(const QStringList& arguments, const QProcessEnvironment& extra = {}, const QByteArray& input = {})
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
    Outcome cli(const char* line) { return cli(words(line)); }
    QJsonDocument json(const QString& text) { return QJsonDocument::fromJson(text.toUtf8()); }
    QString path(const char* name) const { return QString::fromStdString(plant.folder.file(name).string()); }
    std::size_t hostGot(std::int16_t type) const { return plant.receivedOfType(type); }
};

TEST_F(Cli, StatusListsThePortsThatHoldAnything)
{
    const Outcome text = cli("status");
    ASSERT_EQ(text.status, 0) << text.err.toStdString();
    EXPECT_TRUE(text.out.contains(QStringLiteral("CELL A FTP"))) << text.out.toStdString();

    const Outcome machine = cli("--json status");
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
        const char* line;
        int status;
        const char* says; // on standard error
    } const cases[] = {
        {"a silent host", [](Cli& c) { c.plant.host.faults.silent = true; }, "status", 1, "Fetch Version Timeout."},
        {"an old host", [](Cli& c) { c.plant.host.faults.version = "4.11"; }, "status", 4,
            "You are attempting to connect to Corvane version"},
        {"an unconfigured host", {}, "--host-number 3 status", 3, "No IP address is assigned."},
        {"nobody listening", {}, "--port 1 status", 3, "Connection Time Out."},
        {"a wrong password", {}, "--user supervisor --password x status", 5, "Invalid Password"},
        {"a port beyond the grid", {}, "purge 129", 2, "PORT takes 1 to 128"},
        {"a store that is there already", {}, "init-store", 1, "a user store already exists"},
        {"no user store", [](Cli& c) { std::filesystem::remove(c.plant.folder.file("BRELLWICK/BWKXBIDS.DAT")); },
            "status", 5, "Password Security has been compromised."},
    };
    for (const auto& c : cases) {
        if (c.arrange)
            c.arrange(*this);
        const Outcome r = cli(c.line);
        EXPECT_EQ(r.status, c.status) << c.name << ": " << r.err.toStdString();
        EXPECT_TRUE(r.err.contains(QLatin1String(c.says))) << c.name << ": " << r.err.toStdString();
        plant.host.faults = {};
    }
}

TEST_F(Cli, GetParmsPrintsTheRecordsAsTheHostKeepsThem)
{
    const Outcome r = cli("--json get-parms 15");
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
    const std::string request = Build_Port_Parms_Request(1, 14).substr(1);
    EXPECT_EQ(plant.received[2], request) << "the wire carries the grid row";
}

TEST_F(Cli, SetParmsGoesThroughTheRulesAndIsRecorded)
{
    const Outcome r = cli("set-parms 15 Baud=14 iPurgeIfInactiveSeconds=3 ConfirmFooter=M77 SpecificProtocol=4");
    ASSERT_EQ(r.status, 0) << r.err.toStdString();
    EXPECT_TRUE(r.err.contains(QStringLiteral("If you intend to Receive in Binary mode"))) << "the rules' warnings";
    ASSERT_TRUE(test::waitFor([&] { return plant.host.updatesCompleted() == 1; }));
    const PortCommParms& held = plant.host.plant().parms.PortCommParmsTable[14];
    EXPECT_EQ(held.ConfirmFooter, "M77");
    EXPECT_EQ(held.SpecificProtocol, 4);
    EXPECT_EQ(held.Baud, 5) << "GE 2000's preset, over the rate given before it";
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
    const Outcome history = cli("history 15");
    EXPECT_TRUE(history.out.contains(QStringLiteral("ConfirmFooter M30 -> M77"))) << history.out.toStdString();

    // One change a rule refuses stops those before it too: nothing is sent.
    const std::size_t sections = hostGot(packet_type::PortParms);
    EXPECT_EQ(cli("set-parms 15 ConfirmFooter=M01 Baud=15").status, 2);
    EXPECT_EQ(hostGot(packet_type::PortParms), sections);
}

// The host stops acknowledging after section 2, or closes the connection after the version, its
// machine types, the port states, six fetched sections and two acknowledgements: either way the
// update stops at section 3, the trailer never goes, and the record keeps the edit.
TEST_F(Cli, AnUpdateCutShortSaysWhereItStopped)
{
    struct Case {
        const char* outcome;
        std::function<void(hostsim::Faults&)> fault;
        const char* line;
        int status;
    } const cases[] = {
        {"no acknowledgement", [](auto& f) { f.ackSectionsUpTo = 2; }, "set-parms 3 ConfirmHeader=%A", 1},
        {"connection lost", [](auto& f) { f.closeAfterPackets = 11; }, "set-parms 3 ConfirmHeader=%B", 3},
    };
    for (const Case& c : cases) {
        c.fault(plant.host.faults);
        const Outcome r = cli(c.line);
        EXPECT_EQ(r.status, c.status) << c.outcome << ": " << r.err.toStdString();
        const std::vector<QJsonObject> record = readChangeRecord(3);
        ASSERT_FALSE(record.empty()) << c.outcome;
        const QJsonObject& last = record.back();
        EXPECT_EQ(last.value(QStringLiteral("outcome")).toString(), QLatin1String(c.outcome));
        EXPECT_EQ(last.value(QStringLiteral("section")).toInt(), 3) << c.outcome;
        EXPECT_EQ(last.value(QStringLiteral("changes")).toArray().size(), 1) << c.outcome;
        plant.host.faults = {};
    }
    EXPECT_EQ(readChangeRecord(3).size(), 2u);
    EXPECT_EQ(hostGot(packet_type::UpdateComplete), 0u);
}

TEST_F(Cli, AccessIsTheDesktopsAndNoPasswordIsEverShown)
{
    test::createStore({test::user("SUPERVISOR", "Bo55q", {}, 1), test::user("GUEST", ""),
        test::user("SMITH", "Pw7x", {4}), test::user("CLERK", "cl")});
    struct Case {
        const char* line;
        int status;
    } const cases[] = {
        {"get-parms 3", 5}, // the guest, security being on
        {"--user clerk --password CL get-parms 3", 5}, {"--user smith --password Pw7x get-parms 3", 0},
        {"--user smith --password Pw7x users list", 5}, // Setup Users is the supervisor's
        {"--user SUPERVISOR users list", 0}, // the password from the environment
    };
    QProcessEnvironment supervisorsPassword;
    supervisorsPassword.insert(QStringLiteral("CORVANE_PASSWORD"), QStringLiteral("Bo55q"));
    for (const auto& c : cases) {
        const Outcome r = cli(words(c.line), supervisorsPassword);
        EXPECT_EQ(r.status, c.status) << c.line << ": " << r.err.toStdString();
        if (c.status == 5) {
            EXPECT_TRUE(r.err.contains(QStringLiteral("No access to the selected function."))) << r.err.toStdString();
        }
        for (const QString& secret : {QStringLiteral("Bo55q"), QStringLiteral("Pw7x")})
            EXPECT_FALSE((r.out + r.err).contains(secret, Qt::CaseInsensitive)) << secret.toStdString();
    }
}

TEST_F(Cli, PurgeAsksAndOnlyYesSendsIt)
{
    const Outcome asked = cli("purge 1");
    EXPECT_EQ(asked.status, 2);
    EXPECT_TRUE(asked.err.contains(QStringLiteral("Do you want to continue?"))) << asked.err.toStdString();
    EXPECT_EQ(cli("--yes purge 25").status, 2) << "CELL A FTP";
    EXPECT_EQ(hostGot(packet_type::PurgeReset), 0u);

    const Outcome yes = cli("--yes purge 1");
    EXPECT_EQ(yes.status, 0) << yes.err.toStdString();
    ASSERT_TRUE(test::waitFor([&] { return hostGot(packet_type::PurgeReset) == 1; }));
    EXPECT_EQ(plant.host.plant().status[0].Status, "Idle");
}

TEST_F(Cli, ExportThenImportPutsThePortsBack)
{
    const Outcome exported = cli(words("export 3 15 --file") << path("backup.json"));
    ASSERT_EQ(exported.status, 0) << exported.err.toStdString();
    const PortParmsTables before = plant.host.plant().parms;
    plant.host.plant().parms.PortCommParmsTable[2].ConfirmFooter = "CHANGED";
    plant.host.plant().parms.DataCollectionTable[14].MaxDataSegment = 999;

    const Outcome imported = cli({QStringLiteral("import"), path("backup.json")});
    ASSERT_EQ(imported.status, 0) << imported.err.toStdString();
    ASSERT_TRUE(test::waitFor([&] { return plant.host.updatesCompleted() == 2; }));
    EXPECT_EQ(plant.host.plant().parms.PortCommParmsTable[2], before.PortCommParmsTable[2]);
    EXPECT_EQ(plant.host.plant().parms.DataCollectionTable[14], before.DataCollectionTable[14]);

    // A file with some fields only: the others keep what the host holds.
    plant.folder.write("footer.json", "{\"ports\": [{\"port\": 3, \"PortCommParms\": {\"ConfirmFooter\": \"M02\"}}]}");
    ASSERT_EQ(cli({QStringLiteral("import"), path("footer.json")}).status, 0);
    ASSERT_TRUE(test::waitFor([&] { return plant.host.updatesCompleted() == 3; }));
    PortCommParms expected = before.PortCommParmsTable[2];
    expected.ConfirmFooter = "M02";
    EXPECT_EQ(plant.host.plant().parms.PortCommParmsTable[2], expected);

    // A value of the wrong kind, or a text that would end its packet: nothing is sent.
    for (const char* broken : {"{\"ports\": [{\"port\": 3, \"PortCommParms\": {\"Baud\": \"fast\"}}]}",
             "{\"ports\": [{\"port\": 3, \"PortCommParms\": {\"ConfirmFooter\": \"M30\\u0004\"}}]}"}) {
        plant.folder.write("broken.json", broken);
        EXPECT_EQ(cli({QStringLiteral("import"), path("broken.json")}).status, 2) << broken;
    }
    EXPECT_EQ(plant.host.updatesCompleted(), 3) << "nothing sent";
}

TEST_F(Cli, ConfigIsTheConfigurationFormsAndItsRules)
{
    EXPECT_EQ(cli("config set-host 4 --name Bay4 --address 10.1.2.3 --socket-port 70000").status, 0);
    EXPECT_EQ(cli("config set-host 3 --socket-port 65535").status, 2) << "host 4's port now";
    EXPECT_EQ(cli("config set-idle 75").status, 0);

    const Outcome shown = cli("--json config show");
    ASSERT_EQ(shown.status, 0);
    const QJsonObject c = json(shown.out).object();
    const QJsonObject host4 = c.value(QStringLiteral("hosts")).toArray().at(3).toObject();
    EXPECT_EQ(host4.value(QStringLiteral("name")).toString(), QStringLiteral("Bay4"));
    EXPECT_EQ(host4.value(QStringLiteral("address")).toString(), QStringLiteral("10.1.2.3"));
    EXPECT_EQ(host4.value(QStringLiteral("socketPort")).toInt(), 65535) << "70000 reads 65535, as the form has it";
    EXPECT_EQ(c.value(QStringLiteral("idleMinutes")).toInt(), 60);
}

TEST_F(Cli, UsersFollowTheSupervisorsOperations)
{
    const auto supervisor = [this](const char* password, const char* line, const QByteArray& input = {}) {
        return cli(words("--user supervisor --password") << QString::fromLatin1(password) << words(line), {}, input);
    };
    EXPECT_EQ(supervisor("", "users add smith --password pw --grant comm-parameters").status, 0);
    EXPECT_EQ(supervisor("", "users add SMITH").status, 2) << "the name is taken";
    EXPECT_EQ(supervisor("", "users grant smith 0").status, 0);
    EXPECT_EQ(supervisor("", "users revoke smith 4").status, 0);
    EXPECT_EQ(supervisor("", "--yes users delete GUEST").status, 2);
    UserStore store;
    ASSERT_TRUE(store.Load_User_Store());
    ASSERT_EQ(store.count(), 3);
    EXPECT_EQ(store.users[2], test::user("smith", "pw", {0}));

    // Deleting asks for --yes and frees the record, and the next user takes it.
    EXPECT_EQ(supervisor("", "users delete smith").status, 2);
    EXPECT_EQ(supervisor("", "--yes users delete smith").status, 0);
    EXPECT_EQ(supervisor("", "users add JONES").status, 0);
    ASSERT_TRUE(store.Load_User_Store());
    EXPECT_EQ(store.count(), 3);
    EXPECT_EQ(store.users[2].UserName, "JONES");

    // The supervisor's first password activates security: warned, and only --yes goes on.
    const Outcome warned = supervisor("", "users passwd supervisor --new-password boss");
    EXPECT_EQ(warned.status, 2);
    EXPECT_TRUE(warned.err.startsWith(QStringLiteral("WARNING!!!\n"))) << warned.err.toStdString();
    EXPECT_EQ(supervisor("", "--yes users passwd supervisor --new-password boss").status, 0);
    ASSERT_TRUE(store.Load_User_Store());
    EXPECT_EQ(store.users[0].Password, "boss");
    // A password piped in is in no command line; it is stored trimmed, as the form stores it.
    EXPECT_EQ(supervisor("boss", "--yes users passwd jones", " Jw9 \n").status, 0);
    ASSERT_TRUE(store.Load_User_Store());
    EXPECT_EQ(store.users[2].Password, "Jw9");
    const Outcome listed = supervisor("BOSS", "--json users list");
    EXPECT_EQ(listed.status, 0) << listed.err.toStdString();
    EXPECT_FALSE(listed.out.contains(QStringLiteral("boss"), Qt::CaseInsensitive));
    EXPECT_EQ(json(listed.out).array().size(), 3);

    // A store folder that takes no new file: the runtime's error, and the store as it was.
    const std::string stored = plant.folder.read("BRELLWICK/BWKXBIDS.DAT");
    std::filesystem::create_directory(plant.folder.file("BRELLWICK/BWKXBIDS.DAT.new"));
    const Outcome unwritable = supervisor("boss", "users grant jones all");
    EXPECT_EQ(unwritable.status, 6);
    EXPECT_TRUE(unwritable.err.startsWith(QStringLiteral("Run-time error '75':\n"))) << unwritable.err.toStdString();
    EXPECT_EQ(plant.folder.read("BRELLWICK/BWKXBIDS.DAT"), stored);
    std::filesystem::remove(plant.folder.file("BRELLWICK/BWKXBIDS.DAT.new"));

    // Nor is the password in any log the program folder holds.
    for (const auto& entry : std::filesystem::directory_iterator(plant.folder.path())) {
        if (entry.is_regular_file()) {
            EXPECT_EQ(plant.folder.read(entry.path().filename().string()).find("boss"), std::string::npos)
                << entry.path();
        }
    }
}

TEST_F(Cli, WatchPrintsWhatChanged)
{
    const Outcome r = cli("--json watch --interval 1 --count 1");
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
