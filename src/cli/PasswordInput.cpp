#include "cli/PasswordInput.h"

#include "security/Login.h"

#include <cstdio>
#include <iostream>

#ifndef _WIN32
#include <fcntl.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>
#endif

#include <cerrno>
#include <cstring>
#include <fstream>

namespace corvane::cli {
namespace {

bool fromTerminal()
{
#ifndef _WIN32
    return ::isatty(STDIN_FILENO) == 1;
#else
    return false;
#endif
}

// One line of standard input; at a terminal, asked for with `prompt` and not echoed.
std::optional<std::string> readLine(const char* prompt, bool terminal)
{
#ifndef _WIN32
    termios saved{};
    const bool hidden = terminal && ::tcgetattr(STDIN_FILENO, &saved) == 0;
    if (hidden) {
        termios quiet = saved;
        quiet.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &quiet);
    }
#endif
    if (terminal) {
        std::fputs(prompt, stderr);
        std::fflush(stderr);
    }
    std::string line;
    const bool read = static_cast<bool>(std::getline(std::cin, line));
#ifndef _WIN32
    if (hidden) {
        ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &saved);
        std::fputs("\n", stderr);
    }
#endif
    if (!read)
        return std::nullopt;
    if (!line.empty() && line.back() == '\r')
        line.pop_back();
    return line;
}

} // namespace

TypedPassword readNewPassword()
{
    const bool terminal = fromTerminal();
    std::optional<std::string> typed = readLine("New password: ", terminal);
    if (!typed || !terminal)
        return {typed, false};
    const std::optional<std::string> retyped = readLine("Retype the new password: ", terminal);
    if (!retyped || !passwordConfirmed(*typed, *retyped))
        return {std::nullopt, true};
    return {typed, false};
}

std::optional<std::string> askPassword(const std::string& prompt)
{
    if (!fromTerminal())
        return std::nullopt;
    return readLine(prompt.c_str(), true);
}

PasswordFromFile readPasswordFile(const std::string& path)
{
    const auto refused = [&path](const std::string& why) { return PasswordFromFile{std::nullopt, path + ": " + why}; };
#ifndef _WIN32
    const int fd = ::open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0)
        return refused(errno == ELOOP ? "is a symbolic link" : std::strerror(errno));
    struct Closer {
        int fd;
        ~Closer() { ::close(fd); }
    } closer{fd};
    struct stat st { };
    if (::fstat(fd, &st) != 0)
        return refused(std::strerror(errno));
    if (!S_ISREG(st.st_mode))
        return refused("is no regular file");
    if ((st.st_mode & (S_IRWXG | S_IRWXO)) != 0)
        return refused("others may read or write it: make it readable by its owner only (chmod 600)");
    if (st.st_size > PasswordFileLimit)
        return refused("holds more than " + std::to_string(PasswordFileLimit) + " bytes: no password file");
    std::string text(static_cast<std::size_t>(st.st_size), '\0');
    std::size_t got = 0;
    while (got < text.size()) {
        const ssize_t n = ::read(fd, text.data() + got, text.size() - got);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            break;
        got += static_cast<std::size_t>(n);
    }
    text.resize(got);
#else
    std::ifstream in(path, std::ios::binary);
    if (!in)
        return refused("cannot be read");
    std::string text(static_cast<std::size_t>(PasswordFileLimit) + 1, '\0');
    in.read(text.data(), static_cast<std::streamsize>(text.size()));
    text.resize(static_cast<std::size_t>(in.gcount()));
    if (static_cast<long long>(text.size()) > PasswordFileLimit)
        return refused("holds more than " + std::to_string(PasswordFileLimit) + " bytes: no password file");
#endif
    std::string line = text.substr(0, text.find('\n'));
    if (!line.empty() && line.back() == '\r')
        line.pop_back();
    std::fill(text.begin(), text.end(), '\0');
    return {line, {}};
}

} // namespace corvane::cli
