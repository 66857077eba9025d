#include "security/Login.h"

#include "runtime/Text.h"

namespace corvane {

void Initial_Login(UserStore& store, std::string_view lastUser, LoginValues& values, LoginUi& ui)
{
    std::int16_t found = Nobody;
    if (!lastUser.empty() && lastUser != "Error") {
        values.LastUserName = std::string(lastUser);
        std::int16_t index = 0;
        if (store.Find_User(lastUser, index))
            found = index;
    }

    if (found >= 0) {
        if (store.user(found).Password.empty()) {
            store.CurrentUser = found;
            return;
        }
        values.LoginMode = LoginModeStartUp;
        values.LoginUser = found;
        ui.showChangeUser(values);
        if (values.LoginResult != LoginCancelled) {
            store.CurrentUser = values.LoginUser;
            return;
        }
    } else if (const UserEntry* supervisor = store.liveUser(store.SupervisorIndex);
               supervisor && supervisor->Password.empty()) {
        store.CurrentUser = store.SupervisorIndex;
        return;
    }
    // Nobody, with no rights at all, when the store has no guest.
    store.CurrentUser = store.liveUser(store.GuestIndex) ? store.GuestIndex : Nobody;
}

LoginCheck checkLogin(
    const UserStore& store, std::string_view typedName, std::string_view typedPassword, std::int16_t& index)
{
    const std::string name = upperCase(trimBlanks(typedName));
    const std::string password = upperCase(trimBlanks(typedPassword));
    for (index = 0; index < store.count(); ++index) {
        const UserEntry& entry = store.users[static_cast<std::size_t>(index)];
        if (entry.UserName.empty() || upperCase(entry.UserName) != name)
            continue;
        return upperCase(entry.Password) == password ? LoginCheck::Ok : LoginCheck::InvalidPassword;
    }
    return LoginCheck::InvalidUserName;
}

bool passwordConfirmed(std::string_view newPassword, std::string_view retyped)
{
    return upperCase(newPassword) == upperCase(trimBlanks(retyped));
}

} // namespace corvane
