// Port sets from the command line, in this process on a test's clock: copy-parms, revert, dry
// runs, diff, port lists, export to standard output and import into another port, against
// polite and hostile peers.
#include "commparms/RecordFields.h"
#include "protocol/PacketTypes.h"
#include "security/FirstStore.h"
#include "session/ChangeRecord.h"
#include "support/ChangeRecordLines.h"
#include "support/ClientRun.h"
#include "support/Peers.h"
#include "support/Wait.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

#include <functional>
#include <map>

namespace corvane {
namespace {

using test::ClientRun;
using test::runClient;

class CliPortSets : public ::testing::Test {
public:
    test::SimulatedPlant plant;
    test::ManualTimers clock;

    void SetUp() override
    {
        test::giveFirstStore(plant);
    }
    // What the host holds for a port as the grid numbers it.
    PortRecords held(int port)
    {
        const PortParmsTables& t = plant.host.plant().parms;
        return {t.PortCommParmsTable[static_cast<std::size_t>(port - 1)], t.DataCollectionTable[static_cast<std::size_t>(port - 1)]};
    }
    FieldValue heldValue(int port, const char* name)
    {
        const PortRecords r = held(port);
        return fieldValue(r.comm, r.collection, *findRecordField(name));
    }
    ClientRun run(const QString& line) { return run(line, clock); }
    ClientRun run(const QString& line, test::ManualTimers& on)
    {
        const ClientRun r = runClient(plant, on, qPrintable(line));
        EXPECT_TRUE(test::waitFor([&] { return !plant.host.hasTerminal(); }));
        return r;
    }
    // The fields the editor changes and the host keeps: what a copy carries.
    static bool copied(const RecordField& field)
    {
        return !keptByTerminalOnly(field.name) && field.name != "wstat_name" && field.name != "Port_No"
            && field.name != "iMinimumPurgeSeconds";
    }
};

// Copy, preview and put back, against each peer: a dry run sends nothing; a copy gives each
// target the source's set and leaves its identity; a revert puts the old values back, and is
// refused, naming the field, when someone changed the port since (unless --force). A host whose
// acknowledgements make an update uncertain makes the copy end with 1, as set-parms does.
TEST_F(CliPortSets, CopyPreviewAndRevertAgainstPoliteAndHostilePeers)
{
    const PortRecords original6 = held(6), original7 = held(7);
    // The source as the editor shows it: the host's values, with the rules' corrections.
    std::map<QString, QJsonValue> shown5;
    const QJsonObject fetched5 = QJsonDocument::fromJson(run(QStringLiteral("--json get-parms 5")).out.toUtf8()).object();
    for (const QJsonValue& c : fetched5.value(QStringLiteral("corrections")).toArray())
        shown5[c[QStringLiteral("field")].toString()] = c[QStringLiteral("shown")];
    const auto sourceValue = [&](const RecordField& field) {
        const QString name = QString::fromLatin1(field.name.data(), static_cast<qsizetype>(field.name.size()));
        return shown5.contains(name) ? shown5[name] : jsonOf(heldValue(5, std::string(field.name).c_str()));
    };
    for (const test::Peer& c : test::peers()) {
        SCOPED_TRACE(c.name);
        plant.host.plant().parms.PortCommParmsTable[5] = original6.comm;
        plant.host.plant().parms.PortCommParmsTable[6] = original7.comm;
        plant.host.plant().parms.DataCollectionTable[5] = original6.collection;
        plant.host.plant().parms.DataCollectionTable[6] = original7.collection;
        std::filesystem::remove(plant.folder.file("parameter-changes.jsonl"));
        plant.host.faults = {};
        if (c.fault)
            c.fault(plant);
        // The moment an update looks for late acknowledgements passes once the host has sent all
        // it had to send, a surplus included.
        test::ManualTimers caseClock;
        QObject scope;
        caseClock.tickWhenIdle("tmrAckSettle", &scope, [this] { return plant.host.allSent(); });
        const auto run = [&](const QString& line) { return CliPortSets::run(line, caseClock); };

        const std::size_t before = plant.receivedOfType(packet_type::PortParms);
        const ClientRun preview = run(QStringLiteral("copy-parms 5 6-7 --dry-run"));
        EXPECT_EQ(preview.status, 0) << preview.err.toStdString();
        EXPECT_TRUE(preview.out.contains(QStringLiteral("Port 6 would change"))) << preview.out.toStdString();
        EXPECT_EQ(plant.receivedOfType(packet_type::PortParms), before) << "a dry run sends nothing";
        EXPECT_EQ(held(6), original6);

        const ClientRun copy = run(QStringLiteral("copy-parms 5 6,7"));
        EXPECT_EQ(copy.status, c.updateStatus) << copy.err.toStdString();
        if (c.updateStatus != 0)
            continue;
        for (const int target : {6, 7})
            for (const RecordField& field : recordFields())
                EXPECT_EQ(jsonOf(fieldValue(held(target).comm, held(target).collection, field)),
                    copied(field) ? sourceValue(field)
                                  : jsonOf(fieldValue((target == 6 ? original6 : original7).comm,
                                        (target == 6 ? original6 : original7).collection, field)))
                    << "port " << target << " " << field.name;
        const std::vector<QJsonObject> lines = test::changeRecordLines(plant.folder.logs());
        ASSERT_EQ(lines.size(), 2u) << "one line per target";
        EXPECT_EQ(lines[0].value(QStringLiteral("kind")).toString(), QStringLiteral("copy"));

        EXPECT_EQ(run(QStringLiteral("revert 6 --before 2000-01-01")).status, 2) << "no change that early";
        EXPECT_EQ(run(QStringLiteral("revert 6 --dry-run")).status, 0);
        EXPECT_NE(held(6), original6) << "a dry run sends nothing";
        const ClientRun reverted = run(QStringLiteral("revert 6"));
        EXPECT_EQ(reverted.status, 0) << reverted.err.toStdString();
        // Every value the copy sent is put back; one the rules corrected (a disabled control's)
        // stays as the rules left it, as the editor would leave it.
        for (const QJsonValue& item : test::changeRecordLines(plant.folder.logs(), 6).front().value(QStringLiteral("fields")).toArray()) {
            const QJsonObject field = item.toObject();
            const std::string name = field.value(QStringLiteral("name")).toString().toStdString();
            if (field.value(QStringLiteral("by")).toString() != QLatin1String("rule")) {
                EXPECT_EQ(jsonOf(heldValue(6, name.c_str())), field.value(QStringLiteral("old"))) << name;
            }
        }
        EXPECT_EQ(test::changeRecordLines(plant.folder.logs(), 6).back().value(QStringLiteral("kind")).toString(),
            QStringLiteral("revert"));

        // Port 7 changed behind the record's back: its revert names the field and sends nothing.
        plant.host.plant().parms.PortCommParmsTable[6].FileNotFoundMessage = "CHANGED AT THE HOST";
        const ClientRun refused = run(QStringLiteral("revert 7"));
        EXPECT_EQ(refused.status, 2);
        EXPECT_TRUE(refused.err.contains(QStringLiteral("FileNotFoundMessage (the change sent"))) << refused.err.toStdString();
        EXPECT_EQ(held(7).comm.FileNotFoundMessage, "CHANGED AT THE HOST");
        EXPECT_EQ(run(QStringLiteral("revert 7 --force")).status, 0);
        EXPECT_EQ(held(7).comm.FileNotFoundMessage, original7.comm.FileNotFoundMessage);
    }
}

// PORT lists and ranges; an export to standard output; one exported port imported into another,
// which keeps its identity; diff names what still differs; the byte count is a JSON number.
TEST_F(CliPortSets, ListsExportToOutputImportIntoAnotherPortAndDiff)
{
    clock.tickWhenIdle("tmrAckSettle", &plant.host);
    const ClientRun listed = run(QStringLiteral("--json get-parms 1-3,5"));
    ASSERT_EQ(listed.status, 0) << listed.err.toStdString();
    QList<int> ports;
    for (const QString& line : listed.out.split(QLatin1Char('\n'), Qt::SkipEmptyParts))
        ports << QJsonDocument::fromJson(line.toUtf8()).object().value(QStringLiteral("port")).toInt();
    EXPECT_EQ(ports, (QList<int>{1, 2, 3, 5}));
    for (const char* bad : {"get-parms 0-2", "get-parms 3-1", "get-parms 5,x", "revert 1-2", "copy-parms 5 5"})
        EXPECT_EQ(run(QString::fromLatin1(bad)).status, 2) << bad;

    const ClientRun exported = run(QStringLiteral("export 2,4 --file -"));
    ASSERT_EQ(exported.status, 0) << exported.err.toStdString();
    const QJsonArray exportedPorts = QJsonDocument::fromJson(exported.out.toUtf8()).object().value(QStringLiteral("ports")).toArray();
    ASSERT_EQ(exportedPorts.size(), 2);
    plant.folder.write("two.json", exported.out.toStdString());

    const PortRecords nine = held(9);
    const QString file = QString::fromStdString(plant.folder.file("two.json").string());
    EXPECT_EQ(run(QStringLiteral("import %1 --to 9").arg(file)).status, 2) << "two ports: which one?";
    const ClientRun imported = run(QStringLiteral("import %1 2 --to 9").arg(file));
    ASSERT_EQ(imported.status, 0) << imported.err.toStdString();
    EXPECT_EQ(held(9).comm.Baud, held(2).comm.Baud);
    EXPECT_EQ(held(9).comm.wstat_name, nine.comm.wstat_name) << "its identity stays its own";
    EXPECT_EQ(held(9).comm.Port_No, nine.comm.Port_No);

    const ClientRun differs = run(QStringLiteral("--json diff 9 2"));
    ASSERT_EQ(differs.status, 0) << differs.err.toStdString();
    QStringList names;
    for (const QJsonValue& field : QJsonDocument::fromJson(differs.out.toUtf8()).object().value(QStringLiteral("fields")).toArray())
        names << field.toObject().value(QStringLiteral("name")).toString();
    EXPECT_TRUE(names.contains(QStringLiteral("wstat_name")));
    EXPECT_FALSE(names.contains(QStringLiteral("Baud")));

    const ClientRun status = run(QStringLiteral("--json status"));
    EXPECT_TRUE(QJsonDocument::fromJson(status.out.toUtf8()).array().at(0).toObject().value(QStringLiteral("byteCount")).isDouble());
}

} // namespace
} // namespace corvane
