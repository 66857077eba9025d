#pragma once

#include "runtime/Convert.h"
#include "security/UserStore.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

// The rights an application shows to the supervisor: a description and the position in every
// user's rights bytes it stands for. Positions are shared by the whole family of programs.
struct RightsEntry {
    std::string Description;
    std::int16_t RightIndex = 0;
    std::int16_t Reserved = 0; // always 0, read by nothing

    bool operator==(const RightsEntry&) const = default;
};

struct RightsList {
    std::vector<RightsEntry> rows;
    std::int16_t RightsCount = 0;
};

inline constexpr std::int16_t AllRight = 0;
inline constexpr std::int16_t CommParmsRight = 4;

// Fills the list for "CVREMOTE" (this program) or "CORVANE" (the host), compared upper-cased;
// any other key changes nothing.
void Load_Rights_List(RightsList& list, std::string_view appKey);

// Whether the entry holds right r: the right itself, the supervisor mark or "All"; and, for the
// logged-in user only, the name SUPERVISOR in any case. A position outside 0-100 raises
// "Subscript out of range".
bool Has_Right(const UserEntry& entry, std::int16_t right, bool supervisorByName);

// What the temporary-user prompt reports.
struct TempUserAnswer {
    bool userChanged = false; // the logged-in user was changed there
    bool cancelled = false;
    std::string name; // as typed, untrimmed
    std::string password;
};

// What a refused access check says, in a box of this title on the desktop.
inline constexpr std::string_view AccessNotAllowed = "No access to the selected function.";
inline constexpr std::string_view AccessNotAllowedTitle = "Access Not Allowed";

// The prompts an access check may need; the desktop program answers them with its forms.
class AccessUi {
public:
    virtual ~AccessUi() = default;
    virtual TempUserAnswer askTemporaryUser() = 0;
    // AccessNotAllowed, titled AccessNotAllowedTitle.
    virtual void showAccessNotAllowed() = 0;
};

// Whether a temporary user may do this one thing: the first entry whose name matches upper-cased
// and whose password matches exactly (case counts, no trimming) and that holds the right. A
// matching entry without the right does not end the search. A refusal is shown. `allowedBy`, when
// given, gets the name of the entry that allowed it.
Bool16 Check_Temp_User(const UserStore& store, std::int16_t right, std::string_view tempName,
    std::string_view tempPassword, AccessUi& ui, std::string* allowedBy = nullptr);

// Whether the current user may go on; when not and a temporary user is allowed, asks for one.
// Refusals without a temporary user, and a cancelled prompt, are silent. `temporaryUser`, when
// given, gets the name of the temporary user who allowed it, and is left empty when the current
// user's own rights did.
Bool16 Check_Access(const UserStore& store, std::int16_t right, Bool16 allowTempUser, AccessUi& ui,
    std::string* temporaryUser = nullptr);

} // namespace corvane
