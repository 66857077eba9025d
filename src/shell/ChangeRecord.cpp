#include "shell/ChangeRecord.h"

#include "platform/Latin1.h"
#include "runtime/ErrorLog.h"
#include "runtime/ProgramFolder.h"

#include <QDateTime>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

#include <fstream>

namespace corvane {

std::string changeRecordPath()
{
    return programFolder() + "/parameter-changes.jsonl";
}

QJsonValue jsonOf(const FieldValue& value)
{
    if (const auto* number = std::get_if<std::int64_t>(&value))
        return static_cast<qint64>(*number);
    return fromLatin1Bytes(std::get<std::string>(value));
}

int appendChangeRecord(const ChangeRecordEntry& entry)
{
    QJsonArray changes;
    for (const ChangedField& change : entry.changes)
        changes.append(QJsonObject{{QStringLiteral("field"), fromLatin1Bytes(change.name)},
            {QStringLiteral("old"), jsonOf(change.before)}, {QStringLiteral("new"), jsonOf(change.after)}});
    QDateTime now = QDateTime::currentDateTime();
    now.setOffsetFromUtc(now.offsetFromUtc()); // the local time, with its offset written out
    QJsonObject line{
        {QStringLiteral("time"), now.toString(Qt::ISODate)},
        {QStringLiteral("user"), fromLatin1Bytes(entry.user)},
        {QStringLiteral("host"), entry.host},
        {QStringLiteral("hostPort"), entry.hostPort},
        {QStringLiteral("port"), entry.port},
        {QStringLiteral("changes"), changes},
        {QStringLiteral("outcome"), QString::fromStdString(entry.outcome)},
        {QStringLiteral("sectionsSent"), entry.sectionsSent},
    };
    if (entry.section > 0)
        line.insert(QStringLiteral("section"), entry.section);
    const QByteArray text = QJsonDocument(line).toJson(QJsonDocument::Compact);
    return appendLogLine(changeRecordPath(), std::string_view(text.constData(), static_cast<std::size_t>(text.size())));
}

std::vector<QJsonObject> readChangeRecord(std::optional<int> port)
{
    std::vector<QJsonObject> entries;
    QFile file(QString::fromStdString(changeRecordPath()));
    if (!file.open(QIODevice::ReadOnly))
        return entries;
    while (!file.atEnd()) {
        const QJsonDocument document = QJsonDocument::fromJson(file.readLine().trimmed());
        if (!document.isObject())
            continue;
        const QJsonObject entry = document.object();
        if (!port || entry.value(QStringLiteral("port")).toInt() == *port)
            entries.push_back(entry);
    }
    return entries;
}

} // namespace corvane
