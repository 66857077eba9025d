#include "session/ChangeRecord.h"

#include "platform/Latin1.h"
#include "runtime/ErrorLog.h"
#include "runtime/ProgramFolder.h"
#include "security/UserAdmin.h"
#include "session/HostConfiguration.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

#ifndef _WIN32
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace corvane {
namespace {

const QString Time = QStringLiteral("time");
const QString Kind = QStringLiteral("kind");
const QString Port = QStringLiteral("port");
const QString User = QStringLiteral("user");
const QString AuthorisedBy = QStringLiteral("authorisedBy");
const QString Outcome = QStringLiteral("outcome");
const QString Fields = QStringLiteral("fields");

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

// A line of ours: an object with the keys every reader relies on, its time readable.
bool wellFormed(const QJsonObject& entry)
{
    return entry.value(Kind).isString() && entry.value(Outcome).isString() && entry.value(Fields).isArray()
        && QDateTime::fromString(entry.value(Time).toString(), Qt::ISODateWithMs).isValid();
}

// Lines of a file, read a block at a time; a line longer than `max` is cut there and said to be.
class LineReader {
public:
    LineReader(std::FILE* file, std::size_t max)
        : file_(file)
        , max_(max)
    {
    }
    // The next line without its LF; false at the end of the file or on a read error.
    bool next(std::string& line, bool& tooLong)
    {
        line.clear();
        tooLong = false;
        bool any = false;
        for (;;) {
            if (at_ == size_) {
                size_ = std::fread(block_.get(), 1, BlockSize, file_);
                at_ = 0;
                if (size_ == 0)
                    return any;
            }
            any = true;
            const char* start = block_.get() + at_;
            const auto* end = static_cast<const char*>(std::memchr(start, '\n', size_ - at_));
            const std::size_t length = end ? static_cast<std::size_t>(end - start) : size_ - at_;
            const std::size_t room = max_ - line.size();
            tooLong = tooLong || length > room;
            line.append(start, std::min(length, room));
            at_ += length + (end ? 1 : 0);
            if (end)
                return true;
        }
    }

private:
    static constexpr std::size_t BlockSize = 64 * 1024;
    std::FILE* file_;
    std::size_t max_;
    std::unique_ptr<char[]> block_ = std::make_unique<char[]>(BlockSize);
    std::size_t at_ = 0;
    std::size_t size_ = 0;
};

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, FileCloser>;

// The record for reading: a regular file only, opened without following a link or waiting on a
// pipe. None, and no error, when there is no record yet.
File openRecord(const std::string& path, std::string& error)
{
#ifdef _WIN32
    errno = 0;
    File file(std::fopen(path.c_str(), "rb"));
    if (!file && errno != ENOENT)
        error = std::strerror(errno);
    return file;
#else
    const int fd = ::open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0) {
        if (errno != ENOENT)
            error = errno == ELOOP ? "it is a symbolic link" : std::strerror(errno);
        return nullptr;
    }
    struct stat status { };
    if (::fstat(fd, &status) != 0 || !S_ISREG(status.st_mode)) {
        ::close(fd);
        error = "it is not a regular file";
        return nullptr;
    }
    File file(::fdopen(fd, "rb"));
    if (!file) {
        error = std::strerror(errno);
        ::close(fd);
    }
    return file;
#endif
}

} // namespace

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
    QJsonArray fields;
    for (const RecordedField& field : entry.fields)
    {
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
    if (entry.kind == change_kind::Update) {
        line.insert(QStringLiteral("section"), orNull(entry.section));
        line.insert(QStringLiteral("sectionsSent"), entry.sectionsSent);
    }
    const QByteArray text = QJsonDocument(line).toJson(QJsonDocument::Compact);
    return appendLogLine(changeRecordPath(), std::string_view(text.constData(), static_cast<std::size_t>(text.size())));
}

void recordChange(const ChangeRecordEntry& entry)
{
    if (const int error = appendChangeRecord(entry)) {
        Log_Run_Time_Error(location::ChangeRecord, error);
        std::fprintf(stderr, "The change could not be recorded in %s: %s\n", changeRecordPath().c_str(),
            errorDescription(error).c_str());
    }
}

void recordLocalChange(std::string_view kind, const ChangeActor& actor, std::vector<RecordedField> fields)
{
    if (fields.empty())
        return;
    ChangeRecordEntry entry{kind, actor, {}, {}, {}, std::move(fields), change_outcome::Sent, {}, 0};
    recordChange(entry);
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

bool saveConfiguration(HostConfiguration& config, const ChangeActor& actor)
{
    // What the settings hold, not what the form's tables hold: a cancelled form leaves its
    // typing in the tables.
    HostConfiguration stored(config.registry());
    stored.load();
    if (!config.save())
        return false;
    recordLocalChange(change_kind::Config, actor, configurationFields(stored, config));
    return true;
}

bool ChangeFilter::matches(const QJsonObject& entry) const
{
    if (port && !(entry.value(Port).isDouble() && entry.value(Port).toInt() == *port))
        return false;
    if (user && entry.value(User).toString().compare(*user, Qt::CaseInsensitive) != 0
        && entry.value(AuthorisedBy).toString().compare(*user, Qt::CaseInsensitive) != 0)
        return false;
    const QDateTime time = QDateTime::fromString(entry.value(Time).toString(), Qt::ISODateWithMs);
    return (!since || time >= *since) && (!until || time <= *until);
}

ChangeRecordScan scanChangeRecord(const ChangeFilter& filter, const std::function<bool(const QJsonObject&)>& each)
{
    ChangeRecordScan scan;
    const File file = openRecord(changeRecordPath(), scan.error);
    if (!file)
        return scan;
    LineReader lines(file.get(), MaxChangeRecordLine);
    std::string line;
    bool tooLong = false;
    while (lines.next(line, tooLong)) {
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        if (line.empty() && !tooLong)
            continue;
        const QJsonDocument document
            = QJsonDocument::fromJson(QByteArray::fromRawData(line.data(), static_cast<qsizetype>(line.size())));
        if (tooLong || !document.isObject() || !wellFormed(document.object())) {
            ++scan.passedOver;
            continue;
        }
        if (filter.matches(document.object()) && !each(document.object()))
            break;
    }
    if (std::ferror(file.get()))
        scan.error = std::strerror(errno);
    return scan;
}

} // namespace corvane
