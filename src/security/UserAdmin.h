#pragma once

#include "security/Rights.h"
#include "security/UserStore.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

// The rules of the supervisor's user administration, without the forms.

// Modify and Delete by who is selected: the supervisor can be modified but not deleted, the
// guest neither, anybody else both.
struct UserButtons {
    bool modify = false;
    bool remove = false;
};
UserButtons userButtonsFor(const UserStore& store, std::int16_t index);

// Whether a user other than a deleted one already has the name, ignoring case and surrounding blanks.
bool userNameTaken(const UserStore& store, std::string_view typedName);

// The warning before a first password is given while the supervisor is logged in (whoever is
// being changed): a password typed, none when the form opened, a change rather than an add.
bool needsSupervisorPasswordWarning(
    const UserStore& store, bool adding, std::string_view typedPassword, std::string_view passwordAtOpen);
extern const std::string SupervisorPasswordWarning;

// Whether the password must be typed a second time: it differs, case aside, from the one the
// entry had when the form opened.
bool needsPasswordConfirmation(std::string_view typedPassword, std::string_view passwordAtOpen);

// What a user name or a password may hold to be stored as typed (surrounding blanks aside): at
// most the record's 20 bytes, each a printable ASCII character other than the blank. Loading
// drops every blank, a wider text would be cut, and other bytes may not scramble into a byte.
extern const std::string NameLimit; // "A user name holds 20 characters at most, without blanks ..."
extern const std::string PasswordLimit;
extern const std::string SupervisorPasswordKept;
extern const std::string PasswordKept;
bool storableText(std::string_view typed);

// Why the name cannot be stored, or nothing when it can; an empty one is refused.
std::optional<std::string> refusedName(std::string_view typedName);

// Why the new password of entry `index` cannot be stored, or nothing when it can. An empty one
// removes the password: never the supervisor's (that would switch security off), another user's
// only when `removalAsked` says so. `current` is the entry's password before the change.
std::optional<std::string> refusedPassword(const UserStore& store, std::int16_t index, std::string_view typedPassword,
    std::string_view current, bool removalAsked);

// The entry a new user goes into: the first deleted one, else a new entry at the end.
std::int16_t takeFreeEntry(UserStore& store);

// Copies the form into entry `index`: trimmed name and password, the supervisor mark by whose
// entry it is, and one rights byte per rights row; positions no row names keep their values.
void UpdateUserInfo(UserStore& store, std::int16_t index, std::string_view typedName, std::string_view typedPassword,
    const RightsList& rights, const std::vector<bool>& checked);

// A right's short name: its description up to any parenthesis, lower-cased, blanks as hyphens
// ("All (everything ...)" is "all", "Comm Parameters" is "comm-parameters").
std::string rightShortName(const RightsEntry& entry);

// "Are you sure you want to delete NAME?"
std::string deleteQuestion(std::string_view name);

} // namespace corvane
