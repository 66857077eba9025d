// The record of changes from the command line: history.
#include "cli/Cli.h"

#include "platform/Latin1.h"
#include "session/ChangeRecord.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonObject>

namespace corvane::cli {
namespace {

// A value as the terminal may show it: control and formatting characters as visible escapes, so
// that no value can end the line, start another, or move the cursor; in quotes, the quote and the
// backslash escaped too.
QString visible(const QString& text, bool quoted = false)
{
    QString out;
    for (const QChar c : text) {
        const auto category = c.category();
        if (c == QLatin1Char('\n'))
            out += QStringLiteral("\\n");
        else if (c == QLatin1Char('\r'))
            out += QStringLiteral("\\r");
        else if (c == QLatin1Char('\t'))
            out += QStringLiteral("\\t");
        else if (category == QChar::Other_Control || category == QChar::Other_Format
            || category == QChar::Separator_Line || category == QChar::Separator_Paragraph
            || category == QChar::Other_Surrogate)
            out += c.unicode() < 0x100 ? QStringLiteral("\\x%1").arg(c.unicode(), 2, 16, QLatin1Char('0'))
                                       : QStringLiteral("\\u%1").arg(c.unicode(), 4, 16, QLatin1Char('0'));
        else if (quoted && (c == QLatin1Char('"') || c == QLatin1Char('\\')))
            out += QLatin1Char('\\') + c;
        else
            out += c;
    }
    return quoted ? QLatin1Char('"') + out + QLatin1Char('"') : out;
}

QString shownValue(const QJsonValue& value)
{
    if (value.isString())
        return visible(value.toString(), true);
    return value.isDouble() ? QString::number(value.toInteger()) : QStringLiteral("none");
}

// One line of the record for a reader: when, what, through which program, who (and who
// authorised it, when another), where, how it ended, and each field (those the editor's rules
// changed marked).
QString historyLine(const QJsonObject& entry)
{
    const auto text = [&entry](const char* key) { return visible(entry.value(QLatin1String(key)).toString()); };
    const auto none = [](const QString& s) { return s.isEmpty() ? QStringLiteral("-") : s; };
    QString line = text("time") + QStringLiteral("  ") + text("kind") + QStringLiteral("  ") + none(text("via"))
        + QStringLiteral("  ") + none(text("user"));
    const QString authorisedBy = text("authorisedBy");
    if (!authorisedBy.isEmpty() && authorisedBy != text("user"))
        line += QStringLiteral(" (authorised by %1)").arg(authorisedBy);
    if (entry.value(QStringLiteral("host")).isString())
        line += QStringLiteral("  %1:%2").arg(text("host")).arg(entry.value(QStringLiteral("hostPort")).toInt());
    if (entry.value(QStringLiteral("port")).isDouble())
        line += QStringLiteral("  port %1").arg(entry.value(QStringLiteral("port")).toInt());
    line += QStringLiteral("  ") + text("outcome");
    if (entry.value(QStringLiteral("section")).isDouble())
        line += QStringLiteral(" at section %1").arg(entry.value(QStringLiteral("section")).toInt());
    QStringList fields;
    for (const QJsonValue& value : entry.value(QStringLiteral("fields")).toArray()) {
        const QJsonObject field = value.toObject();
        const QJsonValue before = field.value(QStringLiteral("old"));
        const QJsonValue after = field.value(QStringLiteral("new"));
        QString shown = visible(field.value(QStringLiteral("name")).toString());
        shown += before.isNull() && after.isNull()
            ? QStringLiteral(" changed")
            : QStringLiteral(" %1 -> %2").arg(shownValue(before), shownValue(after));
        if (field.value(QStringLiteral("by")).toString() == QLatin1String("rule"))
            shown += QStringLiteral(" (by rule)");
        fields << shown;
    }
    if (!fields.isEmpty())
        line += QStringLiteral(": ") + fields.join(QStringLiteral(", "));
    return line;
}

} // namespace

QDateTime timeArgument(const QString& option, const QString& text, bool until)
{
    const QDate day = QDate::fromString(text, Qt::ISODate);
    if (text.size() == 10 && day.isValid())
        return until ? day.addDays(1).startOfDay().addMSecs(-1) : day.startOfDay();
    const QDateTime time = QDateTime::fromString(text, Qt::ISODateWithMs);
    if (!time.isValid())
        throw UsageError{QStringLiteral("%1 takes an ISO 8601 date or time, not \"%2\"").arg(option, text)};
    return time;
}

int history(Client& client)
{
    ChangeFilter filter;
    const QStringList& args = client.options().arguments;
    const Options& o = client.options();
    if (args.size() > 1)
        throw UsageError{QStringLiteral("history takes one PORT, --user, --since and --until, not \"%1\"").arg(args[1])};
    if (!args.isEmpty())
        filter.port = client.portArgument(args[0]);
    filter.user = o.value("--user");
    if (const auto since = o.value("--since"))
        filter.since = timeArgument(QStringLiteral("--since"), *since, false);
    if (const auto until = o.value("--until"))
        filter.until = timeArgument(QStringLiteral("--until"), *until, true);
    const ChangeRecordScan scan = scanChangeRecord(client.logs(), filter, [&client](const QJsonObject& entry) {
        if (client.stopSignal())
            return false;
        if (client.options().json)
            client.printJson(entry);
        else
            client.print(historyLine(entry));
        return true;
    });
    client.endIfStopped();
    if (scan.passedOver > 0)
        client.say("corvane-remote-cli: " + std::to_string(scan.passedOver) + " line(s) of " + changeRecordPath(client.logs())
            + " passed over: damaged, or longer than " + std::to_string(MaxChangeRecordLine) + " bytes.");
    if (!scan.error.empty()) {
        client.say("corvane-remote-cli: cannot read " + changeRecordPath(client.logs()) + ": " + scan.error);
        return RunTimeFault;
    }
    return Done;
}

} // namespace corvane::cli
