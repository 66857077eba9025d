// A port's parameters from the command line: get-parms, set-parms, export, import.
#include "cli/PortExchange.h"

#include "commparms/FieldEdit.h"
#include "platform/Latin1.h"
#include "runtime/WholeFile.h"
#include "session/ChangeRecord.h"
#include "session/PortJson.h"

#include <QDateTime>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace corvane::cli {
namespace {

void printRecords(Client& client, std::int16_t port)
{
    const QJsonObject records = portJson(client, port);
    if (client.options().json) {
        client.printJson(records);
        return;
    }
    const auto row = static_cast<std::int16_t>(port - 1);
    const PortRecords& host = *client.session().received(row);
    client.print(QStringLiteral("Port %1").arg(port));
    for (const bool collection : {false, true}) {
        client.print(collection ? QStringLiteral("  DataCollectionParms") : QStringLiteral("  PortCommParms"));
        for (const RecordField& field : recordFields())
            if (field.dataCollection == collection && !keptByTerminalOnly(field.name))
                client.print(QStringLiteral("    %1 = %2")
                                 .arg(fromLatin1Bytes(field.name).leftJustified(24),
                                     fromLatin1Bytes(fieldValueText(
                                         field.name, fieldValue(host.comm, host.collection, field)))));
    }
    const std::vector<ChangedField> corrections = client.session().showCorrections(row);
    if (corrections.empty())
        return;
    client.print(QStringLiteral("  Corrected by the editor's rules when shown (and sent so by an update)"));
    for (const ChangedField& c : corrections)
        client.print(QStringLiteral("    %1 = %2 -> %3")
                         .arg(fromLatin1Bytes(c.name).leftJustified(24),
                             fromLatin1Bytes(fieldValueText(c.name, c.before)),
                             fromLatin1Bytes(fieldValueText(c.name, c.after))));
}

} // namespace

int getParms(Client& client)
{
    const QStringList& args = client.options().arguments;
    if (args.isEmpty())
        throw UsageError{QStringLiteral("get-parms takes PORT")};
    const std::vector<std::int16_t> ports = client.portSet(args);
    editorSession(client);
    for (const std::int16_t port : ports) {
        fetched(client, port);
        printRecords(client, port);
    }
    return Done;
}

// The changes through each control's rule, in the order given, over each port's fresh fetch;
// every port is fetched and changed before any is sent, so that a refused change sends nothing.
int setParms(Client& client)
{
    const QStringList& args = client.options().arguments;
    if (args.size() < 2)
        throw UsageError{QStringLiteral("set-parms takes a PORT and at least one NAME=VALUE")};
    const std::vector<std::int16_t> ports = client.portSet(args.mid(0, 1));
    std::vector<std::pair<std::string, std::string>> changes;
    for (qsizetype i = 1; i < args.size(); ++i) {
        const qsizetype equals = args[i].indexOf(QLatin1Char('='));
        if (equals <= 0)
            throw UsageError{QStringLiteral("\"%1\" is no NAME=VALUE").arg(args[i])};
        changes.emplace_back(toLatin1Bytes(args[i].left(equals)), toLatin1Bytes(args[i].mid(equals + 1)));
    }
    editorSession(client);
    std::vector<PortRecords> changed;
    for (const std::int16_t port : ports) {
        fetched(client, port);
        PortRecords& records = changed.emplace_back(client.session().parmsTables().records(static_cast<std::int16_t>(port - 1)));
        for (const auto& [name, value] : changes) {
            if (keptByTerminalOnly(name)) {
                client.say("corvane-remote-cli: " + name
                    + " is kept by the desktop terminal only: the host does not store it. Nothing was sent.");
                return Usage;
            }
            const FieldEdit edit = editField(records.comm, records.collection, name, value, client.session().machineTypes());
            if (!edit.accepted) {
                client.say("corvane-remote-cli: " + edit.refusal + ". Nothing was sent.");
                return Usage;
            }
            for (const RuleMessage& message : edit.outcome.messages)
                client.say(ports.size() > 1 ? "port " + std::to_string(port) + ": " + message.text : message.text);
        }
    }
    for (std::size_t i = 0; i < ports.size(); ++i)
        sendOrShow(client, ports[i], changed[i]);
    return Done;
}

int exportParms(Client& client)
{
    const QStringList& args = client.options().arguments;
    const std::optional<QString> given = client.options().value("--file");
    if (!given)
        throw UsageError{QStringLiteral("export needs --file FILE (- for standard output)")};
    const QString path = *given;
    if (args.isEmpty())
        throw UsageError{QStringLiteral("export takes at least one PORT")};
    const std::vector<std::int16_t> ports = client.portSet(args);
    const bool toOutput = path == QLatin1String("-");
    // Refused before the host is asked for anything: FILE is a link, a folder, a device.
    const std::string file = QFile::encodeName(path).toStdString();
    if (!toOutput)
        if (const std::string refusal = wholeFileRefusal(file); !refusal.empty())
            throw UsageError{QStringLiteral("cannot write %1: %2").arg(path, QString::fromStdString(refusal))};
    editorSession(client);
    QJsonArray exported;
    for (const std::int16_t port : ports) {
        fetched(client, port);
        exported.append(portJson(client, port));
    }
    const std::size_t host = static_cast<std::size_t>(client.session().hostIndex());
    const QJsonObject document
        = exportDocument(client.configuration().HostIPs[host], client.configuration().SocketPorts[host], exported);
    if (toOutput) {
        client.printJson(document, true);
        return Done;
    }
    // Whole or not at all: a reader of FILE finds the old export or the new one.
    const QByteArray bytes = QJsonDocument(document).toJson(QJsonDocument::Indented);
    if (const std::string error
        = writeWholeFile(file, std::string_view(bytes.constData(), static_cast<std::size_t>(bytes.size())));
        !error.empty()) {
        client.say(
            "corvane-remote-cli: cannot write " + toLatin1Bytes(path) + ": " + error + ". The file is as it was.");
        return RunTimeFault;
    }
    client.print(QStringLiteral("Exported %1 port(s) to %2").arg(ports.size()).arg(path));
    return Done;
}

// Each port of the file (or those asked for) through the update exchange, the values that would
// change its fresh fetch through the editor's rules; with --to, the file's one port into another,
// whose identity (connection name, COM port) stays its own.
int importParms(Client& client)
{
    const QStringList& args = client.options().arguments;
    if (args.isEmpty())
        throw UsageError{QStringLiteral("import takes a FILE")};
    const std::optional<QString> to = client.options().value("--to");
    const std::vector<std::int16_t> only = args.size() > 1 ? client.portSet(args.mid(1)) : std::vector<std::int16_t>{};
    const std::optional<std::int16_t> target = to ? std::optional(client.portArgument(*to)) : std::nullopt;
    std::vector<FieldValues> ports = readExport(args[0], only);
    if (target) {
        if (ports.size() != 1)
            throw UsageError{QStringLiteral("--to takes one port of the file: name it (import FILE PORT --to PORT)")};
        FieldValues& one = ports.front();
        one.port = *target;
        std::erase_if(one.values, [](const auto& v) { return isIdentityField(v.first->name); });
    }
    editorSession(client);
    QStringList sent, notSent;
    int status = Done;
    for (const FieldValues& file : ports) {
        if (status != Done && status != Usage) { // the host can no longer be asked
            notSent << QString::number(file.port);
            continue;
        }
        try {
            fetched(client, file.port);
            PortRecords records = client.session().parmsTables().records(static_cast<std::int16_t>(file.port - 1));
            if (!applyValues(client, file, records)) {
                status = Usage;
                notSent << QString::number(file.port);
                continue;
            }
            sendOrShow(client, file.port, records);
            sent << QString::number(file.port);
        } catch (const Ending& ending) {
            status = ending.status;
            notSent << QString::number(file.port);
        }
    }
    if (!notSent.isEmpty()) {
        client.say("Imported port(s): " + toLatin1Bytes(sent.isEmpty() ? QStringLiteral("none") : sent.join(u' '))
            + "; not sent: " + toLatin1Bytes(notSent.join(u' ')) + ".");
        return status;
    }
    if (!client.dryRun())
        client.print(QStringLiteral("Imported %1 port(s) from %2").arg(ports.size()).arg(args[0]));
    return Done;
}

} // namespace corvane::cli
