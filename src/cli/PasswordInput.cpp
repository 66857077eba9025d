#include "cli/PasswordInput.h"

#include "runtime/BoundedRead.h"
#include "security/Login.h"

#include <cstdio>
#include <iostream>

#ifndef _WIN32
#include <termios.h>
#include <unistd.h>
#endif

#include <algorithm>

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
    BoundedRead read = readBoundedFile(path, PasswordFileLimit, false);
    if (read.refusal.empty() && (read.mode & 077) != 0)
        read.refusal = "others may read or write it: make it readable by its owner only (chmod 600)";
    if (!read.refusal.empty()) {
        std::fill(read.bytes.begin(), read.bytes.end(), '\0');
        return {std::nullopt, path + ": " + read.refusal};
    }
    std::string line = read.bytes.substr(0, read.bytes.find('\n'));
    if (!line.empty() && line.back() == '\r')
        line.pop_back();
    std::fill(read.bytes.begin(), read.bytes.end(), '\0');
    return {line, {}};
}

} // namespace corvane::cli
