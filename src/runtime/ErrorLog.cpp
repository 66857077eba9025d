#include "runtime/ErrorLog.h"

#include "runtime/DateTimeText.h"
#include "runtime/RunTimeError.h"

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>

#ifdef _WIN32
#include "runtime/WindowsFile.h"
#else
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace corvane {

namespace {

// A line without its date and time: what tells one trapped error from another.
std::string errorLogKey(int location, int errorNumber)
{
    std::string number = std::to_string(location);
    if (number.size() < 3)
        number.insert(0, 3 - number.size(), '0');
    return "Error Location " + number + " Err = " + std::to_string(errorNumber);
}

} // namespace

std::string errorLogLine(Logs& logs, int location, int errorNumber)
{
    return errorLogKey(location, errorNumber) + " " + logs.nowText();
}

#ifndef _WIN32
namespace {

void shareWithTheFoldersGroup(int fd, const std::string& path)
{
    const std::size_t slash = path.find_last_of('/');
    const std::string folder = slash == std::string::npos ? "." : slash == 0 ? "/" : path.substr(0, slash);
    struct stat folderStatus {};
    struct stat fileStatus {};
    if (::stat(folder.c_str(), &folderStatus) == 0 && (folderStatus.st_mode & S_ISGID) != 0
        && ::fstat(fd, &fileStatus) == 0)
        ::fchmod(fd, (fileStatus.st_mode & 07777) | S_IRGRP | S_IWGRP);
}

} // namespace
#endif

int appendLogLine(const std::string& path, std::string_view line)
{
    std::string whole;
    whole.reserve(line.size() + 2);
    whole.append(line).append("\r\n");
#ifdef _WIN32
    // Never through a link; appending only, so that the line goes at the end in one write, as
    // O_APPEND has it, and two programs appending at once cannot interleave their lines.
    windows::File file = windows::openFile(path, FILE_APPEND_DATA, OPEN_ALWAYS);
    if (!file.isOpen())
        return fileErrorFromErrno(windows::lastErrno());
    windows::Kind kind{};
    int error = windows::kindOf(file, kind);
    if (!error && kind != windows::Kind::Regular)
        error = kind == windows::Kind::Link ? ELOOP : EISDIR;
    if (!error)
        error = windows::writeAll(file, whole, windows::AtTheEnd);
    const int closed = file.close();
    return error || closed ? fileErrorFromErrno(error ? error : closed) : 0;
#else
    // Never through a link; the line goes in one write, so that two programs appending at once
    // cannot interleave their lines. A file this call makes in a folder shared by a group (its
    // set-group-ID bit: the machine's log folder) is the group's to append to as well.
    constexpr int Flags = O_WRONLY | O_APPEND | O_NOFOLLOW | O_CLOEXEC;
    int fd = ::open(path.c_str(), Flags);
    if (fd < 0 && errno == ENOENT) {
        fd = ::open(path.c_str(), Flags | O_CREAT | O_EXCL, 0666);
        if (fd < 0 && errno == EEXIST)
            fd = ::open(path.c_str(), Flags); // another program made it meanwhile
        else if (fd >= 0)
            shareWithTheFoldersGroup(fd, path);
    }
    if (fd < 0)
        return fileErrorFromErrno(errno);
    ssize_t written;
    do
        written = ::write(fd, whole.data(), whole.size());
    while (written < 0 && errno == EINTR);
    const int writeErrno = written < 0 ? errno : ENOSPC; // a short write: the disk took no more
    const bool closed = ::close(fd) == 0;
    if (written != static_cast<ssize_t>(whole.size()))
        return fileErrorFromErrno(writeErrno);
    return closed ? 0 : fileErrorFromErrno(errno);
#endif
}

namespace {

long long fileSize(const std::string& path)
{
    std::error_code ec;
    const auto size = std::filesystem::file_size(path, ec);
    return ec ? -1 : static_cast<long long>(size);
}

} // namespace

// The repeats are counted against the last line this program wrote; a log that someone else
// wrote to or took away in the meantime starts afresh.
void Log_Run_Time_Error(Logs& logs, int location, int errorNumber)
{
    try {
        const std::string path = logs.file(ErrorLogName);
        const bool files = logs.toFiles();
        long long size = files ? fileSize(path) : -1;
        if (files && size > ErrorLogRotateAbove) {
            std::error_code ec;
            std::filesystem::rename(path, logs.file(PreviousErrorLogName), ec);
            size = fileSize(path);
        }
        const std::string key = errorLogKey(location, errorNumber);
        Logs::Repeats& r = logs.repeats();
        const bool ours = size == r.sizeAfter;
        if (ours && key == r.key && r.count + 1 < ErrorLogRepeatsCounted) {
            ++r.count;
            return;
        }
        if (ours && r.count > 0)
            logs.append(path,
                r.key + " repeated " + std::to_string(key == r.key ? r.count + 1 : r.count) + " more times "
                    + logs.nowText());
        if (!(ours && key == r.key))
            logs.append(path, key + " " + logs.nowText());
        r = {key, files ? fileSize(path) : -1, 0};
    } catch (...) {
        // The log is the last resort: a failure to write it is not reported anywhere.
    }
}

} // namespace corvane
