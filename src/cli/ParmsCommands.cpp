// A port's parameters from the command line: get-parms, set-parms, export, import; and the record
// of changes, history.
#include "cli/Cli.h"

#include "commparms/FieldEdit.h"
#include "commparms/RecordFields.h"
#include "platform/Latin1.h"
#include "runtime/BoundedRead.h"
#include "runtime/ErrorLog.h"
#include "runtime/WholeFile.h"
#include "session/ChangeRecord.h"
#include "shell/GridRules.h"

#include <QDateTime>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace corvane::cli {
namespace {

// The fields the host stores; those this terminal keeps to itself are never printed as the
// host's.
QJsonObject recordJson(const PortRecords& r, bool collection)
{
    QJsonObject out;
    for (const RecordField& field : recordFields())
        if (field.dataCollection == collection && !keptByTerminalOnly(field.name))
            out.insert(fromLatin1Bytes(field.name), jsonOf(fieldValue(r.comm, r.collection, field)));
    return out;
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

// A value from a file: a JSON number or text, as the field's kind wants.
std::optional<FieldValue> valueFor(const RecordField& field, const QJsonValue& json)
{
    if (field.kind == FieldKind::Text)
        return json.isString() ? std::optional<FieldValue>(toLatin1Bytes(json.toString())) : std::nullopt;
    if (!json.isDouble() || json.toDouble() != static_cast<double>(json.toInteger()))
        return std::nullopt;
    return FieldValue{std::int64_t{json.toInteger()}};
}

// A port of an export: the values of the fields it holds, each already checked to fit its field.
struct FileRecords {
    std::int16_t port;
    std::vector<std::pair<const RecordField*, FieldValue>> values;
};

// An export of all 128 ports is some 700 KB: a file many times that is no export.
constexpr long long ImportFileLimit = 16LL << 20;

// The file's ports, every field checked before anything is sent; ends with 2 on the first fault.
std::vector<FileRecords> readExport(const QString& path, const QStringList& only)
{
    const BoundedRead read = readBoundedFile(path.toLocal8Bit().toStdString(), ImportFileLimit);
    if (!read.refusal.empty())
        throw UsageError{QStringLiteral("cannot read %1: %2").arg(path, QString::fromLocal8Bit(read.refusal.c_str()))};
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(
        QByteArray::fromRawData(read.bytes.data(), static_cast<qsizetype>(read.bytes.size())), &error);
    if (!document.isObject())
        throw UsageError{QStringLiteral("%1 is no export of port parameters: %2").arg(path, error.errorString())};
    std::vector<FileRecords> out;
    for (const QJsonValue& entry : document.object().value(QStringLiteral("ports")).toArray()) {
        const QJsonObject port = entry.toObject();
        const int number = port.value(QStringLiteral("port")).toInt();
        if (number < 1 || number > GridRows)
            throw UsageError{QStringLiteral("%1 names a port outside 1 to 128").arg(path)};
        if (!only.isEmpty() && !only.contains(QString::number(number)))
            continue;
        FileRecords records{static_cast<std::int16_t>(number), {}};
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

// --since and --until: an ISO 8601 date or date and time, local unless it carries an offset; a
// date alone is the whole of that day.
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

int getParms(Client& client)
{
    const QStringList& args = client.options().arguments;
    if (args.size() != 1)
        throw UsageError{QStringLiteral("get-parms takes one PORT")};
    const std::int16_t port = client.portArgument(args[0]);
    editorSession(client);
    fetched(client, port);
    printRecords(client, port);
    return Done;
}

int setParms(Client& client)
{
    const QStringList& args = client.options().arguments;
    if (args.size() < 2)
        throw UsageError{QStringLiteral("set-parms takes a PORT and at least one NAME=VALUE")};
    const std::int16_t port = client.portArgument(args[0]);
    std::vector<std::pair<std::string, std::string>> changes;
    for (qsizetype i = 1; i < args.size(); ++i) {
        const qsizetype equals = args[i].indexOf(QLatin1Char('='));
        if (equals <= 0)
            throw UsageError{QStringLiteral("\"%1\" is no NAME=VALUE").arg(args[i])};
        changes.emplace_back(toLatin1Bytes(args[i].left(equals)), toLatin1Bytes(args[i].mid(equals + 1)));
    }
    editorSession(client);
    fetched(client, port);
    PortParmsTables& t = client.session().parmsTables();
    PortCommParms p = t.commParms(static_cast<std::int16_t>(port - 1));
    DataCollectionParms d = t.dataCollection(static_cast<std::int16_t>(port - 1));
    // Every change through its control's rule, in the order given; a refused one stops all.
    for (const auto& [name, value] : changes) {
        if (keptByTerminalOnly(name)) {
            client.say("corvane-remote-cli: " + name
                + " is kept by the desktop terminal only: the host does not store it. Nothing was sent.");
            return Usage;
        }
        const FieldEdit edit = editField(p, d, name, value, client.session().machineTypes());
        if (!edit.accepted) {
            client.say("corvane-remote-cli: " + edit.refusal + ". Nothing was sent.");
            return Usage;
        }
        for (const RuleMessage& message : edit.outcome.messages)
            client.say(message.text);
    }
    t.commParms(static_cast<std::int16_t>(port - 1)) = p;
    t.dataCollection(static_cast<std::int16_t>(port - 1)) = d;
    update(client, port);
    return Done;
}

int exportParms(Client& client)
{
    const QStringList& args = client.options().arguments;
    const std::optional<QString> given = client.options().value("--file");
    if (!given)
        throw UsageError{QStringLiteral("export needs --file FILE")};
    const QString path = *given;
    if (args.isEmpty())
        throw UsageError{QStringLiteral("export takes at least one PORT")};
    std::vector<std::int16_t> ports;
    for (const QString& a : args)
        ports.push_back(client.portArgument(a));
    // Refused before the host is asked for anything: FILE is a link, a folder, a device.
    const std::string file = QFile::encodeName(path).toStdString();
    if (const std::string refusal = wholeFileRefusal(file); !refusal.empty())
        throw UsageError{QStringLiteral("cannot write %1: %2").arg(path, QString::fromStdString(refusal))};
    editorSession(client);
    QJsonArray exported;
    for (const std::int16_t port : ports) {
        fetched(client, port);
        exported.append(portJson(client, port));
    }
    const std::size_t host = static_cast<std::size_t>(client.session().hostIndex());
    const QJsonObject document{{QStringLiteral("host"), client.configuration().HostIPs[host]},
        {QStringLiteral("hostPort"), client.configuration().SocketPorts[host]},
        {QStringLiteral("exported"), QDateTime::currentDateTime().toString(Qt::ISODate)},
        {QStringLiteral("ports"), exported}};
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

namespace {

std::string editText(const FieldValue& value)
{
    if (const auto* number = std::get_if<std::int64_t>(&value))
        return std::to_string(*number);
    return std::get<std::string>(value);
}

// The file's values over a fresh fetch of the port, each one that would change the record
// through its control's rule, in the file's order: the same corrections, warnings and refusals
// as set-parms. A value the host holds already, or one that only the rules of showing the record
// changed, is no change. False, with why, when a rule refuses a value: nothing of the port is
// sent then.
bool applyImport(Client& client, const FileRecords& file, PortRecords& records)
{
    const std::int16_t port = file.port;
    const auto row = static_cast<std::int16_t>(port - 1);
    const PortRecords host = *client.session().received(row);
    const PortRecords shown = records;
    const auto at = [&](const PortRecords& r, const RecordField& f) { return fieldValue(r.comm, r.collection, f); };
    for (const auto& [field, value] : file.values) {
        if (keptByTerminalOnly(field->name)) {
            client.say("port " + std::to_string(port) + ": " + std::string(field->name)
                + " is kept by the desktop terminal only, and not imported.");
            continue;
        }
        if (value == at(records, *field) || (value == at(host, *field) && at(records, *field) == at(shown, *field)))
            continue;
        const FieldEdit edit
            = editField(records.comm, records.collection, field->name, editText(value), client.session().machineTypes());
        if (!edit.accepted) {
            client.say("port " + std::to_string(port) + ": " + edit.refusal + ". Nothing of port "
                + std::to_string(port) + " was sent.");
            return false;
        }
        for (const RuleMessage& message : edit.outcome.messages)
            client.say("port " + std::to_string(port) + ": " + message.text);
        if (at(records, *field) != value)
            client.say("port " + std::to_string(port) + ": " + std::string(field->name) + " "
                + fieldValueText(field->name, value) + " is " + fieldValueText(field->name, at(records, *field))
                + " by the rules.");
    }
    return true;
}

} // namespace

int importParms(Client& client)
{
    const QStringList& args = client.options().arguments;
    if (args.isEmpty())
        throw UsageError{QStringLiteral("import takes a FILE")};
    for (qsizetype i = 1; i < args.size(); ++i)
        client.portArgument(args[i]);
    const std::vector<FileRecords> ports = readExport(args[0], args.mid(1));
    editorSession(client);
    QStringList sent, notSent;
    int status = Done;
    for (const FileRecords& file : ports) {
        if (status != Done && status != Usage) { // the host can no longer be asked
            notSent << QString::number(file.port);
            continue;
        }
        try {
            fetched(client, file.port);
            PortParmsTables& t = client.session().parmsTables();
            const auto row = static_cast<std::int16_t>(file.port - 1);
            PortRecords records = t.records(row);
            if (!applyImport(client, file, records)) {
                status = Usage;
                notSent << QString::number(file.port);
                continue;
            }
            t.setRecords(row, records);
            update(client, file.port);
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
    client.print(QStringLiteral("Imported %1 port(s) from %2").arg(ports.size()).arg(args[0]));
    return Done;
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
