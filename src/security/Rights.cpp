#include "security/Rights.h"

#include <algorithm>

#include "runtime/RunTimeError.h"
#include "runtime/Text.h"

namespace corvane {

void Load_Rights_List(RightsList& list, std::string_view appKey)
{
    const std::string key = upperCase(appKey);
    if (key == "CORVANE") {
        list.rows = {
            {"All (everything except Supervisor Options)", 0},
            {"System Settings (Defaults, Comm Parameters, Machines)", 4},
            {"File Editing", 5},
            {"DNC Send Files", 6},
            {"DNC Receive Files", 11},
            {"View DNC Library", 7},
            {"Modify DNC Library", 9},
            {"View Parts and Operations", 12},
            {"Modify Parts and Operations", 13},
            {"LAN Manager (Create Cell, Receive File Admin on all Cells)", 8},
            {"Purge Send File History", 10},
            {"Receive File Administrator", 14},
            {"File Editor View And Print Only  (READ HELP BEFORE USING!!)", 15},
        };
    } else if (key == "CVREMOTE") {
        list.rows = {
            {"All (everything except Supervisor Options)", AllRight},
            {"Comm Parameters", CommParmsRight},
        };
    } else {
        return;
    }
    list.RightsCount = static_cast<std::int16_t>(list.rows.size());
}

bool Has_Right(const UserEntry& entry, std::int16_t right, bool supervisorByName)
{
    if (right < 0 || static_cast<std::size_t>(right) >= entry.Rights.size())
        raise(err::SubscriptOutOfRange);
    return (supervisorByName && upperCase(entry.UserName) == SupervisorName)
        || entry.Rights[static_cast<std::size_t>(right)] == 1 || entry.IsSupervisor == 1 || entry.Rights[AllRight] == 1;
}

Bool16 Check_Temp_User(const UserStore& store, std::int16_t right, std::string_view tempName,
    std::string_view tempPassword, AccessUi& ui, std::string* allowedBy)
{
    const std::string name = upperCase(tempName);
    for (const UserEntry& entry : store.users) {
        if (entry.UserName.empty())
            continue;
        if (upperCase(entry.UserName) == name && entry.Password == tempPassword && Has_Right(entry, right, false)) {
            if (allowedBy)
                *allowedBy = entry.UserName;
            return TrueValue;
        }
    }
    ui.showAccessNotAllowed();
    return FalseValue;
}

Bool16 Check_Access(
    const UserStore& store, std::int16_t right, Bool16 allowTempUser, AccessUi& ui, std::string* temporaryUser)
{
    if (temporaryUser)
        temporaryUser->clear();
    for (;;) {
        // Nobody logged in holds nothing, but a temporary user may still allow it.
        if (const UserEntry* current = store.liveUser(store.CurrentUser); current && Has_Right(*current, right, true))
            return TrueValue;
        if (!allowTempUser)
            return FalseValue;
        TempUserAnswer answer = ui.askTemporaryUser();
        if (answer.userChanged)
            continue;
        if (answer.cancelled)
            return FalseValue;
        const Bool16 allowed = Check_Temp_User(store, right, answer.name, answer.password, ui, temporaryUser);
        answer.name.clear();
        std::fill(answer.password.begin(), answer.password.end(), '\0'); // in no buffer once checked
        answer.password.clear();
        return allowed;
    }
}

} // namespace corvane
