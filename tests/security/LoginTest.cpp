#include "security/Login.h"
#include "security/UserAdmin.h"
#include "support/ScratchProgramFolder.h"
#include "support/Users.h"

#include <gtest/gtest.h>

namespace corvane {
namespace {

using test::user;

UserStore storeWith(std::string supervisorPassword)
{
    UserStore store("");
    store.users = {user("SUPERVISOR", std::move(supervisorPassword), {}, 1), user("GUEST", ""),
        user("SMITH", "Secret", {4}), user("OPEN", ""), user("", "gone", {0})};
    store.SupervisorIndex = 0;
    store.GuestIndex = 1;
    return store;
}

struct ScriptedLogin : LoginUi {
    std::string result;
    int shown = 0;
    std::int16_t modeSeen = 0;
    void showChangeUser(LoginValues& values) override
    {
        ++shown;
        modeSeen = values.LoginMode;
        values.LoginResult = result;
    }
};

TEST(Login, StartUpPicksTheUser)
{
    struct Case {
        const char* name;
        std::string supervisorPassword;
        std::string lastUser;
        std::string answer;
        std::int16_t current;
        int asked;
    } const cases[] = {
        {"security off, nobody remembered: supervisor", "", "", "", 0, 0},
        {"security on, nobody remembered: guest", "s", "", "", 1, 0},
        {"remembered without a password: silently", "s", "OPEN", "", 3, 0},
        {"remembered with a password, answered", "s", "SMITH", "OK", 2, 1},
        {"remembered with a password, cancelled: guest", "", "SMITH", "CANCELLED", 1, 1},
    };
    for (const auto& c : cases) {
        UserStore store = storeWith(c.supervisorPassword);
        store.CurrentUser = -1;
        LoginValues values;
        ScriptedLogin ui;
        ui.result = c.answer;
        Initial_Login(store, c.lastUser, values, ui);
        EXPECT_EQ(store.CurrentUser, c.current) << c.name;
        EXPECT_EQ(ui.shown, c.asked) << c.name;
        EXPECT_EQ(ui.modeSeen, c.asked ? LoginModeStartUp : 0) << c.name;
    }
}

// A store without the entry a log-in falls to gives nobody, and nobody holds no right; the
// supervisor is the entry so marked, not the first one.
TEST(Login, NobodyWhenTheEntryIsMissing)
{
    struct NoPrompt : AccessUi {
        int asked = 0;
        TempUserAnswer askTemporaryUser() override
        {
            ++asked;
            return {false, true, {}, {}};
        }
        void showAccessNotAllowed() override { }
    };
    struct Case {
        const char* name;
        std::int16_t supervisor;
        std::int16_t guest;
        std::string lastUser;
    } const cases[] = {
        {"no guest, security on", 0, Nobody, ""},
        {"no guest, remembered user unknown", 0, Nobody, "JONES"},
        {"neither reserved user found", Nobody, Nobody, ""},
    };
    for (const auto& c : cases) {
        UserStore store = storeWith("s");
        store.SupervisorIndex = c.supervisor;
        store.GuestIndex = c.guest;
        LoginValues values;
        ScriptedLogin ui;
        Initial_Login(store, c.lastUser, values, ui);
        EXPECT_EQ(store.CurrentUser, Nobody) << c.name;
        NoPrompt prompt;
        for (const std::int16_t right : {AllRight, CommParmsRight})
            EXPECT_EQ(Check_Access(store, right, TrueValue, prompt), FalseValue) << c.name;
        EXPECT_EQ(prompt.asked, 2) << c.name << ": a temporary user may still allow it";
        EXPECT_FALSE(store.isSupervisor(store.CurrentUser)) << c.name;
    }

    // Security off, but the supervisor's entry unknown: nobody, not the first record.
    UserStore store = storeWith("");
    store.SupervisorIndex = Nobody;
    store.GuestIndex = Nobody;
    LoginValues values;
    ScriptedLogin ui;
    Initial_Login(store, "", values, ui);
    EXPECT_EQ(store.CurrentUser, Nobody);
}

TEST(Login, ChangeUserFormComparesWithoutRegardToCase)
{
    const UserStore store = storeWith("s");
    struct Case {
        const char* typedName;
        const char* typedPassword;
        LoginCheck expected;
        std::int16_t index;
    } const cases[] = {
        {"  smith ", "SECRET", LoginCheck::Ok, 2}, {"SMITH", " secret ", LoginCheck::Ok, 2},
        {"SMITH", "wrong", LoginCheck::InvalidPassword, 2}, {"JONES", "x", LoginCheck::InvalidUserName, -1},
        {"   ", "gone", LoginCheck::InvalidUserName, -1}, // a deleted entry is nobody
    };
    for (const auto& c : cases) {
        std::int16_t index = -1;
        EXPECT_EQ(checkLogin(store, c.typedName, c.typedPassword, index), c.expected) << c.typedName;
        if (c.expected != LoginCheck::InvalidUserName) {
            EXPECT_EQ(index, c.index) << c.typedName;
        }
    }
    EXPECT_TRUE(passwordConfirmed("NewOne", " newone "));
    EXPECT_FALSE(passwordConfirmed("NewOne", "newon"));
}

TEST(UserAdmin, ButtonsDuplicatesAndWarnings)
{
    UserStore store = storeWith("");
    EXPECT_TRUE(userButtonsFor(store, 0).modify);
    EXPECT_FALSE(userButtonsFor(store, 0).remove);
    EXPECT_FALSE(userButtonsFor(store, 1).modify);
    EXPECT_TRUE(userButtonsFor(store, 2).remove);

    EXPECT_TRUE(userNameTaken(store, " smith  "));
    EXPECT_FALSE(userNameTaken(store, "")); // deleted entries are skipped

    store.CurrentUser = 0;
    EXPECT_TRUE(needsSupervisorPasswordWarning(store, false, "pw", "")); // any entry, supervisor logged in
    EXPECT_FALSE(needsSupervisorPasswordWarning(store, true, "pw", "")); // adding
    EXPECT_FALSE(needsSupervisorPasswordWarning(store, false, "pw", "old"));
    EXPECT_FALSE(needsSupervisorPasswordWarning(store, false, "  ", ""));
    store.CurrentUser = 2;
    EXPECT_FALSE(needsSupervisorPasswordWarning(store, false, "pw", ""));

    EXPECT_FALSE(needsPasswordConfirmation(" SECRET ", "Secret"));
    EXPECT_TRUE(needsPasswordConfirmation("", "Secret"));
}

TEST(UserAdmin, NamesAndPasswordsAreCheckedWhenSet)
{
    const UserStore store = storeWith("boss");
    const std::string twenty(20, 'A');
    struct Case {
        const char* name;
        std::int16_t index; // whose password; Nobody when adding
        std::string typed;
        std::string current;
        bool removalAsked;
        std::optional<std::string> refused;
    } const cases[] = {
        {"twenty characters", 2, twenty, "Secret", false, std::nullopt},
        {"surrounding blanks are trimmed", 2, "  pw  ", "Secret", false, std::nullopt},
        {"twenty-one characters", 2, twenty + "A", "Secret", false, PasswordLimit},
        {"an inner blank", 2, "two words", "Secret", false, PasswordLimit},
        {"a NUL", 2, std::string("ab\0c", 4), "Secret", false, PasswordLimit},
        {"a control character", 2, "ab\tc", "Secret", false, PasswordLimit},
        {"a character past ASCII", 2, "M\xFCller", "Secret", false, PasswordLimit},
        {"the supervisor's removed", 0, "", "boss", true, SupervisorPasswordKept},
        {"the supervisor's removed by blanks", 0, "   ", "boss", false, SupervisorPasswordKept},
        {"another's removed unasked", 2, "", "Secret", false, PasswordKept},
        {"another's removed when asked", 2, "", "Secret", true, std::nullopt},
        {"none before, none after", 3, "", "", false, std::nullopt},
        {"a new user without one", Nobody, "", "", false, std::nullopt},
    };
    for (const auto& c : cases)
        EXPECT_EQ(refusedPassword(store, c.index, c.typed, c.current, c.removalAsked), c.refused) << c.name;

    const std::pair<std::string, bool> names[] = {{twenty, true}, {" SMITH ", true}, {twenty + "A", false},
        {"JOHN SMITH", false}, {"", false}, {"   ", false}, {std::string("A\0B", 3), false}, {"M\xDCLLER", false}};
    for (const auto& [name, storable] : names)
        EXPECT_EQ(refusedName(name), storable ? std::nullopt : std::optional(NameLimit)) << name;
    EXPECT_NE(PasswordLimit.find("20 characters at most, without blanks"), std::string::npos);
}

TEST(UserAdmin, NewUsersTakeFreedEntriesAndRightsOfOtherProgramsStay)
{
    UserStore store = storeWith("");
    EXPECT_EQ(takeFreeEntry(store), 4);
    store.users[4].UserName = "TAKEN";
    EXPECT_EQ(takeFreeEntry(store), 5);

    RightsList rights;
    Load_Rights_List(rights, "CVREMOTE");
    store.users[2].Rights[11] = 1; // a right of the host's, not shown here
    UpdateUserInfo(store, 2, "  SMITH JR ", " pw ", rights, {true, false});
    EXPECT_EQ(store.users[2].UserName, "SMITH JR");
    EXPECT_EQ(store.users[2].Password, "pw");
    EXPECT_EQ(store.users[2].Rights[0], 1);
    EXPECT_EQ(store.users[2].Rights[4], 0);
    EXPECT_EQ(store.users[2].Rights[11], 1);
    EXPECT_EQ(store.users[2].IsSupervisor, 0);
    UpdateUserInfo(store, 0, "SUPERVISOR", "", rights, {false, false});
    EXPECT_EQ(store.users[0].IsSupervisor, 1);
}

} // namespace
} // namespace corvane
