#pragma once

#include <optional>
#include <string>

namespace corvane::cli {

// A new password typed at the terminal without echo and retyped, as the password form has it
// typed twice; from a pipe, its first line. Nothing when the two typed differ or nothing could
// be read.
struct TypedPassword {
    std::optional<std::string> password;
    bool mismatch = false;
};
TypedPassword readNewPassword();

// A password asked for at the terminal without echo; nothing when standard input is no terminal.
std::optional<std::string> askPassword(const std::string& prompt);

// The first line of a file that only its owner may read or write: a password kept for scripts
// out of the process list. Refused, with why, when it is no regular file (a link is not
// followed), anyone else may read or write it, or it holds more than PasswordFileLimit bytes.
inline constexpr long long PasswordFileLimit = 4096;
struct PasswordFromFile {
    std::optional<std::string> password;
    std::string refusal;
};
PasswordFromFile readPasswordFile(const std::string& path);

} // namespace corvane::cli
