// The port table from the command line: status, watch, purge.
#include "cli/Cli.h"

#include "platform/Latin1.h"
#include "platform/ProgramTimer.h"
#include "shell/GridRules.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QDateTime>

#include <memory>

namespace corvane::cli {
namespace {

bool holdsText(const PortStatusRecord& r)
{
    return !(
        r.WorkstationName.empty() && r.FileName.empty() && r.DNC_ID.empty() && r.Status.empty() && r.ByteCount.empty());
}

// The byte count as a number; none (null) when the host's text is empty or no whole number.
QJsonValue byteCountJson(const std::string& text)
{
    bool ok = false;
    const qlonglong count = QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size())).toLongLong(&ok);
    return ok && count >= 0 ? QJsonValue(count) : QJsonValue(QJsonValue::Null);
}

QJsonObject rowJson(int row, const PortStatusRecord& r)
{
    return {{QStringLiteral("port"), row + 1}, {QStringLiteral("machine"), fromLatin1Bytes(r.WorkstationName)},
        {QStringLiteral("program"), fromLatin1Bytes(r.FileName)}, {QStringLiteral("id"), fromLatin1Bytes(r.DNC_ID)},
        {QStringLiteral("status"), fromLatin1Bytes(r.Status)}, {QStringLiteral("byteCount"), byteCountJson(r.ByteCount)}};
}

// The grid's columns, as wide as their widest text.
class Table {
public:
    void add(int row, const PortStatusRecord& r)
    {
        rows_.push_back({QString::number(row + 1), fromLatin1Bytes(r.WorkstationName), fromLatin1Bytes(r.FileName),
            fromLatin1Bytes(r.DNC_ID), fromLatin1Bytes(r.Status), fromLatin1Bytes(r.ByteCount)});
    }
    void print(const Client& client) const
    {
        std::vector<QStringList> all = {{QStringLiteral("Port"), QStringLiteral("Machine"), QStringLiteral("Program"),
            QStringLiteral("ID"), QStringLiteral("Status"), QStringLiteral("Byte Count")}};
        all.insert(all.end(), rows_.begin(), rows_.end());
        std::vector<qsizetype> widths(6, 0);
        for (const QStringList& row : all)
            for (std::size_t c = 0; c < 6; ++c)
                widths[c] = std::max(widths[c], row[static_cast<qsizetype>(c)].size());
        for (const QStringList& row : all) {
            QString line;
            for (std::size_t c = 0; c < 6; ++c) {
                const QString& cell = row[static_cast<qsizetype>(c)];
                const bool number = c == 0 || c == 5;
                line += number ? cell.rightJustified(widths[c]) : cell.leftJustified(widths[c]);
                if (c < 5)
                    line += QStringLiteral("  ");
            }
            while (line.endsWith(QLatin1Char(' ')))
                line.chop(1);
            client.print(line);
        }
    }
    bool empty() const { return rows_.empty(); }

private:
    std::vector<QStringList> rows_;
};

// Rows that changed since `shown`, printed and then remembered; a JSON line says when.
void printChanged(Client& client, std::vector<PortStatusRecord>& shown)
{
    const std::vector<PortStatusRecord>& now = client.session().portStatus();
    Table table;
    const QString time = QDateTime::currentDateTime().toOffsetFromUtc(QDateTime::currentDateTime().offsetFromUtc()).toString(Qt::ISODate);
    for (std::size_t row = 0; row < now.size(); ++row) {
        if (now[row] == shown[row])
            continue;
        shown[row] = now[row];
        if (client.options().json) {
            QJsonObject line = rowJson(static_cast<int>(row), now[row]);
            line.insert(QStringLiteral("time"), time);
            client.printJson(line);
        } else {
            table.add(static_cast<int>(row), now[row]);
        }
    }
    if (!table.empty())
        table.print(client);
}

// Connected for each refresh only, so that the host's one connection is free for a desktop
// terminal between them.
int pollEvery(Client& client, int intervalSeconds, std::optional<int> count, std::vector<PortStatusRecord>& shown)
{
    for (int polls = 0;;) {
        client.connect();
        printChanged(client, shown);
        client.session().cmdDisconnect_Click();
        client.drain();
        if (count && ++polls >= *count)
            return Done;
        client.pause("tmrPoll", intervalSeconds * 1000);
    }
}

} // namespace

int status(Client& client)
{
    if (!client.options().arguments.isEmpty())
        throw UsageError{QStringLiteral("status takes no arguments")};
    client.logIn();
    client.connect();
    const std::vector<PortStatusRecord>& rows = client.session().portStatus();
    if (client.options().json) {
        QJsonArray array;
        for (std::size_t row = 0; row < rows.size(); ++row)
            if (holdsText(rows[row]))
                array.append(rowJson(static_cast<int>(row), rows[row]));
        client.printJson(array);
    } else {
        Table table;
        for (std::size_t row = 0; row < rows.size(); ++row)
            if (holdsText(rows[row]))
                table.add(static_cast<int>(row), rows[row]);
        table.print(client);
    }
    return Done;
}

int watch(Client& client)
{
    const Options& o = client.options();
    if (!o.arguments.isEmpty())
        throw UsageError{QStringLiteral("watch takes --interval SECONDS, --count N and --poll, not \"%1\"")
                .arg(o.arguments[0])};
    const int intervalSeconds = numberOption(QStringLiteral("--interval"), o.value("--interval").value_or(QStringLiteral("5")), 1, 86400);
    std::optional<int> count;
    if (const auto given = o.value("--count"))
        count = numberOption(QStringLiteral("--count"), *given, 1, 1 << 30);
    client.logIn();
    std::vector<PortStatusRecord> shown(GridRows);
    if (o.has("--poll"))
        return pollEvery(client, intervalSeconds, count, shown);
    client.connect();
    printChanged(client, shown);
    int refreshes = 0;
    int answered = client.portTableChanges();

    const std::unique_ptr<ProgramTimer> refresh = client.timers().make("tmrWatchRefresh", intervalSeconds * 1000);
    QObject::connect(refresh.get(), &ProgramTimer::timeout, [&] {
        client.session().cmdRefresh_Click();
        ++refreshes;
    });
    refresh->start();
    // Every reply, asked for or pushed by the host, shows what changed, until --count or a signal.
    for (;;) {
        client.session().waitUntil([&] {
            return client.stopSignal() != 0 || client.portTableChanges() != answered || !client.session().connected()
                || client.loggedOff();
        });
        client.endIfStopped();
        if (client.loggedOff() || !client.session().connected()) {
            client.say("The connection to the host has ended.");
            return NoConnection;
        }
        if (client.portTableChanges() != answered) {
            answered = client.portTableChanges();
            printChanged(client, shown);
            if (count && refreshes >= *count)
                break;
        }
    }
    return Done;
}

int purge(Client& client)
{
    const QStringList& args = client.options().arguments;
    if (args.size() != 1)
        throw UsageError{QStringLiteral("purge takes one PORT")};
    const std::int16_t port = client.portArgument(args[0]);
    client.logIn();
    client.connect();
    HostSession& s = client.session();
    s.rowChanged(port - 1);
    s.cmdPurgeAndReset_Click();
    if (client.ftpRefused())
        return Usage;
    if (!client.options().yes) {
        client.say("Nothing was purged: answer Yes with --yes.");
        return Usage;
    }
    client.drain();
    return Done;
}

} // namespace corvane::cli
