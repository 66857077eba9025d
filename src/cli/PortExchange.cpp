#include "cli/PortExchange.h"

#include "commparms/FieldCatalogue.h"
#include "commparms/FieldEdit.h"
#include "session/PortJson.h"
#include "platform/Latin1.h"
#include "runtime/BoundedRead.h"
#include "runtime/ErrorLog.h"
#include "session/ChangeRecord.h"
#include "shell/GridRules.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>

namespace corvane::cli {
namespace {

std::string editText(const FieldValue& value)
{
    if (const auto* number = std::get_if<std::int64_t>(&value))
        return std::to_string(*number);
    return std::get<std::string>(value);
}

// What became of an exchange with the host: a stopping signal ends with 128 + it (an update's
// line of the record already written), a connection that went with 3 (a fetch passes over the
// sections it can no longer ask for), a host that did not answer in time with 1 (its message
// already said).
void exchanged(Client& client, bool answered, std::int16_t port)
{
    client.endIfStopped();
    if (!client.session().connected() && !answered) {
        client.say("The connection to the host ended before port " + std::to_string(port) + " was done.");
        Client::end(NoConnection);
    }
    if (!answered)
        Client::end(NoAnswer);
}

} // namespace

std::optional<FieldValue> valueFor(const RecordField& field, const QJsonValue& json)
{
    if (field.kind == FieldKind::Text)
        return json.isString() ? std::optional<FieldValue>(toLatin1Bytes(json.toString())) : std::nullopt;
    if (!json.isDouble() || json.toDouble() != static_cast<double>(json.toInteger()))
        return std::nullopt;
    return FieldValue{std::int64_t{json.toInteger()}};
}

// A port as the host sent it in a complete fetch, with what the editor's rules of showing it
// would change beside it.
QJsonObject portJson(Client& client, std::int16_t port)
{
    const auto row = static_cast<std::int16_t>(port - 1);
    const PortRecords* host = client.session().received(row);
    if (!host) // only a complete fetch comes here; anything else has ended the command
        Client::end(NoAnswer);
    QJsonArray corrections;
    for (const ChangedField& c : client.session().showCorrections(row))
        corrections.append(QJsonObject{{QStringLiteral("field"), fromLatin1Bytes(c.name)},
            {QStringLiteral("host"), jsonOf(c.before)}, {QStringLiteral("shown"), jsonOf(c.after)}});
    return {{QStringLiteral("port"), port}, {QStringLiteral("PortCommParms"), recordJson(*host, false)},
        {QStringLiteral("DataCollectionParms"), recordJson(*host, true)},
        {QStringLiteral("corrections"), corrections}};
}

void fetched(Client& client, std::int16_t port)
{
    const bool answered = client.session().FetchCommParms(static_cast<std::int16_t>(port - 1));
    exchanged(client, answered && client.session().connected(), port);
}

void editorSession(Client& client)
{
    client.logIn();
    client.needRight(CommParmsRight);
    client.connect();
}

// The editor's update, trapped as the editor traps it.
void update(Client& client, std::int16_t port)
{
    bool acknowledged = false;
    runTrapped(client.logs(), location::CommParmsUpdate,
        [&] { acknowledged = client.session().UpdateCommParms(static_cast<std::int16_t>(port - 1)); });
    exchanged(client, acknowledged, port);
    client.drain();
}

// An export of all 128 ports is some 700 KB: a file many times that is no export.
constexpr long long ImportFileLimit = 16LL << 20;

// The file's ports, every field checked before anything is sent; ends with 2 on the first fault.
std::vector<FieldValues> readExport(const QString& path, const std::vector<std::int16_t>& only)
{
    const BoundedRead read = readBoundedFile(path.toLocal8Bit().toStdString(), ImportFileLimit);
    if (!read.refusal.empty())
        throw UsageError{QStringLiteral("cannot read %1: %2").arg(path, QString::fromLocal8Bit(read.refusal.c_str()))};
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(
        QByteArray::fromRawData(read.bytes.data(), static_cast<qsizetype>(read.bytes.size())), &error);
    if (!document.isObject())
        throw UsageError{QStringLiteral("%1 is no export of port parameters: %2").arg(path, error.errorString())};
    std::vector<FieldValues> out;
    for (const QJsonValue& entry : document.object().value(QStringLiteral("ports")).toArray()) {
        const QJsonObject port = entry.toObject();
        const int number = port.value(QStringLiteral("port")).toInt();
        if (number < 1 || number > GridRows)
            throw UsageError{QStringLiteral("%1 names a port outside 1 to 128").arg(path)};
        if (!only.empty() && std::find(only.begin(), only.end(), number) == only.end())
            continue;
        FieldValues records{static_cast<std::int16_t>(number), {}};
        PortCommParms comm;
        DataCollectionParms collection;
        for (const char* recordName : {"PortCommParms", "DataCollectionParms"}) {
            const QJsonObject record = port.value(QLatin1String(recordName)).toObject();
            for (auto it = record.begin(); it != record.end(); ++it) {
                const RecordField* field = findRecordField(toLatin1Bytes(it.key()));
                const auto value = field ? valueFor(*field, it.value()) : std::nullopt;
                if (!field || field->dataCollection != (std::string_view(recordName) == "DataCollectionParms") || !value
                    || !setFieldValue(comm, collection, *field, *value))
                    throw UsageError{
                        QStringLiteral("port %1 of %2: %3 cannot take that value").arg(number).arg(path, it.key())};
                records.values.emplace_back(field, *value);
            }
        }
        out.push_back(std::move(records));
    }
    if (out.empty())
        throw UsageError{QStringLiteral("%1 holds none of the ports asked for").arg(path)};
    return out;
}

// The file's values over a fresh fetch of the port, each one that would change the record
// through its control's rule, in the file's order: the same corrections, warnings and refusals
// as set-parms. A value the host holds already, or one that only the rules of showing the record
// changed, is no change. False, with why, when a rule refuses a value: nothing of the port is
// sent then.
bool applyValues(Client& client, const FieldValues& wanted, PortRecords& records)
{
    const std::string port = "port " + std::to_string(wanted.port) + ": ";
    const auto row = static_cast<std::int16_t>(wanted.port - 1);
    const PortRecords host = *client.session().received(row);
    const PortRecords shown = records;
    const auto at = [&](const PortRecords& r, const RecordField& f) { return fieldValue(r.comm, r.collection, f); };
    const auto left = [&](const RecordField& field, const FieldValue& value, const char* why) {
        client.say(port + std::string(field.name) + " " + fieldValueText(field.name, value) + " is not sent: " + why
            + "; the port keeps " + fieldValueText(field.name, at(records, field)) + ".");
    };
    // A value the host holds already, or one that only the rules of showing the record changed,
    // is no change.
    const auto unchanged = [&](const RecordField& field, const FieldValue& value) {
        return value == at(records, field) || (value == at(host, field) && at(records, field) == at(shown, field));
    };
    std::vector<std::pair<const RecordField*, FieldValue>> pending;
    for (const auto& [field, value] : wanted.values) {
        if (keptByTerminalOnly(field->name)) {
            client.say(port + std::string(field->name) + " is kept by the desktop terminal only, and not sent.");
            continue;
        }
        if (unchanged(*field, value))
            continue;
        const FieldRow* catalogued = findField(field->name);
        if (catalogued == nullptr || catalogued->edit == nullptr) {
            left(*field, value, "the editor does not change it");
            continue;
        }
        pending.emplace_back(field, value);
    }
    // The set is gone through last field first: a value that disables other controls (a purge
    // option turned off) comes before them in the catalogue, so they are taken while still
    // enabled. One whose control a value of the set enables is taken once that one is: the set is
    // gone through again while that makes progress.
    std::reverse(pending.begin(), pending.end());
    std::vector<std::pair<const RecordField*, FieldValue>> taken;
    for (bool progress = true; progress && !pending.empty();) {
        progress = false;
        for (auto it = pending.begin(); it != pending.end();) {
            const auto& [field, value] = *it;
            if (!findField(field->name)->enabledFor(controlStates(records.comm, records.collection))) {
                ++it;
                continue;
            }
            if (!unchanged(*field, value)) {
                const FieldEdit edit = editField(
                    records.comm, records.collection, field->name, editText(value), client.session().machineTypes());
                if (!edit.accepted) {
                    client.say(port + edit.refusal + ". Nothing of port " + std::to_string(wanted.port) + " was sent.");
                    return false;
                }
                for (const RuleMessage& message : edit.outcome.messages)
                    client.say(port + message.text);
            }
            taken.push_back(*it);
            it = pending.erase(it);
            progress = true;
        }
    }
    // What the rules made of a value, once all are in (a later value's rule may change an
    // earlier one's field).
    for (const auto& [field, value] : taken)
        if (at(records, *field) != value)
            client.say(port + std::string(field->name) + " " + fieldValueText(field->name, value) + " is "
                + fieldValueText(field->name, at(records, *field)) + " by the rules.");
    for (const auto& [field, value] : pending)
        left(*field, value, "its control is disabled for the port's settings");
    return true;
}

bool isIdentityField(std::string_view name)
{
    return name == "wstat_name" || name == "Port_No";
}

FieldValues valuesOf(std::int16_t port, const PortRecords& records, bool identityToo)
{
    FieldValues out{port, {}};
    for (const RecordField& field : recordFields())
        if (!keptByTerminalOnly(field.name) && (identityToo || !isIdentityField(field.name)))
            out.values.emplace_back(&field, fieldValue(records.comm, records.collection, field));
    return out;
}

void sendOrShow(Client& client, std::int16_t port, const PortRecords& records)
{
    const auto row = static_cast<std::int16_t>(port - 1);
    if (!client.dryRun()) {
        client.session().parmsTables().setRecords(row, records);
        update(client, port);
        return;
    }
    const PortRecords& host = *client.session().received(row);
    QJsonArray fields;
    QStringList lines;
    std::vector<ChangedField> changes = changedFields(host.comm, host.collection, records.comm, records.collection);
    markCorrections(changes, client.session().showCorrections(row));
    for (const ChangedField& change : changes) {
        if (keptByTerminalOnly(change.name))
            continue; // never sent
        const std::string name(change.name);
        QJsonObject field{{QStringLiteral("name"), fromLatin1Bytes(name)}, {QStringLiteral("old"), jsonOf(change.before)},
            {QStringLiteral("new"), jsonOf(change.after)}};
        if (change.by == "rule")
            field.insert(QStringLiteral("by"), QStringLiteral("rule"));
        fields.append(field);
        lines << QStringLiteral("  %1 %2 -> %3%4")
                     .arg(fromLatin1Bytes(name).leftJustified(24), fromLatin1Bytes(fieldValueText(change.name, change.before)),
                         fromLatin1Bytes(fieldValueText(change.name, change.after)),
                         change.by == "rule" ? QStringLiteral("  (by the rules when shown)") : QString());
    }
    if (client.options().json) {
        client.printJson(QJsonObject{{QStringLiteral("port"), port}, {QStringLiteral("dryRun"), true},
            {QStringLiteral("fields"), fields}});
        return;
    }
    client.print(lines.isEmpty() ? QStringLiteral("Port %1: nothing would change (dry run: nothing was sent)").arg(port)
                                 : QStringLiteral("Port %1 would change (dry run: nothing was sent):").arg(port));
    for (const QString& line : lines)
        client.print(line);
}

} // namespace corvane::cli
