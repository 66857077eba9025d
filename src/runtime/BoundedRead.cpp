#include "runtime/BoundedRead.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

#ifdef _WIN32
#include "runtime/WindowsFile.h"
#else
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace corvane {
namespace {

std::string tooLarge(long long limit)
{
    return "it holds more than " + std::to_string(limit) + " bytes";
}

// The bytes of a regular file of `size` bytes, up to one byte past the limit, in case the file
// grows while it is read; `readSome(buffer, room)` gives how many it read, 0 at the end, or the
// failure's errno negated.
template <typename ReadSome> void readUpTo(BoundedRead& out, long long size, long long limit, ReadSome readSome)
{
    if (size > limit) {
        out.refusal = tooLarge(limit);
        return;
    }
    out.bytes.resize(static_cast<std::size_t>(size) + 1);
    std::size_t got = 0;
    while (got < out.bytes.size()) {
        const long long n = readSome(out.bytes.data() + got, out.bytes.size() - got);
        if (n < 0) {
            out.bytes.clear();
            out.refusal = std::strerror(static_cast<int>(-n));
            return;
        }
        if (n == 0)
            break;
        got += static_cast<std::size_t>(n);
        if (static_cast<long long>(got) > limit)
            break;
    }
    out.bytes.resize(got);
}

} // namespace

BoundedRead readBoundedFile(const std::string& path, long long limit, bool followLinks)
{
    BoundedRead out;
#ifdef _WIN32
    // A device (NUL, CON, a pipe) or a folder opens too, and is refused by its kind.
    const windows::File file = windows::openFile(path, GENERIC_READ, OPEN_EXISTING, followLinks);
    if (!file.isOpen()) {
        const int error = windows::lastErrno();
        out.missing = error == ENOENT;
        out.refusal = std::strerror(error);
        return out;
    }
    windows::Kind kind{};
    if (const int error = windows::kindOf(file, kind)) {
        out.refusal = std::strerror(error);
        return out;
    }
    if (kind != windows::Kind::Regular) {
        out.refusal = kind == windows::Kind::Link ? "it is a symbolic link" : "it is no regular file";
        return out;
    }
    LARGE_INTEGER size{};
    if (!::GetFileSizeEx(file.get(), &size)) {
        out.refusal = std::strerror(windows::lastErrno());
        return out;
    }
    readUpTo(out, size.QuadPart, limit, [&](char* buffer, std::size_t room) -> long long {
        DWORD n = 0;
        if (!::ReadFile(file.get(), buffer, static_cast<DWORD>(std::min<std::size_t>(room, 1u << 30)), &n, nullptr))
            return -windows::lastErrno();
        return n;
    });
#else
    const int fd = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | (followLinks ? 0 : O_NOFOLLOW));
    if (fd < 0) {
        out.missing = errno == ENOENT;
        out.refusal = !followLinks && errno == ELOOP ? "it is a symbolic link" : std::strerror(errno);
        return out;
    }
    struct Closer {
        int fd;
        ~Closer() { ::close(fd); }
    } closer{fd};
    struct stat st { };
    if (::fstat(fd, &st) != 0) {
        out.refusal = std::strerror(errno);
        return out;
    }
    if (!S_ISREG(st.st_mode)) {
        out.refusal = "it is no regular file";
        return out;
    }
    out.mode = static_cast<unsigned>(st.st_mode & 07777);
    readUpTo(out, st.st_size, limit, [fd](char* buffer, std::size_t room) -> long long {
        for (;;) {
            const ssize_t n = ::read(fd, buffer, room);
            if (n >= 0 || errno != EINTR)
                return n < 0 ? -errno : n;
        }
    });
#endif
    if (static_cast<long long>(out.bytes.size()) > limit) {
        out.bytes.clear();
        out.refusal = tooLarge(limit);
    }
    return out;
}

} // namespace corvane
