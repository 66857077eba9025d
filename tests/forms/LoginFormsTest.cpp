#include "security/forms/SecurityPrompts.h"
#include "security/forms/frmChangeUser.h"
#include "security/forms/frmPassword.h"
#include "security/forms/frmTempMsg.h"
#include "support/Forms.h"
#include "support/ScratchProgramFolder.h"
#include "support/Users.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string_view>

namespace corvane {
namespace {

using test::control;
using test::user;
using test::whenModal;

UserStore sampleStore()
{
    UserStore store(""); // a table only, never loaded or saved
    store.users
        = {user("SUPERVISOR", "boss", {}, 1), user("GUEST", ""), user("SMITH", "Secret", {4}), user("CLERK", "c")};
    store.SupervisorIndex = 0;
    store.GuestIndex = 1;
    store.CurrentUser = 3;
    return store;
}

void type(QWidget& form, const char* field, const QString& text)
{
    auto& edit = control<QLineEdit>(form, field);
    edit.clear();
    QTest::keyClicks(&edit, text);
}

TEST(ChangeUserForm, RefusesUntilNameAndPasswordMatch)
{
    const UserStore store = sampleStore();
    LoginValues values;
    values.LoginMode = LoginModeStartUp;
    values.LoginUser = 2;
    frmChangeUser form(store, values);
    form.show();
    auto& ok = control<QPushButton>(form, "cmdButton_0");
    auto& invalid = control<QLabel>(form, "lblInvalid");

    type(form, "txtPassword", QStringLiteral("wrong"));
    ok.click();
    EXPECT_EQ(invalid.text(), QStringLiteral("Invalid Password"));
    EXPECT_TRUE(form.isVisible());

    type(form, "txtUserName", QStringLiteral("NOBODY"));
    ok.click();
    EXPECT_EQ(invalid.text(), QStringLiteral("Invalid User Name"));

    type(form, "txtUserName", QString());
    EXPECT_FALSE(ok.isEnabled());

    type(form, "txtUserName", QStringLiteral(" clerk "));
    type(form, "txtPassword", QStringLiteral("C"));
    ok.click();
    EXPECT_EQ(values.LoginResult, "OK");
    EXPECT_EQ(values.LoginUser, 3);
}

TEST(ChangeUserForm, CancelAndTheCloseBoxBothCancel)
{
    const UserStore store = sampleStore();
    for (bool viaCloseBox : {false, true}) {
        LoginValues values;
        values.LoginMode = LoginModeChangeUser;
        values.LoginUser = 2;
        values.LoginResult = "OK";
        frmChangeUser form(store, values);
        form.show();
        if (viaCloseBox)
            form.close();
        else
            control<QPushButton>(form, "cmdButton_1").click();
        EXPECT_EQ(values.LoginResult, "CANCELLED") << viaCloseBox;
        EXPECT_EQ(values.LoginUser, 2);
    }
}

// What it hands back is the access check's test, below.
TEST(TempUserForm, WaitsForANameOrChangesTheUserForGood)
{
    UserStore store = sampleStore();
    LoginValues values;
    frmTempMsg form(store, values);
    form.show();
    EXPECT_FALSE(control<QPushButton>(form, "cmdButton_0").isEnabled());
    whenModal<frmChangeUser>([](frmChangeUser& change) {
        type(change, "txtUserName", QStringLiteral("SMITH"));
        type(change, "txtPassword", QStringLiteral("secret"));
        control<QPushButton>(change, "cmdButton_0").click();
    });
    control<QPushButton>(form, "cmdButton_2").click();
    EXPECT_TRUE(form.answer().userChanged);
    EXPECT_EQ(store.CurrentUser, 2);
}

TEST(PasswordForm, AsksAgainUntilTheRetypedPasswordMatches)
{
    frmPassword form("NewOne");
    form.show();
    type(form, "txtPassword", QStringLiteral("newtwo"));
    control<QPushButton>(form, "cmdButton_0").click();
    EXPECT_FALSE(control<QLabel>(form, "lblNoMatch").isHidden());
    EXPECT_EQ(form.answer(), "CANCELLED");
    type(form, "txtPassword", QStringLiteral(" newone"));
    control<QPushButton>(form, "cmdButton_0").click();
    EXPECT_EQ(form.answer(), "OK");
}

// A temporary user authorises one operation through the forms, and is told when refused; no
// password typed there or at a change of user, right or wrong, ever reaches a log.
TEST(AccessCheck, ATemporaryUserThroughTheFormsAndNoPasswordInALog)
{
    test::ScratchProgramFolder folder;
    UserStore store = sampleStore();
    LoginValues values;
    test::ScriptedBoxes boxes;
    SecurityPrompts prompts(store, values, boxes, nullptr);
    for (const char* typed : {"Secret", "wrong-pass-1", "Wrong-Pass-2"}) {
        whenModal<frmTempMsg>([typed](frmTempMsg& form) {
            type(form, "txtTempUserName", QStringLiteral("SMITH"));
            type(form, "txtTempPassword", QString::fromLatin1(typed));
            control<QPushButton>(form, "cmdButton_0").click();
        });
        const bool allowed = Check_Access(store, CommParmsRight, TrueValue, prompts) != 0;
        EXPECT_EQ(allowed, std::string_view(typed) == "Secret") << typed;
        EXPECT_EQ(store.CurrentUser, 3) << "a temporary user never becomes the current one";
    }
    EXPECT_EQ(boxes.calls.size(), 2u) << "each refusal is told";

    values.LoginUser = 2;
    frmChangeUser form(store, values);
    form.show();
    type(form, "txtPassword", QStringLiteral("wrong-pass-3"));
    control<QPushButton>(form, "cmdButton_0").click();

    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder.path())) {
        std::ifstream in(entry.path(), std::ios::binary);
        std::stringstream text;
        text << in.rdbuf();
        for (const char* secret : {"Secret", "wrong-pass", "Wrong-Pass", "boss"})
            EXPECT_EQ(text.str().find(secret), std::string::npos) << entry.path() << " holds " << secret;
    }
}

} // namespace
} // namespace corvane
