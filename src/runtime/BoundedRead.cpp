#include "runtime/BoundedRead.h"

#include <cerrno>
#include <cstring>

#ifdef _WIN32
#include <filesystem>
#include <fstream>
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

} // namespace

BoundedRead readBoundedFile(const std::string& path, long long limit, bool followLinks)
{
    BoundedRead out;
#ifdef _WIN32
    std::error_code ec;
    const auto status = std::filesystem::status(path, ec);
    if (ec || !std::filesystem::exists(status)) {
        out.missing = true;
        out.refusal = "it is not there";
        return out;
    }
    if (!followLinks && std::filesystem::is_symlink(std::filesystem::symlink_status(path, ec))) {
        out.refusal = "it is a symbolic link";
        return out;
    }
    if (!std::filesystem::is_regular_file(status)) {
        out.refusal = "it is no regular file";
        return out;
    }
    std::ifstream in(path, std::ios::binary);
    out.bytes.resize(static_cast<std::size_t>(limit) + 1);
    in.read(out.bytes.data(), static_cast<std::streamsize>(out.bytes.size()));
    out.bytes.resize(static_cast<std::size_t>(in.gcount()));
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
    if (st.st_size > limit) {
        out.refusal = tooLarge(limit);
        return out;
    }
    // Read one byte past the limit, in case the file grows while it is read.
    out.bytes.resize(static_cast<std::size_t>(st.st_size) + 1);
    std::size_t got = 0;
    while (got < out.bytes.size()) {
        const ssize_t n = ::read(fd, out.bytes.data() + got, out.bytes.size() - got);
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0) {
            out.bytes.clear();
            out.refusal = std::strerror(errno);
            return out;
        }
        if (n == 0)
            break;
        got += static_cast<std::size_t>(n);
        if (static_cast<long long>(got) > limit)
            break;
    }
    out.bytes.resize(got);
#endif
    if (static_cast<long long>(out.bytes.size()) > limit) {
        out.bytes.clear();
        out.refusal = tooLarge(limit);
    }
    return out;
}

} // namespace corvane
