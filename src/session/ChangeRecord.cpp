#include "session/ChangeRecord.h"

#include "platform/Latin1.h"
#include "runtime/ErrorLog.h"
#include "security/UserAdmin.h"
#include "session/ChangeRecordKeys.h"
#include "session/HostConfiguration.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace corvane {
namespace {

using namespace change_keys;

QJsonValue textOrNull(const QString& text)
{
    return text.isEmpty() ? QJsonValue(QJsonValue::Null) : QJsonValue(text);
}

template <typename T> QJsonValue orNull(const std::optional<T>& value)
{
    return value ? QJsonValue(*value) : QJsonValue(QJsonValue::Null);
}

QJsonValue valueOrNull(const std::optional<FieldValue>& value)
{
    return value ? jsonOf(*value) : QJsonValue(QJsonValue::Null);
}

QString fromView(std::string_view text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

} // namespace

std::string changeRecordPath(const Logs& logs)
{
    return logs.file(ChangeRecordName);
}

QJsonValue jsonOf(const FieldValue& value)
{
    if (const auto* number = std::get_if<std::int64_t>(&value))
        return static_cast<qint64>(*number);
    return fromLatin1Bytes(std::get<std::string>(value));
}

int appendChangeRecord(Logs& logs, const ChangeRecordEntry& entry)
{
    QJsonArray fields;
    for (const RecordedField& field : entry.fields) {
        QJsonObject line{{QStringLiteral("name"), fromLatin1Bytes(field.name)},
            {QStringLiteral("old"), valueOrNull(field.before)}, {QStringLiteral("new"), valueOrNull(field.after)},
            {QStringLiteral("by"), fromView(field.by)}};
        if (field.keptByTerminal)
            line.insert(QStringLiteral("sent"), false); // kept by this terminal only
        fields.append(line);
    }
    const ChangeActor& actor = entry.actor;
    QDateTime now = QDateTime::currentDateTime();
    now.setOffsetFromUtc(now.offsetFromUtc()); // the local time, with its offset written out
    QJsonObject line{
        {Time, now.toString(Qt::ISODate)},
        {Kind, fromView(entry.kind)},
        {QStringLiteral("via"), textOrNull(fromView(actor.via))},
        {QStringLiteral("host"), orNull(entry.host)},
        {QStringLiteral("hostPort"), orNull(entry.hostPort)},
        {Port, orNull(entry.port)},
        {User, textOrNull(fromLatin1Bytes(actor.user))},
        {AuthorisedBy, textOrNull(fromLatin1Bytes(actor.authorisedBy.empty() ? actor.user : actor.authorisedBy))},
        {QStringLiteral("osUser"), textOrNull(fromView(actor.osUser))},
        {Outcome, fromView(entry.outcome)},
        {Fields, fields},
    };
    if (isPortUpdate(entry.kind)) {
        line.insert(QStringLiteral("section"), orNull(entry.section));
        line.insert(QStringLiteral("sectionsSent"), entry.sectionsSent);
    }
    const QByteArray text = QJsonDocument(line).toJson(QJsonDocument::Compact);
    const std::string_view whole(text.constData(), static_cast<std::size_t>(text.size()));
    logs.toSystemLog(whole);
    return logs.append(changeRecordPath(logs), whole);
}

void recordChange(Logs& logs, const ChangeRecordEntry& entry)
{
    if (const int error = appendChangeRecord(logs, entry)) {
        Log_Run_Time_Error(logs, location::ChangeRecord, error);
        std::fprintf(stderr, "The change could not be recorded in %s: %s\n", changeRecordPath(logs).c_str(),
            errorDescription(error).c_str());
    }
}

void recordLocalChange(Logs& logs, std::string_view kind, const ChangeActor& actor, std::vector<RecordedField> fields)
{
    if (fields.empty())
        return;
    ChangeRecordEntry entry{kind, actor, {}, {}, {}, std::move(fields), change_outcome::Sent, {}, 0};
    recordChange(logs, entry);
}

std::vector<RecordedField> recordedFields(const std::vector<ChangedField>& changes)
{
    std::vector<RecordedField> fields;
    for (const ChangedField& change : changes)
        fields.push_back({std::string(change.name), change.before, change.after, std::string(change.by),
            keptByTerminalOnly(change.name)});
    return fields;
}

std::vector<RecordedField> userFields(
    const std::optional<UserEntry>& before, const std::optional<UserEntry>& after, const RightsList& rights)
{
    const auto name = [](const std::optional<UserEntry>& entry) -> std::optional<FieldValue> {
        if (!entry || entry->UserName.empty())
            return std::nullopt;
        return entry->UserName;
    };
    std::vector<RecordedField> fields{{"UserName", name(before), name(after)}};
    if (!after)
        return fields; // deleted: the entry keeps the rest, unused
    const UserEntry none;
    const UserEntry& old = before ? *before : none;
    if (old.Password != after->Password)
        fields.push_back({"Password", std::nullopt, std::nullopt}); // that it changed, nothing of it
    for (const RightsEntry& right : rights.rows) {
        const auto at = static_cast<std::size_t>(right.RightIndex);
        if (old.Rights.at(at) != after->Rights.at(at))
            fields.push_back({"Rights." + rightShortName(right), std::int64_t{old.Rights.at(at)},
                std::int64_t{after->Rights.at(at)}});
    }
    return fields;
}

std::vector<RecordedField> configurationFields(const HostConfiguration& stored, const HostConfiguration& saved)
{
    std::vector<RecordedField> fields;
    const auto compare = [&fields](std::string name, FieldValue before, FieldValue after) {
        if (before != after)
            fields.push_back({std::move(name), std::move(before), std::move(after)});
    };
    for (int n = 1; n <= HostCount; ++n) {
        const auto i = static_cast<std::size_t>(n);
        const std::string number = std::to_string(n);
        compare("HostName" + number, toLatin1Bytes(stored.HostNames[i]), toLatin1Bytes(saved.HostNames[i]));
        compare("HostIP" + number, toLatin1Bytes(stored.HostIPs[i]), toLatin1Bytes(saved.HostIPs[i]));
        compare("SocketPortNumber" + number, std::int64_t{stored.SocketPorts[i]}, std::int64_t{saved.SocketPorts[i]});
    }
    compare("Idle Minutes", std::int64_t{stored.IdleMinutes}, std::int64_t{saved.IdleMinutes});
    return fields;
}

bool saveConfiguration(HostConfiguration& config, Logs& logs, const ChangeActor& actor)
{
    // What the settings hold, not what the form's tables hold: a cancelled form leaves its
    // typing in the tables.
    HostConfiguration stored(config.registry());
    stored.load();
    if (!config.save())
        return false;
    recordLocalChange(logs, change_kind::Config, actor, configurationFields(stored, config));
    return true;
}

} // namespace corvane
