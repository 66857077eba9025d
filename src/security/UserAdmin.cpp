#include "security/UserAdmin.h"

#include "runtime/Text.h"

#include <algorithm>
#include <cctype>

namespace corvane {

UserButtons userButtonsFor(const UserStore& store, std::int16_t index)
{
    if (store.isSupervisor(index))
        return {true, false};
    if (index == store.GuestIndex)
        return {false, false};
    return {true, true};
}

bool userNameTaken(const UserStore& store, std::string_view typedName)
{
    const std::string name = upperCase(trimBlanks(typedName));
    for (const UserEntry& entry : store.users)
        if (!entry.UserName.empty() && upperCase(entry.UserName) == name)
            return true;
    return false;
}

bool needsSupervisorPasswordWarning(
    const UserStore& store, bool adding, std::string_view typedPassword, std::string_view passwordAtOpen)
{
    return !trimBlanks(typedPassword).empty() && passwordAtOpen.empty() && !adding
        && store.isSupervisor(store.CurrentUser);
}

const std::string SupervisorPasswordWarning
    = "WARNING!!!\r\n"
      "\r\n"
      "Entering a Supervisor Password automatically and permanently activates the program's security features.\r\n"
      "Since security clearance will then be required to access most, if not all, of this program's operations, "
      "you should be sure that you understand the security options before continuing.\r\n"
      "\r\n"
      "Are you sure you want to continue?";

bool needsPasswordConfirmation(std::string_view typedPassword, std::string_view passwordAtOpen)
{
    return upperCase(trimBlanks(typedPassword)) != upperCase(passwordAtOpen);
}

const std::string NameLimit = "A user name holds " + std::to_string(UserFieldLength)
    + " characters at most, without blanks: letters, digits and ASCII signs.";
const std::string PasswordLimit = "A password holds " + std::to_string(UserFieldLength)
    + " characters at most, without blanks: letters, digits and ASCII signs.";
const std::string SupervisorPasswordKept
    = "The supervisor's password can be changed but not removed: security stays activated.";
const std::string PasswordKept = "The password was not removed.";

bool storableText(std::string_view typed)
{
    const std::string_view text = trimBlanks(typed);
    return text.size() <= UserFieldLength
        && std::all_of(text.begin(), text.end(), [](char c) { return c > ' ' && c <= '~'; });
}

std::optional<std::string> refusedName(std::string_view typedName)
{
    if (trimBlanks(typedName).empty() || !storableText(typedName))
        return NameLimit;
    return std::nullopt;
}

std::optional<std::string> refusedPassword(const UserStore& store, std::int16_t index, std::string_view typedPassword,
    std::string_view current, bool removalAsked)
{
    if (!storableText(typedPassword))
        return PasswordLimit;
    if (!trimBlanks(typedPassword).empty() || current.empty())
        return std::nullopt;
    if (store.isSupervisor(index))
        return SupervisorPasswordKept;
    if (!removalAsked)
        return PasswordKept;
    return std::nullopt;
}

std::int16_t takeFreeEntry(UserStore& store)
{
    for (std::int16_t i = 0; i < store.count(); ++i)
        if (store.users[static_cast<std::size_t>(i)].UserName.empty())
            return i;
    store.users.emplace_back();
    return static_cast<std::int16_t>(store.count() - 1);
}

void UpdateUserInfo(UserStore& store, std::int16_t index, std::string_view typedName, std::string_view typedPassword,
    const RightsList& rights, const std::vector<bool>& checked)
{
    UserEntry& entry = store.user(index);
    entry.UserName = std::string(trimBlanks(typedName));
    entry.Password = std::string(trimBlanks(typedPassword));
    entry.IsSupervisor = index == store.SupervisorIndex ? 1 : 0;
    for (std::size_t row = 0; row < rights.rows.size() && row < checked.size(); ++row)
        entry.Rights.at(static_cast<std::size_t>(rights.rows[row].RightIndex)) = checked[row] ? 1 : 0;
}

std::string rightShortName(const RightsEntry& entry)
{
    std::string name = entry.Description.substr(0, entry.Description.find(" ("));
    for (char& c : name)
        c = c == ' ' ? '-' : static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return name;
}

std::string deleteQuestion(std::string_view name)
{
    return "Are you sure you want to delete " + std::string(name) + "?";
}

} // namespace corvane
