#pragma once

#include "security/UserStore.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace corvane {

// frmChangeUser's modes: the start-up password request, or a change of user.
inline constexpr std::int16_t LoginModeStartUp = 1;
inline constexpr std::int16_t LoginModeChangeUser = 2;

inline constexpr std::string_view LoginOk = "OK";
inline constexpr std::string_view LoginCancelled = "CANCELLED";

// The values the log-in forms hand to their callers.
struct LoginValues {
    std::int16_t LoginMode = LoginModeStartUp;
    std::int16_t LoginUser = 0;
    std::string LoginResult;
    std::string LastUserName;
};

// Shows frmChangeUser modally with LoginMode and LoginUser set; fills LoginResult (and LoginUser
// on "OK").
class LoginUi {
public:
    virtual ~LoginUi() = default;
    virtual void showChangeUser(LoginValues& values) = 0;
};

// Start-up: the remembered user when found (asked for the password when it has one; a cancel
// falls to the guest), else the supervisor while security is not activated (its password is
// empty), else the guest; nobody (no rights) when the store has no such entry. `lastUser` is the
// registry's "Last User" value.
void Initial_Login(UserStore& store, std::string_view lastUser, LoginValues& values, LoginUi& ui);

// frmChangeUser's check of what was typed: both trimmed and upper-cased, the first entry of that
// name decides. Deleted entries (empty names) are skipped.
enum class LoginCheck { Ok, InvalidUserName, InvalidPassword };
LoginCheck checkLogin(
    const UserStore& store, std::string_view typedName, std::string_view typedPassword, std::int16_t& index);

// frmPassword: the retyped password, trimmed, matches the new one without regard to case.
bool passwordConfirmed(std::string_view newPassword, std::string_view retyped);

} // namespace corvane
