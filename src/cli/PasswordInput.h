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

} // namespace corvane::cli
