#include "runtime/Text.h"
#include "security/Rights.h"
#include "support/ScratchProgramFolder.h"
#include "support/Users.h"

#include <gtest/gtest.h>

#include <deque>

namespace corvane {
namespace {

using test::user;

// Answers the temporary-user prompt from a script and counts the refusals it is shown.
struct ScriptedAccessUi : AccessUi {
    UserStore* store = nullptr;
    std::deque<TempUserAnswer> answers;
    std::deque<std::int16_t> changeUserTo; // applied when an answer reports userChanged
    int prompts = 0;
    int refusals = 0;

    TempUserAnswer askTemporaryUser() override
    {
        ++prompts;
        TempUserAnswer a = answers.empty() ? TempUserAnswer{false, true, {}, {}} : answers.front();
        if (!answers.empty())
            answers.pop_front();
        if (a.userChanged) {
            store->CurrentUser = changeUserTo.front();
            changeUserTo.pop_front();
        }
        return a;
    }
    void showAccessNotAllowed() override { ++refusals; }
};

// The access cases below hold the rights themselves, "All" and the supervisor's name to account.
TEST(Rights, TheSupervisorMarkGrantsEveryRight)
{
    EXPECT_TRUE(Has_Right(user("SMITH", "", {}, 1), CommParmsRight, false));
    EXPECT_EQ(test::errorNumberRaisedBy([] { Has_Right(user("A", ""), 101, false); }), err::SubscriptOutOfRange);
}

TEST(Rights, CheckAccessAndTheTemporaryUser)
{
    struct Case {
        const char* name;
        std::int16_t current;
        bool allowTemp;
        std::vector<TempUserAnswer> answers;
        std::vector<std::int16_t> changeTo;
        bool allowed;
        int prompts;
        int refusals;
    } const cases[] = {
        {"the current user holds the right", 2, true, {}, {}, true, 0, 0},
        {"supervisor by name, no rights", 0, true, {}, {}, true, 0, 0},
        {"no temporary user allowed: silent", 3, false, {}, {}, false, 0, 0},
        {"prompt cancelled: silent", 3, true, {{false, true, {}, {}}}, {}, false, 1, 0},
        {"temporary user with the right", 3, true, {{false, false, "smith", "Secret"}}, {}, true, 1, 0},
        {"password case counts for a temporary user", 3, true, {{false, false, "SMITH", "SECRET"}}, {}, false, 1, 1},
        {"name is compared as typed", 3, true, {{false, false, " SMITH", "Secret"}}, {}, false, 1, 1},
        {"supervisor by name is no temporary user", 3, true, {{false, false, "Supervisor", ""}}, {}, false, 1, 1},
        {"later duplicate with the right wins", 3, true, {{false, false, "JONES", "pw"}}, {}, true, 1, 0},
        {"deleted entries never match", 3, true, {{false, false, "", "gone"}}, {}, false, 1, 1},
        {"user changed in the prompt", 3, true, {{true, false, {}, {}}}, {2}, true, 1, 0},
        {"changed to JONES: asks again", 3, true, {{true, false, {}, {}}, {false, true, {}, {}}}, {4}, false, 2, 0},
    };
    for (const auto& c : cases) {
        UserStore store("");
        store.users = {user("SUPERVISOR", "", {}), user("GUEST", ""), user("SMITH", "Secret", {4}), user("CLERK", "c"),
            user("JONES", "pw", {5}), user("JONES", "pw", {0}), user("", "gone", {0})};
        store.SupervisorIndex = 0;
        store.GuestIndex = 1;
        store.CurrentUser = c.current;
        ScriptedAccessUi ui;
        ui.store = &store;
        ui.answers.assign(c.answers.begin(), c.answers.end());
        ui.changeUserTo.assign(c.changeTo.begin(), c.changeTo.end());

        std::string temporaryUser = "stale";
        EXPECT_EQ(Check_Access(store, CommParmsRight, toBool16(c.allowTemp), ui, &temporaryUser) != 0, c.allowed)
            << c.name;
        // Named only when a typed temporary user allowed it, as the store spells the name.
        const bool byTemporary = c.allowed && !c.answers.empty() && !c.answers.back().userChanged;
        EXPECT_EQ(temporaryUser, byTemporary ? upperCase(c.answers.back().name) : "") << c.name;
        EXPECT_EQ(ui.prompts, c.prompts) << c.name;
        EXPECT_EQ(ui.refusals, c.refusals) << c.name;
        if (c.changeTo.empty()) {
            EXPECT_EQ(store.CurrentUser, c.current) << c.name << ": a temporary user never becomes current";
        }
    }
}

} // namespace
} // namespace corvane
