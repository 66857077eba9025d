#include "runtime/WholeFile.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <random>

#ifdef _WIN32
#include "runtime/WindowsFile.h"
#else
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace corvane {
namespace {

// Windows takes either slash between a folder and its file.
#ifdef _WIN32
constexpr const char* Separators = "/\\";
#else
constexpr const char* Separators = "/";
#endif

std::string systemMessage(int error)
{
    return std::strerror(error);
}

std::string folderOf(const std::string& path)
{
    const std::size_t slash = path.find_last_of(Separators);
    if (slash == std::string::npos)
        return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

// A name beside the target that no one else would pick: hidden, and unlikely to be taken.
std::string temporaryName(const std::string& path)
{
    static std::mt19937_64 random{std::random_device{}()};
    const std::size_t slash = path.find_last_of(Separators);
    const std::string name = slash == std::string::npos ? path : path.substr(slash + 1);
    char suffix[17];
    std::snprintf(suffix, sizeof suffix, "%016llx", static_cast<unsigned long long>(random()));
    return folderOf(path) + "/." + name + "." + suffix + ".tmp";
}

} // namespace

#ifdef _WIN32

namespace {

// What the path holds, without following a link: Missing (nothing there), a kind, or a failure.
int kindAt(const std::string& path, windows::Kind& kind, bool& missing)
{
    missing = false;
    const windows::File file = windows::openFile(path, 0, OPEN_EXISTING);
    if (!file.isOpen()) {
        const int error = windows::lastErrno();
        missing = error == ENOENT;
        return missing ? 0 : error;
    }
    return windows::kindOf(file, kind);
}

std::string refusalOf(windows::Kind kind)
{
    if (kind == windows::Kind::Link)
        return "it is a symbolic link (it is neither followed nor replaced)";
    return kind == windows::Kind::Regular ? std::string() : "it is not a regular file";
}

// Unless `error` came first: the bytes written from the start and flushed to the disk; the
// handle closed in any case. The first failure, or 0.
int finishWrite(windows::File& file, std::string_view bytes, int error)
{
    if (!error)
        error = windows::writeAll(file, bytes, 0);
    if (!error && !::FlushFileBuffers(file.get()))
        error = windows::lastErrno();
    const int closed = file.close();
    return error ? error : closed;
}

// The bytes written over the file itself, opened without following a link.
int rewriteInPlace(const std::string& path, std::string_view bytes)
{
    windows::File file = windows::openFile(path, GENERIC_WRITE, OPEN_EXISTING);
    if (!file.isOpen())
        return windows::lastErrno();
    windows::Kind kind{};
    int error = windows::kindOf(file, kind);
    if (!error && kind != windows::Kind::Regular)
        error = NoRegularFile;
    return finishWrite(file, bytes, error);
}

} // namespace

std::string wholeFileRefusal(const std::string& path)
{
    windows::Kind kind{};
    bool missing = false;
    // Nothing there, or nothing to tell until the write says what it met.
    return kindAt(path, kind, missing) == 0 && !missing ? refusalOf(kind) : std::string();
}

// Windows has no mode, owner and group to carry over: a new file takes the permissions its
// folder passes on, as the file it replaces did, so `way` decides only where no new file can be
// made beside the old one (then the old one is rewritten in place when its owner is kept).
int putWholeFile(const std::string& path, std::string_view bytes, const WholeFileWay& way)
{
    windows::Kind kind{};
    bool missing = false;
    if (const int error = kindAt(path, kind, missing))
        return error;
    if (!missing && !refusalOf(kind).empty())
        return NoRegularFile;

    // CREATE_NEW never opens what is there, a link included: a name taken is passed over.
    std::string temporary;
    windows::File file(INVALID_HANDLE_VALUE);
    for (int attempt = 0; !file.isOpen() && attempt < 16; ++attempt) {
        temporary = temporaryName(path);
        file = windows::openFile(temporary, GENERIC_WRITE, CREATE_NEW);
        const int error = file.isOpen() ? 0 : windows::lastErrno();
        if (error && error != EEXIST) {
            if (way.keepOwner && !missing && (error == EACCES || error == EROFS))
                return rewriteInPlace(path, bytes);
            return error;
        }
    }
    if (!file.isOpen())
        return EEXIST;

    int error = finishWrite(file, bytes, 0);
    // Replaces the old file in one step, and is on the disk when it returns.
    if (!error && !::MoveFileExW(std::filesystem::path(temporary).c_str(), std::filesystem::path(path).c_str(),
            MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH))
        error = windows::lastErrno();
    if (error)
        ::DeleteFileW(std::filesystem::path(temporary).c_str());
    return error;
}

#else

namespace {

std::string refusalOf(const struct stat& status)
{
    if (S_ISLNK(status.st_mode))
        return "it is a symbolic link (it is neither followed nor replaced)";
    return S_ISREG(status.st_mode) ? std::string() : "it is not a regular file";
}

} // namespace

namespace {

// All of `bytes` to the descriptor from `offset` on, through interruptions and short writes;
// 0, or the errno of the failure (ENOSPC when the disk took no more).
int writeAllAt(int fd, std::string_view bytes, long long offset)
{
    for (std::size_t done = 0; done < bytes.size();) {
        const ssize_t n = ::pwrite(fd, bytes.data() + done, bytes.size() - done, static_cast<off_t>(offset + done));
        if (n > 0)
            done += static_cast<std::size_t>(n);
        else if (n == 0)
            return ENOSPC;
        else if (errno != EINTR)
            return errno;
    }
    return 0;
}

// Unless `error` came first: the bytes written, synced to the disk; the descriptor closed in any
// case. The first failure, or 0.
int finishWrite(int fd, std::string_view bytes, int error)
{
    if (!error)
        error = writeAllAt(fd, bytes, 0);
    if (!error && ::fsync(fd) != 0)
        error = errno;
    if (::close(fd) != 0 && !error)
        error = errno;
    return error;
}

// The bytes written over the file itself, through a descriptor that follows no link.
int rewriteInPlace(const std::string& path, std::string_view bytes)
{
    const int fd = ::open(path.c_str(), O_WRONLY | O_NOFOLLOW | O_CLOEXEC);
    if (fd < 0)
        return errno == ELOOP ? NoRegularFile : errno;
    struct stat st { };
    return finishWrite(fd, bytes, ::fstat(fd, &st) != 0 ? errno : S_ISREG(st.st_mode) ? 0 : NoRegularFile);
}

} // namespace

std::string wholeFileRefusal(const std::string& path)
{
    struct stat status { };
    // Nothing there, or nothing to tell until the write says what it met.
    return ::lstat(path.c_str(), &status) == 0 ? refusalOf(status) : std::string();
}

int putWholeFile(const std::string& path, std::string_view bytes, const WholeFileWay& way)
{
    struct stat old { };
    const bool hadOld = ::lstat(path.c_str(), &old) == 0;
    if (!hadOld && errno != ENOENT)
        return errno;
    if (hadOld && !refusalOf(old).empty())
        return NoRegularFile;

    // O_EXCL never opens what is there, a link included: a name taken is passed over.
    std::string temporary;
    int fd = -1;
    for (int attempt = 0; fd < 0 && attempt < 16; ++attempt) {
        temporary = temporaryName(path);
        fd = ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
            hadOld || way.exactNewMode ? 0600 : way.newMode);
        if (fd < 0 && errno != EEXIST) {
            if (way.keepOwner && hadOld && (errno == EACCES || errno == EPERM || errno == EROFS))
                return rewriteInPlace(path, bytes);
            return errno;
        }
    }
    if (fd < 0)
        return EEXIST;

    int error = 0;
    if (hadOld) {
        // The owner as before where this process may give it (root), else at least the group
        // where this user may; the mode as before in any case.
        if (!(way.keepOwner && ::fchown(fd, old.st_uid, old.st_gid) == 0)) {
            if (way.keepOwner && old.st_uid != ::geteuid()) {
                ::close(fd);
                ::unlink(temporary.c_str());
                return rewriteInPlace(path, bytes);
            }
            [[maybe_unused]] const int grouped = ::fchown(fd, static_cast<uid_t>(-1), old.st_gid);
        }
        if (::fchmod(fd, old.st_mode & 07777) != 0)
            error = errno;
    } else if (way.exactNewMode && ::fchmod(fd, way.newMode) != 0) {
        error = errno;
    }
    error = finishWrite(fd, bytes, error);
    if (!error && ::rename(temporary.c_str(), path.c_str()) != 0)
        error = errno;
    if (error) {
        ::unlink(temporary.c_str());
        return error;
    }
    // The rename itself reaches the disk with its folder; a folder that cannot be synced is no
    // failure of the write.
    if (const int folder = ::open(folderOf(path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); folder >= 0) {
        ::fsync(folder);
        ::close(folder);
    }
    return 0;
}

#endif

std::string writeWholeFile(const std::string& path, std::string_view bytes)
{
    if (std::string refusal = wholeFileRefusal(path); !refusal.empty())
        return refusal;
    const int error = putWholeFile(path, bytes, {});
    if (error == NoRegularFile)
        return "it is not a regular file";
    return error ? systemMessage(error) : std::string();
}

} // namespace corvane
