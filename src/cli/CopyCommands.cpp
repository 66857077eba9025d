// A port's set from another port or from the record of changes: copy-parms, revert, diff.
#include "cli/PortExchange.h"

#include "platform/Latin1.h"
#include "session/ChangeRecord.h"
#include "session/ChangeRecordKeys.h"
#include "shell/GridRules.h"

#include <QDateTime>
#include <QJsonArray>

namespace corvane::cli {
namespace {

// Each target's values over its fresh fetch, every target fetched and checked before any is sent,
// so that a value a rule refuses for one sends nothing at all.
int sendEach(Client& client, const std::vector<FieldValues>& targets)
{
    std::vector<PortRecords> changed;
    for (const FieldValues& target : targets) {
        fetched(client, target.port);
        PortRecords& records
            = changed.emplace_back(client.session().parmsTables().records(static_cast<std::int16_t>(target.port - 1)));
        if (!applyValues(client, target, records))
            return Usage;
    }
    for (std::size_t i = 0; i < targets.size(); ++i)
        sendOrShow(client, targets[i].port, changed[i]);
    return Done;
}

// The last change of the port sent to this host (before `before`, when given), as the record
// keeps it; none when there is none.
std::optional<QJsonObject> lastRecordedChange(
    Client& client, std::int16_t port, const QString& host, int hostPort, const std::optional<QDateTime>& before)
{
    ChangeFilter filter;
    filter.port = port;
    std::optional<QJsonObject> last;
    const ChangeRecordScan scan = scanChangeRecord(client.logs(), filter, [&](const QJsonObject& entry) {
        const auto text = [&entry](const char* key) { return entry.value(QLatin1String(key)).toString(); };
        const QDateTime time = QDateTime::fromString(text("time"), Qt::ISODateWithMs);
        if (isPortUpdate(toLatin1Bytes(text("kind"))) && text("outcome") == QLatin1String(change_outcome::Sent.data())
            && text("host") == host && entry.value(QStringLiteral("hostPort")).toInt() == hostPort
            && (!before || time < *before))
            last = entry;
        return true;
    });
    if (!scan.error.empty()) {
        client.say("corvane-remote-cli: cannot read " + changeRecordPath(client.logs()) + ": " + scan.error);
        Client::end(RunTimeFault);
    }
    return last;
}

QString valueText(std::string_view name, const FieldValue& value)
{
    return fromLatin1Bytes(fieldValueText(name, value));
}

} // namespace

// FROM's set, as the editor shows it, to each TO through the editor's rules; each target keeps its
// own identity (connection name, COM port) unless --all-fields.
int copyParms(Client& client)
{
    const QStringList& args = client.options().arguments;
    if (args.size() < 2)
        throw UsageError{QStringLiteral("copy-parms takes FROM and at least one TO")};
    const std::int16_t from = client.portArgument(args[0]);
    std::vector<std::int16_t> to = client.portSet(args.mid(1));
    std::erase(to, from);
    if (to.empty())
        throw UsageError{QStringLiteral("copy-parms takes a TO other than FROM")};
    editorSession(client);
    client.session().setUpdateKind(change_kind::Copy);
    // The source's set as the editor shows it: what an update of the source would send.
    fetched(client, from);
    const PortRecords source = client.session().parmsTables().records(static_cast<std::int16_t>(from - 1));
    std::vector<FieldValues> targets;
    for (const std::int16_t port : to)
        targets.push_back(valuesOf(port, source, client.options().has("--all-fields")));
    return sendEach(client, targets);
}

// The port as it was before its last recorded change (or the last before --before), from the old
// values the record keeps, through the rules; refused, naming the fields, when the host no
// longer holds what that change sent (unless --force).
int revert(Client& client)
{
    const QStringList& args = client.options().arguments;
    if (args.size() != 1)
        throw UsageError{QStringLiteral("revert takes one PORT")};
    const std::int16_t port = client.portArgument(args[0]);
    const std::optional<QDateTime> before
        = client.options().value("--before") ? std::optional(timeArgument(QStringLiteral("--before"), *client.options().value("--before"), false)) : std::nullopt;
    editorSession(client);
    client.session().setUpdateKind(change_kind::Revert);
    const auto host = static_cast<std::size_t>(client.session().hostIndex());
    const QString address = client.configuration().HostIPs[host];
    const int hostPort = client.configuration().SocketPorts[host];
    const std::optional<QJsonObject> change = lastRecordedChange(client, port, address, hostPort, before);
    if (!change) {
        client.say(toLatin1Bytes(QStringLiteral("corvane-remote-cli: the record holds no change of port %1 sent to %2:%3%4")
                .arg(port)
                .arg(address)
                .arg(hostPort)
                .arg(before ? QStringLiteral(" before ") + before->toString(Qt::ISODate) : QString())));
        return Usage;
    }
    fetched(client, port);
    const PortRecords& held = *client.session().received(static_cast<std::int16_t>(port - 1));
    FieldValues wanted{port, {}};
    QStringList moved;
    for (const QJsonValue& item : change->value(QStringLiteral("fields")).toArray()) {
        const QJsonObject field = item.toObject();
        if (field.value(QStringLiteral("sent")) == QJsonValue(false))
            continue; // kept by the terminal that made it: the host never had it
        const RecordField* row = findRecordField(toLatin1Bytes(field.value(QStringLiteral("name")).toString()));
        const auto old = row ? valueFor(*row, field.value(QStringLiteral("old"))) : std::nullopt;
        const auto sent = row ? valueFor(*row, field.value(QStringLiteral("new"))) : std::nullopt;
        if (!row || !old || !sent) {
            client.say(toLatin1Bytes(QStringLiteral("corvane-remote-cli: the record's change of %1 cannot be put back: "
                                                    "it names no value of a field this terminal knows. Nothing was sent.")
                    .arg(field.value(QStringLiteral("name")).toString())));
            return Usage;
        }
        const FieldValue now = fieldValue(held.comm, held.collection, *row);
        if (now != *sent)
            moved << QStringLiteral("%1 (the change sent %2, the host holds %3)")
                         .arg(QLatin1String(row->name.data(), static_cast<qsizetype>(row->name.size())),
                             valueText(row->name, *sent), valueText(row->name, now));
        wanted.values.emplace_back(row, *old);
    }
    if (!moved.isEmpty() && !client.options().has("--force")) {
        client.say(toLatin1Bytes(QStringLiteral("corvane-remote-cli: port %1 has changed since %2: %3. Nothing was sent; "
                                                "--force puts the old values back all the same.")
                .arg(port)
                .arg(change->value(QStringLiteral("time")).toString(), moved.join(QStringLiteral("; ")))));
        return Usage;
    }
    if (wanted.values.empty()) {
        client.say("corvane-remote-cli: the last change of port " + std::to_string(port) + " changed no field.");
        return Done;
    }
    PortRecords records = client.session().parmsTables().records(static_cast<std::int16_t>(port - 1));
    if (!applyValues(client, wanted, records))
        return Usage;
    sendOrShow(client, port, records);
    return Done;
}

// A port beside another port or an export: each field that differs, as the hosts holds it.
int diff(Client& client)
{
    const QStringList& args = client.options().arguments;
    if (args.size() != 2)
        throw UsageError{QStringLiteral("diff takes a PORT and a FILE or another PORT")};
    const std::int16_t port = client.portArgument(args[0]);
    bool isPort = false;
    const int other = args[1].toInt(&isPort);
    std::optional<FieldValues> file;
    if (isPort) {
        client.portArgument(args[1]);
    } else {
        std::vector<FieldValues> ports = readExport(args[1]);
        const auto same = std::find_if(ports.begin(), ports.end(), [port](const FieldValues& f) { return f.port == port; });
        if (same == ports.end() && ports.size() != 1)
            throw UsageError{QStringLiteral("%1 holds no port %2, and more than one other").arg(args[1]).arg(port)};
        file = same != ports.end() ? *same : ports.front();
    }
    editorSession(client);
    fetched(client, port);
    const PortRecords left = *client.session().received(static_cast<std::int16_t>(port - 1));
    PortRecords right = left;
    if (file) {
        for (const auto& [field, value] : file->values)
            setFieldValue(right.comm, right.collection, *field, value);
    } else {
        fetched(client, static_cast<std::int16_t>(other));
        right = *client.session().received(static_cast<std::int16_t>(other - 1));
    }
    const QString against = file ? args[1] + QStringLiteral(" (port %1)").arg(file->port) : QStringLiteral("port %1").arg(other);
    QJsonArray fields;
    for (const ChangedField& change : changedFields(left.comm, left.collection, right.comm, right.collection)) {
        if (keptByTerminalOnly(change.name))
            continue;
        const QString name = fromLatin1Bytes(std::string(change.name));
        if (client.options().json)
            fields.append(QJsonObject{{QStringLiteral("name"), name}, {QStringLiteral("port"), jsonOf(change.before)},
                {QStringLiteral("other"), jsonOf(change.after)}});
        else
            client.print(QStringLiteral("%1 %2 | %3")
                             .arg(name.leftJustified(24), valueText(change.name, change.before),
                                 valueText(change.name, change.after)));
    }
    if (client.options().json)
        client.printJson(QJsonObject{{QStringLiteral("port"), port}, {QStringLiteral("against"), against},
            {QStringLiteral("fields"), fields}});
    return Done;
}

} // namespace corvane::cli
