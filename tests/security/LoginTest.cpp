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
    UserStore store;
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
