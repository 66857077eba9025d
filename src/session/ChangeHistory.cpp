// Reading the record of changes: its well-formed lines, filtered, oldest first.
#include "session/ChangeRecord.h"

#include "session/ChangeRecordKeys.h"

#include <QDateTime>
#include <QJsonDocument>

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

using namespace change_keys;

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

ChangeRecordScan scanChangeRecord(
    const Logs& logs, const ChangeFilter& filter, const std::function<bool(const QJsonObject&)>& each)
{
    ChangeRecordScan scan;
    const File file = openRecord(changeRecordPath(logs), scan.error);
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
