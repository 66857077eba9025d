#pragma once

// Windows only: the few Win32 file calls that the whole-file write, the bounded read and the
// log's append share, so that each keeps the shape of its POSIX twin. Names are widened as
// std::filesystem widens them, so these calls and std::filesystem's agree on every path. Every
// handle is binary: Win32 never translates line ends.
#ifdef _WIN32

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <string>
#include <string_view>
#include <utility>

namespace corvane::windows {

// The errno a POSIX call would have given for the system's reason, so that both systems'
// failures reach the user in the same words and run-time error numbers.
inline int errnoOf(DWORD error)
{
    switch (error) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_DRIVE:
    case ERROR_BAD_NETPATH:
    case ERROR_BAD_NET_NAME:
        return ENOENT;
    case ERROR_ACCESS_DENIED:
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
        return EACCES;
    case ERROR_WRITE_PROTECT:
        return EROFS;
    case ERROR_FILE_EXISTS:
    case ERROR_ALREADY_EXISTS:
        return EEXIST;
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL:
        return ENOSPC;
    case ERROR_TOO_MANY_OPEN_FILES:
        return EMFILE;
    case ERROR_FILENAME_EXCED_RANGE:
        return ENAMETOOLONG;
    case ERROR_INVALID_NAME:
    case ERROR_BAD_PATHNAME:
        return EINVAL;
    case ERROR_NOT_ENOUGH_MEMORY:
    case ERROR_OUTOFMEMORY:
        return ENOMEM;
    default:
        return EIO;
    }
}

inline int lastErrno()
{
    return errnoOf(::GetLastError());
}

// A handle that closes when it goes; closing it early gives the failure, or 0.
class File {
public:
    explicit File(HANDLE handle) : handle_(handle) { }
    File(File&& other) noexcept : handle_(std::exchange(other.handle_, INVALID_HANDLE_VALUE)) { }
    File& operator=(File&& other) noexcept
    {
        if (this != &other) {
            close();
            handle_ = std::exchange(other.handle_, INVALID_HANDLE_VALUE);
        }
        return *this;
    }
    ~File() { close(); }

    bool isOpen() const { return handle_ != INVALID_HANDLE_VALUE; }
    HANDLE get() const { return handle_; }
    int close()
    {
        if (!isOpen())
            return 0;
        const bool closed = ::CloseHandle(handle_) != 0;
        handle_ = INVALID_HANDLE_VALUE;
        return closed ? 0 : lastErrno();
    }

private:
    HANDLE handle_;
};

// Opens `path` as CreateFileW does, folders too (as POSIX open does), and at a link or junction
// the link itself unless `followLinks`: what kindOf then finds is the caller's to refuse.
inline File openFile(const std::string& path, DWORD access, DWORD disposition, bool followLinks = false)
{
    const DWORD flags = FILE_ATTRIBUTE_NORMAL | FILE_FLAG_BACKUP_SEMANTICS | (followLinks ? 0 : FILE_FLAG_OPEN_REPARSE_POINT);
    return File(::CreateFileW(std::filesystem::path(path).c_str(), access,
        FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, disposition, flags, nullptr));
}

enum class Kind { Regular, Link, Other };

// What an open handle stands for: a regular file on a disk, a link (or junction), or anything
// else (a folder, a device such as NUL or CON, a pipe). 0, or the failure.
inline int kindOf(const File& file, Kind& kind)
{
    if (::GetFileType(file.get()) != FILE_TYPE_DISK) {
        kind = Kind::Other;
        return 0;
    }
    BY_HANDLE_FILE_INFORMATION info{};
    if (!::GetFileInformationByHandle(file.get(), &info))
        return lastErrno();
    kind = (info.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) ? Kind::Link
        : (info.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)       ? Kind::Other
                                                                   : Kind::Regular;
    return 0;
}

// The offset that writes at the file's end, as O_APPEND does.
inline constexpr unsigned long long AtTheEnd = ~0ULL;

// All of `bytes` from `offset` on, through short writes; 0, or the failure (ENOSPC when the
// disk took no more).
inline int writeAll(const File& file, std::string_view bytes, unsigned long long offset)
{
    for (std::size_t done = 0; done < bytes.size();) {
        const auto chunk = static_cast<DWORD>(std::min<std::size_t>(bytes.size() - done, 1u << 30));
        const unsigned long long at = offset == AtTheEnd ? AtTheEnd : offset + done;
        OVERLAPPED where{};
        where.Offset = static_cast<DWORD>(at & 0xFFFFFFFFu);
        where.OffsetHigh = static_cast<DWORD>(at >> 32);
        DWORD written = 0;
        if (!::WriteFile(file.get(), bytes.data() + done, chunk, &written, &where))
            return lastErrno();
        if (written == 0)
            return ENOSPC;
        done += written;
    }
    return 0;
}

} // namespace corvane::windows

#endif
