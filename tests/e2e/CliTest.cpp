// corvane-remote-cli as scripts run it, against a simulated host in this process.
#include "app/OsUser.h"
#include "commparms/ParmsRules.h"
#include "commparms/RecordFields.h"
#include "protocol/PortParmsPacket.h"
#include "protocol/Requests.h"
#include "security/FirstStore.h"
#include "security/UserAdmin.h"
#include "support/ChangeRecordLines.h"
#include "support/Program.h"
#include "support/SimulatedPlant.h"
#include "support/Users.h"
#include "support/Wait.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

#include <gtest/gtest.h>

#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <memory>
#include <tuple>

namespace corvane {
namespace {

using Outcome = test::ProgramRun;

// A command line as a script writes it, for arguments without blanks.
QStringList words(const char* line)
{
    return QString::fromLatin1(line).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

// Arguments that may hold blanks or be empty.
QStringList argv(std::initializer_list<const char*> parts)
{
    QStringList out;
    for (const char* part : parts)
        out << QString::fromLatin1(part);
    return out;
}

class Cli : public ::testing::Test {
public:
    test::SimulatedPlant plant{test::TerminalIn::AnotherProcess};

    void SetUp() override
    {
        plant.folder.useAsStoreRoot();
        ASSERT_EQ(createFirstUserStore(plant.folder.places().storeFile), FirstStore::Created);
    }

    // Runs the client (or a program that runs it) to its end while this process's event loop
    // keeps the host answering; `started` is handed the process once it runs.
    Outcome run(const QString& program, const QStringList& arguments, const QProcessEnvironment& extra = {},
        const QByteArray& input = {}, const std::function<void(QProcess&)>& started = {})
    {
        QProcess process;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(extra);
        process.setProcessEnvironment(env);
        // The programs meet the stopping signals as a terminal delivers them, even where the tests
        // themselves run with one ignored (under nohup).
        process.setChildProcessModifier([] {
            for (const int signal : {SIGHUP, SIGINT, SIGTERM})
                ::signal(signal, SIG_DFL);
        });
        process.start(program, arguments);
        EXPECT_TRUE(process.waitForStarted()) << program.toStdString();
        if (started)
            started(process);
        process.write(input);
        process.closeWriteChannel();
        EXPECT_TRUE(test::waitFor([&] { return process.state() == QProcess::NotRunning; }, 30000))
            << arguments.join(QLatin1Char(' ')).toStdString();
        return {process.exitCode(), QString::fromLocal8Bit(process.readAllStandardOutput()),
            QString::fromLocal8Bit(process.readAllStandardError())};
    }
    Outcome cli(const QStringList& arguments, const QProcessEnvironment& extra = {}, const QByteArray& input = {})
    {
        return run(QStringLiteral(CORVANE_REMOTE_CLI_EXE), arguments, extra, input);
    }
    Outcome cli(const char* line) { return cli(words(line)); }
    QJsonDocument json(const QString& text) { return QJsonDocument::fromJson(text.toUtf8()); }
    QString path(const char* name) const { return QString::fromStdString(plant.folder.file(name).string()); }
    std::size_t hostGot(std::int16_t type) const { return plant.receivedOfType(type); }
};

TEST_F(Cli, StatusListsThePortsThatHoldAnything)
{
    EXPECT_TRUE(cli("status").out.contains(QStringLiteral("CELL A FTP")));
    const QJsonArray rows = json(cli("--json status").out).array();
    std::size_t holding = 0;
    for (const PortStatusRecord& r : plant.host.plant().status)
        holding += !(r.WorkstationName.empty() && r.Status.empty() && r.FileName.empty());
    ASSERT_EQ(static_cast<std::size_t>(rows.size()), holding);
    EXPECT_EQ(rows.first().toObject().value(QStringLiteral("machine")).toString(), QStringLiteral("LATHE 01"));
}

// set-parms goes through the editor's rules and is recorded; get-parms shows what the host holds.
TEST_F(Cli, SetParmsGoesThroughTheRulesAndGetParmsShowsTheResult)
{
    const Outcome r = cli("set-parms 15 Baud=14 ConfirmFooter=M77 SpecificProtocol=4");
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    EXPECT_TRUE(r.err.contains(QStringLiteral("If you intend to Receive in Binary mode"))) << "the rules' warnings";
    EXPECT_EQ(plant.received[2], Build_Port_Parms_Request(1, 14).substr(1)) << "the wire carries the grid row";
    ASSERT_TRUE(test::waitFor([&] { return plant.host.updatesCompleted() == 1; }));
    const PortCommParms& held = plant.host.plant().parms.PortCommParmsTable[14];
    EXPECT_EQ(held.ConfirmFooter, "M77");
    EXPECT_EQ(held.Baud, 5) << "GE 2000's preset, over the rate given before it";

    const QJsonObject port = json(cli("--json get-parms 15").out).object();
    const QJsonObject comm = port.value(QStringLiteral("PortCommParms")).toObject();
    EXPECT_EQ(comm.value(QStringLiteral("wstat_name")).toString(), QStringLiteral("EDM 1"));
    EXPECT_EQ(comm.value(QStringLiteral("CompressComment")).toInt(), held.CompressComment) << "flags as stored";
    EXPECT_EQ(
        port.value(QStringLiteral("DataCollectionParms")).toObject().value(QStringLiteral("SaveToFolder")).toString(),
        QStringLiteral("C:\\DNC\\COLLECTED\\EDM 1"));

    EXPECT_TRUE(cli("history 15").out.contains(QStringLiteral("ConfirmFooter \"M30\" -> \"M77\"")));

    // One change a rule refuses stops those before it too: nothing is sent.
    const std::size_t sections = hostGot(packet_type::PortParms);
    EXPECT_EQ(cli("set-parms 15 ConfirmFooter=M01 Baud=15").exitCode, 2);
    EXPECT_EQ(hostGot(packet_type::PortParms), sections);
}

TEST_F(Cli, PurgeAsksAndOnlyYesSendsIt)
{
    EXPECT_EQ(cli("purge 1").exitCode, 2) << "not answered Yes";
    EXPECT_EQ(cli("--yes purge 25").exitCode, 2) << "CELL A FTP";
    EXPECT_EQ(hostGot(packet_type::PurgeReset), 0u);
    EXPECT_EQ(cli("--yes purge 1").exitCode, 0);
    ASSERT_TRUE(test::waitFor([&] { return hostGot(packet_type::PurgeReset) == 1; }));
    EXPECT_EQ(plant.host.plant().status[0].Status, "Idle");
}

// Import is set-parms for every field that would change: the same refusals, stopping the port
// they belong to before anything of it is sent, and the same corrections and warnings. An export
// imports back even where the rules hold a control disabled.
TEST_F(Cli, ImportGoesThroughTheEditorsRules)
{
    PortCommParms& ge = plant.host.plant().parms.PortCommParmsTable[2]; // until the host stores an update
    ge.SpecificProtocol = protocol::Ge2000;
    ge.bPurgeIfInactive = TrueValue;
    const std::int16_t baud = ge.Baud;
    ASSERT_EQ(cli(words("export 3 --file") << path("ge.json")).exitCode, 0);
    const Outcome back = cli({QStringLiteral("import"), path("ge.json")});
    EXPECT_EQ(back.exitCode, 0) << back.err.toStdString();
    ASSERT_TRUE(test::waitFor([&] { return plant.host.updatesCompleted() == 1; }));
    EXPECT_EQ(plant.host.plant().parms.PortCommParmsTable[2].bPurgeIfInactive, FalseValue) << "the rules' correction";

    struct Case {
        const char* file;
        int status;
        const char* says;
        int updates; // in all, after this import
    } const cases[] = {
        {R"({"ports": [{"port": 3, "PortCommParms": {"Baud": 99}}, {"port": 15, "PortCommParms": {"ConfirmFooter": "M9"}}]})",
            2, "port 3: Baud does not take \"99\"", 2},
        {R"({"ports": [{"port": 15, "PortCommParms": {"EobNullNumber": 300}}]})", 0,
            "64 is the maximum number of End Of Block Nulls characters.", 3},
        // A value of the wrong kind, or a text that would end its packet: nothing is sent.
        {R"({"ports": [{"port": 3, "PortCommParms": {"Baud": "fast"}}]})", 2, "Baud cannot take that value", 3},
        {R"({"ports": [{"port": 3, "PortCommParms": {"ConfirmFooter": "M30\u0004"}}]})", 2, "ConfirmFooter", 3},
    };
    for (const Case& c : cases) {
        plant.folder.write("rules.json", c.file);
        const Outcome r = cli({QStringLiteral("import"), path("rules.json")});
        EXPECT_EQ(r.exitCode, c.status) << c.file << r.err.toStdString();
        EXPECT_TRUE(r.err.contains(QString::fromLatin1(c.says))) << r.err.toStdString();
        ASSERT_TRUE(test::waitFor([&] { return plant.host.updatesCompleted() == c.updates; }));
    }
    EXPECT_EQ(plant.host.plant().parms.PortCommParmsTable[2].Baud, baud);
    EXPECT_EQ(plant.host.plant().parms.PortCommParmsTable[14].EobNullNumber, 64);
}

// import reads a regular file of an export's size only: a device, a pipe nothing writes or a file
// far larger than any export is refused at once, before any connection, in small memory.
TEST_F(Cli, ImportReadsOnlyARegularFileOfAnExportsSize)
{
    ASSERT_EQ(::mkfifo(plant.folder.file("pipe").c_str(), 0600), 0);
    plant.folder.write("big.json", ""); // grown sparse: a gigabyte that takes no disk
    std::filesystem::resize_file(plant.folder.file("big.json"), 1LL << 30);
    const struct {
        QString file;
        const char* says;
    } cases[] = {
        {QStringLiteral("/dev/zero"), "it is no regular file"},
        {path("pipe"), "it is no regular file"},
        {path("big.json"), "it holds more than"},
    };
    for (const auto& c : cases) {
        const Outcome r = cli({QStringLiteral("import"), c.file});
        EXPECT_EQ(r.exitCode, 2) << r.err.toStdString();
        EXPECT_TRUE(r.err.contains(QLatin1String(c.says))) << r.err.toStdString();
    }
    EXPECT_TRUE(plant.received.empty()) << "nothing was even connected";
}

// Every command and sub-command, missing or unknown, is a usage error with its usage.
TEST_F(Cli, MissingOrUnknownCommandsAreUsageErrors)
{
    for (const char* line : {"", "bogus", "--bogus status", "config", "config bogus", "users", "users bogus",
             "watch --interval x", "history --since yesterday", "get-parms", "set-parms 3"}) {
        const Outcome r = cli(line);
        EXPECT_EQ(r.exitCode, 2) << line << ": " << r.err.toStdString();
        EXPECT_TRUE(r.err.contains(QStringLiteral("Try 'corvane-remote-cli"))) << line << ": " << r.err.toStdString();
    }
}

// A password comes from a file only its owner may read; one on the command line is warned about,
// as every user of the computer can see it.
TEST_F(Cli, PasswordsComeFromAFileOnlyItsOwnerMayRead)
{
    const QString file = path("password");
    plant.folder.write("password", "\n");
    struct Case {
        const char* name;
        std::function<void()> arrange;
        int status;
        const char* says;
    } const cases[] = {
        {"readable by its owner only", [&] { std::filesystem::permissions(plant.folder.file("password"),
                                                  std::filesystem::perms::owner_read | std::filesystem::perms::owner_write); },
            0, ""},
        {"readable by the group", [&] { std::filesystem::permissions(plant.folder.file("password"),
                                            std::filesystem::perms::group_read, std::filesystem::perm_options::add); },
            2, "others may read or write it"},
        {"a link", [&] {
             std::filesystem::remove(plant.folder.file("password"));
             plant.folder.write("elsewhere", "\n");
             std::filesystem::permissions(plant.folder.file("elsewhere"), std::filesystem::perms::owner_read);
             std::filesystem::create_symlink(plant.folder.file("elsewhere"), plant.folder.file("password"));
         },
            2, "is a symbolic link"},
    };
    for (const Case& c : cases) {
        c.arrange();
        const Outcome r = cli({QStringLiteral("--user"), QStringLiteral("supervisor"), QStringLiteral("--password-file"),
            file, QStringLiteral("config"), QStringLiteral("show")});
        EXPECT_EQ(r.exitCode, c.status) << c.name << ": " << r.err.toStdString();
        EXPECT_TRUE(r.err.contains(QLatin1String(c.says))) << c.name << ": " << r.err.toStdString();
    }
    const Outcome seen = cli(words("--user supervisor --password x config show"));
    EXPECT_TRUE(seen.err.contains(QStringLiteral("can be seen by every user"))) << seen.err.toStdString();
}

// A reader that has gone before the client writes (`| head` done) ends it quietly, as the pipe's
// signal ends any command: status 141, nothing said.
// Output that cannot be written is never reported as success: the system's reason, and 6.
TEST_F(Cli, AFullDiskEndsTheCommandWithItsReason)
{
    for (const char* line : {"status", "export 1-2 --file -", "--json get-parms 1"}) {
        QProcess process;
        process.setStandardOutputFile(QStringLiteral("/dev/full"));
        process.start(QStringLiteral(CORVANE_REMOTE_CLI_EXE), words(line));
        ASSERT_TRUE(test::waitFor([&] { return process.state() == QProcess::NotRunning; }, 30000)) << line;
        EXPECT_EQ(process.exitCode(), 6) << line;
        EXPECT_TRUE(process.readAllStandardError().contains("No space left on device")) << line;
    }
}

TEST_F(Cli, AReaderThatHasGoneEndsTheClientQuietly)
{
    QProcess process;
    process.setChildProcessModifier([] {
        int out[2];
        if (::pipe(out) == 0) {
            ::close(out[0]); // the reader, gone before anything is written
            ::dup2(out[1], STDOUT_FILENO);
        }
    });
    process.start(QStringLiteral(CORVANE_REMOTE_CLI_EXE), {QStringLiteral("status")});
    ASSERT_TRUE(test::waitFor([&] { return process.state() == QProcess::NotRunning; }, 30000));
    const int ended = process.exitStatus() == QProcess::CrashExit ? 128 + SIGPIPE : process.exitCode();
    EXPECT_EQ(ended, 128 + SIGPIPE);
    EXPECT_EQ(process.readAllStandardError(), QByteArray());
}

// Text from the host reaches a terminal with its control characters spelt out: no host can
// clear the screen, ring the bell or forge a line.
TEST_F(Cli, TheHostsTextIsShownNotObeyed)
{
    plant.host.plant().status[0].WorkstationName = "LATHE\x1b[2J\x07\nPORT 99";
    const Outcome r = cli("status");
    EXPECT_EQ(r.exitCode, 0);
    EXPECT_TRUE(r.out.contains(QStringLiteral("LATHE\\x1b[2J\\x07\\x0aPORT 99"))) << r.out.toStdString();
    EXPECT_FALSE(r.out.contains(QLatin1Char('\x1b')));
    EXPECT_FALSE(r.out.contains(QLatin1Char('\x07')));
}

TEST_F(Cli, ConfigIsTheConfigurationFormsAndItsRules)
{
    EXPECT_EQ(cli("config set-host 4 --name Bay4 --address 10.1.2.3 --socket-port 70000").exitCode, 0);
    EXPECT_EQ(cli("config set-host 3 --socket-port 65535").exitCode, 2) << "host 4's port now";
    EXPECT_EQ(cli("config set-idle 75").exitCode, 0);
    const QJsonObject c = json(cli("--json config show").out).object();
    const QJsonObject host4 = c.value(QStringLiteral("hosts")).toArray().at(3).toObject();
    EXPECT_EQ(host4.value(QStringLiteral("address")).toString(), QStringLiteral("10.1.2.3"));
    EXPECT_EQ(host4.value(QStringLiteral("socketPort")).toInt(), 65535) << "70000 reads 65535, as the form has it";
    EXPECT_EQ(c.value(QStringLiteral("idleMinutes")).toInt(), 60);
}

// Once security is on, access is the desktop's; no password is ever shown or logged.
TEST_F(Cli, UsersFollowTheSupervisorsOperations)
{
    const auto supervisor = [this](const char* password, const char* line, const QByteArray& input = {}) {
        return cli(words("--user supervisor --password") << QString::fromLatin1(password) << words(line), {}, input);
    };
    EXPECT_EQ(supervisor("", "users add smith --password pw --grant comm-parameters").exitCode, 0);
    EXPECT_EQ(supervisor("", "users add SMITH").exitCode, 2) << "the name is taken";
    EXPECT_EQ(supervisor("", "users grant smith 0").exitCode, 0);
    EXPECT_EQ(supervisor("", "users revoke smith 4").exitCode, 0);
    EXPECT_EQ(supervisor("", "--yes users delete GUEST").exitCode, 2);
    UserStore store(plant.folder.places().storeFile);
    ASSERT_TRUE(store.Load_User_Store());
    EXPECT_EQ(store.users.at(2), test::user("smith", "pw", {0}));

    // Deleting asks for --yes and frees the record, and the next user takes it.
    EXPECT_EQ(supervisor("", "users delete smith").exitCode, 2);
    EXPECT_EQ(supervisor("", "--yes users delete smith").exitCode, 0);
    EXPECT_EQ(supervisor("", "users add JONES --grant comm-parameters").exitCode, 0);
    ASSERT_TRUE(store.Load_User_Store());
    EXPECT_EQ(store.users.at(2).UserName, "JONES");

    // The supervisor's first password activates security: warned, and only --yes goes on.
    EXPECT_EQ(supervisor("", "users passwd supervisor --new-password boss").exitCode, 2);
    EXPECT_EQ(supervisor("", "--yes users passwd supervisor --new-password boss").exitCode, 0);
    // A password piped in is in no command line; it is stored trimmed, as the form stores it.
    EXPECT_EQ(supervisor("boss", "--yes users passwd jones", " Jw9 \n").exitCode, 0);

    const std::pair<const char*, int> cases[] = {
        {"get-parms 3", 5}, // the guest
        {"--user jones --password JW9 get-parms 3", 0},
        {"--user jones --password JW9 users list", 5}, // Setup Users is the supervisor's
        {"--user SUPERVISOR --json users list", 0}, // the password from the environment
    };
    QProcessEnvironment supervisorsPassword;
    supervisorsPassword.insert(QStringLiteral("CORVANE_PASSWORD"), QStringLiteral("boss"));
    for (const auto& [line, status] : cases) {
        const Outcome r = cli(words(line), supervisorsPassword);
        EXPECT_EQ(r.exitCode, status) << line << ": " << r.err.toStdString();
        EXPECT_TRUE(status != 5 || r.err.contains(QStringLiteral("No access to the selected function.")));
        for (const char* secret : {"boss", "Jw9"})
            EXPECT_FALSE((r.out + r.err).contains(QLatin1String(secret), Qt::CaseInsensitive)) << line;
    }
    for (const auto& entry : std::filesystem::directory_iterator(plant.folder.path())) {
        if (entry.is_regular_file()) {
            EXPECT_EQ(plant.folder.read(entry.path().filename().string()).find("boss"), std::string::npos)
                << entry.path();
        }
    }
}

// Stores no program of ours writes: whoever runs the client, with or without --user, gets
// nothing, and is told why.
TEST_F(Cli, AStoreThatIsNotSoundLetsNobodyIn)
{
    const auto bytes = test::storeBytes;
    const UserEntry supervisor = test::user("SUPERVISOR", "", {}, 1);
    const UserEntry guest = test::user("GUEST", "");
    const std::pair<std::string, const char*> stores[] = {
        {bytes({supervisor, test::user("SMITH", "", {0})}), "no GUEST"}, // guest once fell to record 1
        {"", "holds no users"},
        {bytes({supervisor, guest}) + std::string(UserRecordLength - 1, 'x'), "cut short"},
        {bytes({supervisor, guest, test::user("SMITH", "", {}, 1)}), "as the supervisor"},
        {bytes({test::user("SUPERVISOR", ""), guest}), "not marked"},
        {bytes({supervisor, guest, test::user("JONES", "j"), test::user("jones", "", {0})}), "twice"},
    };
    for (const auto& [store, says] : stores) {
        std::ofstream(plant.folder.file("BRELLWICK/BWKXBIDS.DAT"), std::ios::binary | std::ios::trunc) << store;
        for (const char* line : {"users list", "status", "--user smith --password x get-parms 3",
                 "--user supervisor --password x users list"}) {
            const Outcome r = cli(words(line));
            EXPECT_EQ(r.exitCode, 5) << says << ", " << line;
            EXPECT_TRUE(r.err.contains(QStringLiteral("Password Security has been compromised."))) << says;
            EXPECT_TRUE(r.err.contains(QLatin1String(says))) << says << ": " << r.err.toStdString();
            EXPECT_TRUE(r.out.isEmpty()) << says << ", " << line;
        }
    }
    EXPECT_EQ(hostGot(270), 0u) << "no host is asked before the user is known";
}

// Names and passwords are checked before anything is written; only --no-password removes a
// password, and never the supervisor's.
TEST_F(Cli, NamesAndPasswordsAreCheckedWhenSet)
{
    const auto supervisor = [this](const char* password, QStringList line, const QByteArray& input = {}) {
        return cli(words("--user supervisor --password") << QString::fromLatin1(password) << line, {}, input);
    };
    ASSERT_EQ(supervisor("", words("--yes users passwd supervisor --new-password boss")).exitCode, 0);
    ASSERT_EQ(supervisor("boss", words("users add SMITH --password pw")).exitCode, 0);
    const std::string before = plant.folder.read("BRELLWICK/BWKXBIDS.DAT");
    struct Case {
        QStringList line;
        QByteArray input;
        std::string says;
    } const cases[] = {
        {argv({"users", "add", "JOHN SMITH"}), {}, NameLimit},
        {words("users add ABCDEFGHIJKLMNOPQRSTU"), {}, NameLimit},
        {argv({"users", "add", ""}), {}, NameLimit},
        {argv({"users", "add", "JONES", "--password", "two words"}), {}, PasswordLimit},
        {words("users add JONES --password 123456789012345678901"), {}, PasswordLimit},
        {argv({"users", "passwd", "smith", "--new-password", "a\tb"}), {}, PasswordLimit},
        {argv({"users", "passwd", "smith", "--new-password", ""}), {}, PasswordKept},
        {words("users passwd smith"), "\n", PasswordKept},
        {argv({"users", "passwd", "supervisor", "--new-password", ""}), {}, SupervisorPasswordKept},
        {words("users passwd SUPERVISOR"), "\n", SupervisorPasswordKept},
        {words("users passwd SUPERVISOR"), "   \n", SupervisorPasswordKept},
        {words("users passwd supervisor --no-password"), {}, SupervisorPasswordKept},
    };
    for (const auto& c : cases) {
        const Outcome r = supervisor("boss", c.line, c.input);
        const std::string line = c.line.join(QLatin1Char(' ')).toStdString();
        EXPECT_EQ(r.exitCode, 2) << line << ": " << r.err.toStdString();
        EXPECT_TRUE(r.err.contains(QString::fromStdString(c.says))) << line << ": " << r.err.toStdString();
    }
    EXPECT_EQ(plant.folder.read("BRELLWICK/BWKXBIDS.DAT"), before) << "nothing was written";
    EXPECT_EQ(
        cli(words("--user supervisor --password boss users passwd smith --no-password --new-password x")).exitCode, 2);

    EXPECT_EQ(supervisor("boss", words("users passwd smith --no-password")).exitCode, 0);
    UserStore store(plant.folder.places().storeFile);
    ASSERT_TRUE(store.Load_User_Store());
    EXPECT_EQ(store.users.at(2).Password, "");
    EXPECT_EQ(store.users.at(0).Password, "boss");
}

// Each kind of change leaves one line with every key, naming the program, the account, the user
// and the fields, and never anything of a password.
TEST_F(Cli, EveryChangeLeavesOneLineWithEveryKey)
{
    const QJsonValue null(QJsonValue::Null);
    const QJsonValue host(QStringLiteral("127.0.0.1"));
    const QJsonValue hostPort(plant.host.port());
    struct Case {
        const char* line;
        const char* kind;
        QJsonValue host, hostPort, port;
        // name, old, new of each field; all by the user
        std::vector<std::tuple<const char*, QJsonValue, QJsonValue>> fields;
    } const cases[] = {
        {"set-parms 15 ConfirmFooter=M77", "update", host, hostPort, 15, // shown as the host holds it
            {{"ConfirmFooter", QStringLiteral("M30"), QStringLiteral("M77")}}},
        {"--yes purge 1", "purge", host, hostPort, 1, {}},
        {"users add smith --password pw --grant comm-parameters", "user-admin", null, null, null,
            {{"UserName", null, QStringLiteral("smith")}, {"Password", null, null}, {"Rights.comm-parameters", 0, 1}}},
        {"users passwd smith --new-password pw2", "user-admin", null, null, null,
            {{"UserName", QStringLiteral("smith"), QStringLiteral("smith")}, {"Password", null, null}}},
        {"users revoke smith comm-parameters", "user-admin", null, null, null,
            {{"UserName", QStringLiteral("smith"), QStringLiteral("smith")}, {"Rights.comm-parameters", 1, 0}}},
        {"config set-idle 15", "config", null, null, null, {{"Idle Minutes", 5, 15}}},
    };
    applyShowRules(plant.host.plant().parms.PortCommParmsTable[14]);
    for (const auto& c : cases)
        ASSERT_EQ(cli(c.line).exitCode, 0) << c.line;
    EXPECT_TRUE(cli("config set-idle 15").exitCode == 0) << "a save that changes nothing";

    const std::vector<QJsonObject> record = test::changeRecordLines(plant.folder.logs());
    ASSERT_EQ(record.size(), std::size(cases));
    const QStringList keys = {QStringLiteral("authorisedBy"), QStringLiteral("fields"), QStringLiteral("host"),
        QStringLiteral("hostPort"), QStringLiteral("kind"), QStringLiteral("osUser"), QStringLiteral("outcome"),
        QStringLiteral("port"), QStringLiteral("time"), QStringLiteral("user"), QStringLiteral("via")};
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        const Case& c = cases[i];
        const QJsonObject& line = record[i];
        const bool update = c.kind == std::string_view("update");
        QStringList expectedKeys = keys;
        if (update)
            expectedKeys << QStringLiteral("section") << QStringLiteral("sectionsSent");
        expectedKeys.sort();
        EXPECT_EQ(line.keys(), expectedKeys) << c.line;
        EXPECT_EQ(line.value(QStringLiteral("kind")).toString(), QLatin1String(c.kind)) << c.line;
        EXPECT_EQ(line.value(QStringLiteral("via")).toString(), QStringLiteral("cli")) << c.line;
        EXPECT_EQ(line.value(QStringLiteral("osUser")).toString(), QString::fromStdString(osUserName())) << c.line;
        EXPECT_EQ(line.value(QStringLiteral("user")).toString(), QStringLiteral("SUPERVISOR")) << c.line;
        EXPECT_EQ(line.value(QStringLiteral("authorisedBy")).toString(), QStringLiteral("SUPERVISOR")) << c.line;
        EXPECT_EQ(line.value(QStringLiteral("outcome")).toString(), QStringLiteral("sent")) << c.line;
        EXPECT_EQ(line.value(QStringLiteral("host")), c.host) << c.line;
        EXPECT_EQ(line.value(QStringLiteral("hostPort")), c.hostPort) << c.line;
        EXPECT_EQ(line.value(QStringLiteral("port")), c.port) << c.line;
        EXPECT_TRUE(QDateTime::fromString(line.value(QStringLiteral("time")).toString(), Qt::ISODate).isValid());
        if (update) {
            EXPECT_EQ(line.value(QStringLiteral("section")), null);
            EXPECT_EQ(line.value(QStringLiteral("sectionsSent")).toInt(), 6);
        }
        const QJsonArray fields = line.value(QStringLiteral("fields")).toArray();
        ASSERT_EQ(static_cast<std::size_t>(fields.size()), c.fields.size()) << c.line;
        for (std::size_t f = 0; f < c.fields.size(); ++f) {
            const auto& [name, before, after] = c.fields[f];
            const QJsonObject field = fields.at(static_cast<qsizetype>(f)).toObject();
            EXPECT_EQ(field.keys(),
                (QStringList{
                    QStringLiteral("by"), QStringLiteral("name"), QStringLiteral("new"), QStringLiteral("old")}));
            EXPECT_EQ(field.value(QStringLiteral("name")).toString(), QLatin1String(name)) << c.line;
            EXPECT_EQ(field.value(QStringLiteral("old")), before) << c.line << " " << name;
            EXPECT_EQ(field.value(QStringLiteral("new")), after) << c.line << " " << name;
            EXPECT_EQ(field.value(QStringLiteral("by")).toString(), QStringLiteral("user")) << c.line;
        }
    }
    const std::string written = plant.folder.read("parameter-changes.jsonl");
    EXPECT_EQ(written.find("pw"), std::string::npos) << "no password, old or new";
}

// history prints a line of its own for each line of the record, whatever its values hold;
// filters by port, user and time; and passes over what is no line of ours, saying so.
TEST_F(Cli, HistoryFiltersAndShowsEveryValueOnItsOwnLine)
{
    const std::string forged
        = R"({"time":"2026-11-14T10:00:00+00:00","kind":"update","via":"desktop","host":"10.0.0.9",)"
          R"("hostPort":49140,"port":3,"user":"SMITH","authorisedBy":"JONES","osUser":"op",)"
          R"("outcome":"no-ack","section":3,"sectionsSent":3,"fields":[)"
          R"({"name":"ConfirmFooter","old":"M30","new":"M30\n2026-11-15T00:00:00+00:00  purge\u001b[2J\r","by":"user"},)"
          R"({"name":"Baud","old":6,"new":5,"by":"rule"}]})";
    plant.folder.write("parameter-changes.jsonl",
        forged + "\r\n"
            + R"({"time":"2026-11-15T10:00:00+00:00","kind":"purge","via":"cli","host":"10.0.0.9","hostPort":49140,)"
              R"("port":4,"user":"SUPERVISOR","authorisedBy":"SUPERVISOR","osUser":"op","outcome":"sent","fields":[]})"
              "\r\n"
            + R"({"time":"2026-11-15T11:00:00+00:00","kind":"upd)" + "\r\n" + std::string(MaxChangeRecordLine + 10, '{')
            + "\n"
            + R"({"time":"2026-11-16T10:00:00+00:00","kind":"config","via":"cli","host":null,"hostPort":null,)"
              R"("port":null,"user":"SMITH","authorisedBy":"SMITH","osUser":"op","outcome":"sent",)"
              R"("fields":[{"name":"Idle Minutes","old":5,"new":15,"by":"user"}]})"
              "\r\n");

    const Outcome port3 = cli("history 3");
    ASSERT_EQ(port3.exitCode, 0) << port3.err.toStdString();
    EXPECT_EQ(port3.out,
        QStringLiteral("2026-11-14T10:00:00+00:00  update  desktop  SMITH (authorised by JONES)  10.0.0.9:49140  port 3"
                       "  no-ack at section 3: ConfirmFooter \"M30\" -> \"M30\\n2026-11-15T00:00:00+00:00  purge"
                       "\\x1b[2J\\r\", Baud 6 -> 5 (by rule)\n"));
    EXPECT_TRUE(port3.err.contains(QStringLiteral("2 line(s)"))) << port3.err.toStdString();

    struct Case {
        const char* line;
        std::vector<int> ports; // of the lines printed, 0 for none
    } const cases[] = {
        {"history", {3, 4, 0}},
        {"history 4", {4}},
        {"history --user jones", {3}},
        {"history --user smith", {3, 0}},
        {"history --since 2026-11-15", {4, 0}},
        {"history --until 2026-11-15", {3, 4}},
        {"history --since 2026-11-15T10:30:00+00:00 --until 2026-11-16T10:00:00+00:00", {0}},
        {"--json history", {3, 4, 0}},
    };
    for (const auto& c : cases) {
        const Outcome r = cli(c.line);
        ASSERT_EQ(r.exitCode, 0) << c.line << ": " << r.err.toStdString();
        std::vector<int> ports;
        for (const QString& printed : r.out.split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
            if (r.out.startsWith(QLatin1Char('{')))
                ports.push_back(json(printed).object().value(QStringLiteral("port")).toInt());
            else
                ports.push_back(printed.contains(QStringLiteral("port "))
                        ? printed.section(QStringLiteral("port "), 1).left(1).toInt()
                        : 0);
        }
        EXPECT_EQ(ports, c.ports) << c.line;
    }
    for (const char* wrong :
        {"history --since yesterday", "history 3 4", "history --bogus", "history --user", "history 0"})
        EXPECT_EQ(cli(wrong).exitCode, 2) << wrong;

    // A record that is no regular file is not read.
    std::filesystem::remove(plant.folder.file("parameter-changes.jsonl"));
    std::filesystem::create_directory(plant.folder.file("parameter-changes.jsonl"));
    const Outcome folder = cli("history");
    EXPECT_EQ(folder.exitCode, 6);
    EXPECT_TRUE(folder.err.contains(QStringLiteral("not a regular file"))) << folder.err.toStdString();
}

// A stopping signal in the middle of a command: it finishes its books and exits 128 + the
// signal. An update that waited for section 3's acknowledgement says so in its one line.
TEST_F(Cli, ASignalEndsTheCommandInOrder)
{
    struct Case {
        const char* line;
        int signal;
        std::int16_t when; // the host has received this many packets of `type`
        std::int16_t type;
    } const cases[] = {
        {"set-parms 3 ConfirmHeader=%C", SIGTERM, 3, packet_type::PortParms},
        {"watch --interval 60", SIGINT, 1, packet_type::StatusRequest},
        {"set-parms 3 ConfirmHeader=%D", SIGHUP, 1, packet_type::PortParmsRequest},
        {"watch --poll --interval 60", SIGTERM, 1, packet_type::StatusRequest},
        {"copy-parms 3 4-9", SIGINT, 8, packet_type::PortParmsRequest},
    };
    plant.host.faults.ackSectionsUpTo = 2;
    for (const auto& c : cases) {
        plant.received.clear();
        const Outcome r = run(QStringLiteral(CORVANE_REMOTE_CLI_EXE), words(c.line), {}, {}, [&](QProcess& process) {
            const qint64 pid = process.processId();
            auto sent = std::make_shared<bool>(false);
            QObject::connect(&plant.host, &hostsim::HostSimulator::packetReceived, &process, [this, c, pid, sent] {
                if (!*sent && hostGot(c.type) >= static_cast<std::size_t>(c.when)) {
                    *sent = true;
                    ::kill(static_cast<pid_t>(pid), c.signal);
                }
            });
        });
        EXPECT_EQ(r.exitCode, 128 + c.signal) << c.line << ": " << r.err.toStdString();
    }
    const std::vector<QJsonObject> record = test::changeRecordLines(plant.folder.logs());
    ASSERT_EQ(record.size(), 1u) << "the fetch called off sent nothing";
    EXPECT_EQ(record[0].value(QStringLiteral("outcome")).toString(), QStringLiteral("interrupted"));
    EXPECT_EQ(record[0].value(QStringLiteral("section")).toInt(), 3);
    EXPECT_EQ(record[0].value(QStringLiteral("sectionsSent")).toInt(), 3);
    EXPECT_EQ(hostGot(packet_type::UpdateComplete), 0u);
}

// The export is written beside FILE and put in its place whole: a write the disk cuts short (a
// file-size limit, which root too is held to) leaves the old file as it was, and a link at FILE
// is refused before anything is fetched.
TEST_F(Cli, ExportPutsTheFileInPlaceWholeOrNotAtAll)
{
    namespace fs = std::filesystem;
    fs::create_directory(plant.folder.file("exports"));
    plant.folder.write("exports/ports.json", "old");
    fs::permissions(plant.folder.file("exports/ports.json"), fs::perms(0640));
    const QString file = path("exports/ports.json");
    const auto exportsHolds = [this] {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(plant.folder.file("exports")))
            names.push_back(entry.path().filename().string());
        return names;
    };

    const Outcome cut = run(QStringLiteral("bash"),
        {QStringLiteral("-c"), QStringLiteral("trap '' XFSZ; ulimit -f 1; exec \"$0\" \"$@\""),
            QStringLiteral(CORVANE_REMOTE_CLI_EXE), QStringLiteral("export"), QStringLiteral("3"), QStringLiteral("15"),
            QStringLiteral("--file"), file});
    EXPECT_EQ(cut.exitCode, 6) << cut.err.toStdString();
    EXPECT_TRUE(cut.err.contains(QStringLiteral("File too large"))) << cut.err.toStdString();
    EXPECT_EQ(plant.folder.read("exports/ports.json"), "old");
    EXPECT_EQ(exportsHolds(), std::vector<std::string>{"ports.json"});

    ASSERT_EQ(cli(words("export 3 --file") << file).exitCode, 0);
    EXPECT_EQ(json(QString::fromStdString(plant.folder.read("exports/ports.json")))
                  .object()
                  .value(QStringLiteral("ports"))
                  .toArray()
                  .size(),
        1);
    EXPECT_EQ(exportsHolds(), std::vector<std::string>{"ports.json"});

    fs::create_symlink(plant.folder.file("exports/ports.json"), plant.folder.file("exports/link.json"));
    const std::size_t asked = hostGot(packet_type::PortParmsRequest);
    const Outcome linked = cli(words("export 3 --file") << path("exports/link.json"));
    EXPECT_EQ(linked.exitCode, 2);
    EXPECT_TRUE(linked.err.contains(QStringLiteral("symbolic link"))) << linked.err.toStdString();
    EXPECT_TRUE(fs::is_symlink(fs::symlink_status(plant.folder.file("exports/link.json"))));
    EXPECT_EQ(hostGot(packet_type::PortParmsRequest), asked);
}

} // namespace
} // namespace corvane
