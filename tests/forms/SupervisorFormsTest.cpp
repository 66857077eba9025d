#include "dialogs/frmGenMsgBox.h"
#include "security/UserAdmin.h"
#include "security/forms/frmPassword.h"
#include "security/forms/frmSupervisorOps.h"
#include "security/forms/frmUserInfo.h"
#include "support/Forms.h"
#include "support/ScratchProgramFolder.h"
#include "support/Users.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>

#include <gtest/gtest.h>

#include <functional>

namespace corvane {
namespace {

using test::control;
using test::user;
using test::whenModal;

class SupervisorForms : public ::testing::Test {
protected:
    test::ScratchProgramFolder folder;
    std::filesystem::path path = folder.useAsStoreRoot();
    UserStore store{path.string()};
    RightsList rights;
    test::ScriptedBoxes boxes;

    void SetUp() override
    {
        test::createStore(path.string(),
            {user("SUPERVISOR", "", {}, 1), user("GUEST", ""), user("SMITH", "pw", {4, 11}), user("JONES", "", {0})});
        ASSERT_TRUE(store.Load_User_Store());
        store.CurrentUser = 0;
        Load_Rights_List(rights, "CVREMOTE");
    }

    UserStore reloaded() const
    {
        UserStore again(path.string());
        EXPECT_TRUE(again.Load_User_Store());
        return again;
    }

    static QStringList names(const frmSupervisorOps& form)
    {
        QStringList out;
        const auto& list = control<QListWidget>(form, "lstUserList");
        for (int i = 0; i < list.count(); ++i)
            out << list.item(i)->text();
        return out;
    }

    static void type(QWidget& form, const char* field, const QString& text)
    {
        auto& edit = control<QLineEdit>(form, field);
        edit.selectAll();
        QTest::keyClicks(&edit, text);
        if (text.isEmpty())
            QTest::keyClick(&edit, Qt::Key_Backspace);
    }
};

TEST_F(SupervisorForms, TheListShowsLiveUsersAndWhatMayBeDoneToThem)
{
    store.users[3].UserName.clear();
    frmSupervisorOps form(store, rights, folder.logs(), boxes);
    form.show();
    EXPECT_EQ(names(form).join(u','), QStringLiteral("SUPERVISOR,GUEST,SMITH"));
    auto& list = control<QListWidget>(form, "lstUserList");
    EXPECT_TRUE(control<QPushButton>(form, "cmdButton_1").isEnabled());
    EXPECT_FALSE(control<QPushButton>(form, "cmdButton_2").isEnabled()) << "the supervisor is never deleted";
    EXPECT_FALSE(control<QCheckBox>(form, "chkPassword").isChecked());
    list.setCurrentRow(1);
    EXPECT_FALSE(control<QPushButton>(form, "cmdButton_1").isEnabled()) << "the guest is not changed";

    list.setCurrentRow(2); // SMITH: the boxes show his password and rights
    EXPECT_TRUE(control<QPushButton>(form, "cmdButton_2").isEnabled());
    EXPECT_TRUE(control<QCheckBox>(form, "chkPassword").isChecked());
    EXPECT_FALSE(control<QCheckBox>(form, "chkRights_0").isChecked());
    EXPECT_TRUE(control<QCheckBox>(form, "chkRights_1").isChecked());
    EXPECT_FALSE(control<QWidget>(form, "pic2Rights").isEnabled()) << "they only show values here";
}

// Deleting asks first and frees the record; adding refuses a name in use, keeps the form open
// with what was typed, and then takes the freed record.
TEST_F(SupervisorForms, DeletingAsksThenFreesTheRecordAndAddingReusesIt)
{
    frmSupervisorOps form(store, rights, folder.logs(), boxes);
    std::vector<std::pair<std::string, std::string>> saved; // the names before and after, for the record
    form.setUserSaved([&saved](const std::optional<UserEntry>& before, const std::optional<UserEntry>& after) {
        saved.emplace_back(before ? before->UserName : "-", after ? after->UserName : "-");
    });
    form.show();
    auto& list = control<QListWidget>(form, "lstUserList");
    list.setCurrentRow(2);

    boxes.answers = {msg::ResultNo};
    control<QPushButton>(form, "cmdButton_2").click();
    EXPECT_EQ(names(form).size(), 4);
    EXPECT_EQ(boxes.calls.size(), 1u);

    boxes.answers = {msg::ResultYes};
    control<QPushButton>(form, "cmdButton_2").click();
    EXPECT_EQ(names(form).join(u','), QStringLiteral("SUPERVISOR,GUEST,JONES"));
    EXPECT_EQ(reloaded().users[2].UserName, "");

    whenModal<frmUserInfo>([this](frmUserInfo& info) {
        type(info, "txtUserName", QStringLiteral("jones "));
        EXPECT_FALSE(control<QPushButton>(info, "cmdButton_0").isEnabled()); // a name alone is no change yet
        control<QCheckBox>(info, "chkRights_1").click();
        control<QPushButton>(info, "cmdButton_0").click();
        EXPECT_EQ(boxes.calls.size(), 3u) << "the name in use is refused";
        EXPECT_TRUE(info.isVisible());
        type(info, "txtUserName", QStringLiteral(" BROWN "));
        whenModal<frmPassword>([](frmPassword& confirm) {
            type(confirm, "txtPassword", QStringLiteral("b1"));
            control<QPushButton>(confirm, "cmdButton_0").click();
        });
        type(info, "txtPassword", QStringLiteral("b1"));
        control<QPushButton>(info, "cmdButton_0").click();
    });
    control<QPushButton>(form, "cmdButton_0").click();

    EXPECT_TRUE(names(form).contains(QStringLiteral("BROWN")));
    const UserStore again = reloaded();
    ASSERT_EQ(again.count(), 4); // the freed record was reused, nothing appended
    EXPECT_EQ(again.users[2], user("BROWN", "b1", {4, 11}));
    EXPECT_EQ(boxes.calls.size(), 3u) << "no warning when adding";
    EXPECT_EQ(saved, (std::vector<std::pair<std::string, std::string>>{{"SMITH", "-"}, {"-", "BROWN"}}))
        << "only what was written, a reused record as an add";
}

// With the program's own boxes: a Yes for SMITH is no answer for JONES. Escape and the close box
// on each question delete nothing and save nothing.
TEST_F(SupervisorForms, EscapeOnAQuestionDoesNothing)
{
    GenMsgBoxes real({});
    frmSupervisorOps form(store, rights, folder.logs(), real);
    form.show();
    auto& list = control<QListWidget>(form, "lstUserList");
    list.setCurrentRow(2);
    whenModal<frmGenMsgBox>([](frmGenMsgBox& box) { box.buttons().at(0)->click(); }); // Yes
    control<QPushButton>(form, "cmdButton_2").click();
    ASSERT_EQ(names(form).join(u','), QStringLiteral("SUPERVISOR,GUEST,JONES"));

    const std::pair<const char*, std::function<void(QWidget&)>> ways[] = {
        {"Escape", [](QWidget& box) { QTest::keyClick(&box, Qt::Key_Escape); }},
        {"close box", [](QWidget& box) { box.close(); }},
    };
    for (const auto& [way, dismiss] : ways) {
        list.setCurrentRow(2);
        whenModal<frmGenMsgBox>([&dismiss](frmGenMsgBox& box) { dismiss(box); });
        control<QPushButton>(form, "cmdButton_2").click();
        EXPECT_EQ(names(form).join(u','), QStringLiteral("SUPERVISOR,GUEST,JONES")) << way;
        EXPECT_EQ(reloaded().users[3].UserName, "JONES") << way;
    }

    // The supervisor-password warning (OK, Cancel): dismissed, no password is given.
    for (const auto& [way, dismiss] : ways) {
        store.SelectedUser = 3;
        frmUserInfo info(store, rights, folder.logs(), real, false);
        info.show();
        type(info, "txtPassword", QStringLiteral("j"));
        whenModal<frmGenMsgBox>([&dismiss](frmGenMsgBox& box) { dismiss(box); });
        control<QPushButton>(info, "cmdButton_0").click();
        EXPECT_TRUE(info.isVisible()) << way;
        EXPECT_EQ(reloaded().users[3].Password, "") << way;
    }
}

// Each refusal keeps the form open and writes nothing; the box names the limit. (The text boxes
// take no more than 20 characters.)
TEST_F(SupervisorForms, NamesAndPasswordsAreCheckedOnOk)
{
    ASSERT_EQ(store.users[0].Password, "");
    store.users[0].Password = "boss"; // security activated
    store.Save_User_Record(0);
    struct Case {
        const char* name;
        bool adding;
        std::int16_t selected;
        QString userName; // typed when not null
        QString password;
        std::string says;
    } const cases[] = {
        {"a name with a blank", true, Nobody, QStringLiteral("JOHN SMITH"), QStringLiteral("pw"), NameLimit},
        {"renamed to another's", false, 2, QStringLiteral("jones"), QString(),
            "Entered user name already exists.  Please change."},
        {"a password with a blank", false, 2, QString(), QStringLiteral("p w"), PasswordLimit},
        {"SMITH's password removed", false, 2, QString(), QStringLiteral(""), PasswordKept},
        {"the supervisor's removed", false, 0, QString(), QStringLiteral(""), SupervisorPasswordKept},
        {"the supervisor's blanked", false, 0, QString(), QStringLiteral("   "), SupervisorPasswordKept},
    };
    const std::string before = folder.read("BRELLWICK/BWKXBIDS.DAT");
    for (const auto& c : cases) {
        store.SelectedUser = c.selected;
        frmUserInfo info(store, rights, folder.logs(), boxes, c.adding);
        info.show();
        if (!c.userName.isNull())
            type(info, "txtUserName", c.userName);
        if (!c.password.isNull() || c.adding)
            type(info, "txtPassword", c.password.isNull() ? QStringLiteral("x") : c.password);
        else
            control<QCheckBox>(info, "chkRights_0").click(); // a change, so that OK is enabled
        boxes.calls.clear();
        control<QPushButton>(info, "cmdButton_0").click();
        ASSERT_EQ(boxes.calls.size(), 1u) << c.name;
        EXPECT_EQ(boxes.calls[0].text, c.says) << c.name;
        EXPECT_TRUE(info.isVisible()) << c.name;
    }
    EXPECT_EQ(folder.read("BRELLWICK/BWKXBIDS.DAT"), before);
}

TEST_F(SupervisorForms, AFirstPasswordWarnsTheSupervisorAndCancelSavesNothing)
{
    store.SelectedUser = 3; // JONES has no password; the supervisor is logged in
    frmUserInfo info(store, rights, folder.logs(), boxes, false);
    info.show();
    type(info, "txtPassword", QStringLiteral("j"));
    boxes.answers = {msg::ResultCancel};
    control<QPushButton>(info, "cmdButton_0").click();
    EXPECT_EQ(boxes.calls.size(), 1u);
    EXPECT_TRUE(info.isVisible());
    EXPECT_EQ(reloaded().users[3].Password, "");

    // Past the warning, a password typed twice differently is not saved either.
    boxes.answers = {msg::ResultOk};
    whenModal<frmPassword>([](frmPassword& confirm) { control<QPushButton>(confirm, "cmdButton_1").click(); });
    control<QPushButton>(info, "cmdButton_0").click();
    EXPECT_EQ(reloaded().users[3].Password, "");
}

// A link planted where the store should be is not the store: the change is not written through
// it, what it points to is as it was to the byte, and the error no routine traps ends the
// program as the runtime would.
TEST_F(SupervisorForms, ALinkPlantedAtTheStoreIsNotWrittenThrough)
{
    const std::string real = path.string() + ".elsewhere";
    std::filesystem::rename(path, real);
    std::filesystem::create_symlink(real, path);
    const std::string before = folder.read("BRELLWICK/BWKXBIDS.DAT.elsewhere");
    store.SelectedUser = 2;
    frmUserInfo info(store, rights, folder.logs(), boxes, false);
    info.show();
    control<QCheckBox>(info, "chkRights_0").click();
    control<QPushButton>(info, "cmdButton_0").click();
    EXPECT_EQ(boxes.untrappedErrors, std::vector<int>{err::PathFileAccessError});
    EXPECT_EQ(folder.read("BRELLWICK/BWKXBIDS.DAT.elsewhere"), before);
    EXPECT_TRUE(std::filesystem::is_symlink(path));
}

TEST_F(SupervisorForms, TheSupervisorKeepsTheName)
{
    store.SelectedUser = store.SupervisorIndex;
    frmUserInfo supervisor(store, rights, folder.logs(), boxes, false);
    supervisor.show();
    EXPECT_FALSE(control<QLineEdit>(supervisor, "txtUserName").isEnabled());
    control<QCheckBox>(supervisor, "chkRights_1").click();
    control<QPushButton>(supervisor, "cmdButton_0").click();
    EXPECT_EQ(reloaded().users[0], user("SUPERVISOR", "", {4}, 1));
}

TEST_F(SupervisorForms, SixRightsFitAndSevenScrollByOneRow)
{
    for (int rows : {6, 7}) {
        RightsList many;
        for (int i = 0; i < rows; ++i)
            many.rows.push_back({"Right " + std::to_string(i), static_cast<std::int16_t>(i + 20)});
        many.RightsCount = static_cast<std::int16_t>(rows);
        store.SelectedUser = 2;
        frmUserInfo info(store, many, folder.logs(), boxes, false);
        info.show();
        auto& bar = control<QScrollBar>(info, "vscrRights");
        auto& picture = control<QWidget>(info, "pic2Rights");
        EXPECT_EQ(bar.isEnabled(), rows >= 7) << rows;
        EXPECT_EQ(bar.maximum(), std::max(0, rows - 6)) << rows;
        EXPECT_NE(info.findChild<QCheckBox*>(QStringLiteral("chkRights_%1").arg(rows - 1)), nullptr);
        const int top = picture.y();
        const int pitch = control<QCheckBox>(info, "chkRights_1").y() - control<QCheckBox>(info, "chkRights_0").y();
        bar.setValue(bar.maximum());
        EXPECT_EQ(picture.y(), top - bar.maximum() * pitch) << rows;
    }
}

} // namespace
} // namespace corvane
