#include "security/forms/frmUserInfo.h"

#include "dialogs/MessageBoxes.h"
#include "dialogs/UntrappedError.h"
#include "platform/Latin1.h"
#include "runtime/Text.h"
#include "security/Login.h"
#include "security/UserAdmin.h"
#include "security/forms/RightsChecks.h"
#include "security/forms/frmPassword.h"
#include "ui_frmUserInfo.h"

#include <QCheckBox>

namespace corvane {

frmUserInfo::frmUserInfo(UserStore& store, const RightsList& rights, Logs& logs, MessageBoxes& boxes,
    bool addingUser, QWidget* parent)
    : QDialog(parent)
    , ui(std::make_unique<Ui::frmUserInfo>())
    , store_(store)
    , rights_(rights)
    , logs_(logs)
    , boxes_(boxes)
    , adding_(addingUser)
{
    ui->setupUi(this);
    checks_ = std::make_unique<RightsChecks>(rights, ui->pic2Rights, ui->chkRights_0, ui->vscrRights);

    if (!adding_) {
        const UserEntry& user = store.user(store.SelectedUser);
        ui->txtUserName->setText(fromLatin1Bytes(user.UserName));
        ui->txtPassword->setText(fromLatin1Bytes(user.Password));
        passwordAtOpen_ = user.Password;
        nameAtOpen_ = upperCase(user.UserName);
        namePresent_ = !user.UserName.empty();
        checks_->show(user);
        if (store.SelectedUser == store.GuestIndex) {
            ui->txtUserName->setEnabled(false);
            ui->txtPassword->setEnabled(false);
        } else if (store.SelectedUser == store.SupervisorIndex) {
            ui->txtUserName->setEnabled(false);
        }
    }
    ui->cmdButton_0->setEnabled(false);

    connect(ui->txtUserName, &QLineEdit::textEdited, this, &frmUserInfo::nameEdited);
    connect(ui->txtPassword, &QLineEdit::textEdited, this, &frmUserInfo::somethingChanged);
    for (QCheckBox* box : checks_->boxes())
        connect(box, &QCheckBox::clicked, this, &frmUserInfo::somethingChanged);
    connect(ui->cmdButton_0, &QPushButton::clicked, this, [this] { guarded(logs_, boxes_, [this] { pressOk(); }); });
    connect(ui->cmdButton_1, &QPushButton::clicked, this, &QDialog::reject);
}

frmUserInfo::~frmUserInfo() = default;

void frmUserInfo::nameEdited()
{
    namePresent_ = !trimBlanks(toLatin1Bytes(ui->txtUserName->text())).empty();
    if (!adding_)
        ui->cmdButton_0->setEnabled(namePresent_);
}

void frmUserInfo::somethingChanged()
{
    changed_ = true;
    if (namePresent_)
        ui->cmdButton_0->setEnabled(true);
}

void frmUserInfo::pressOk()
{
    const std::string name = toLatin1Bytes(ui->txtUserName->text());
    const std::string password = toLatin1Bytes(ui->txtPassword->text());

    // A renamed user may not take another's name either: the store would hold it twice.
    const bool renamed = adding_ || upperCase(trimBlanks(name)) != upperCase(nameAtOpen_);
    if (renamed && userNameTaken(store_, name)) {
        boxes_.Show_Gen_MsgBox("Entered user name already exists.  Please change.", msg::OkOnly, "User Already Exists");
        return;
    }
    // Only what is typed anew is checked: an entry's stored values stay as they are.
    std::optional<std::string> refused = renamed ? refusedName(name) : std::nullopt;
    if (!refused && trimBlanks(password) != passwordAtOpen_)
        refused = refusedPassword(store_, adding_ ? Nobody : store_.SelectedUser, password, passwordAtOpen_, false);
    if (refused) {
        boxes_.Show_Gen_MsgBox(*refused, msg::OkOnly | msg::Exclamation, "User Information");
        return;
    }
    if (needsSupervisorPasswordWarning(store_, adding_, password, passwordAtOpen_)
        && boxes_.Show_Gen_MsgBox(SupervisorPasswordWarning, msg::OkCancel | msg::Exclamation, "Supervisor Password")
            == msg::ResultCancel)
        return;
    if (needsPasswordConfirmation(password, passwordAtOpen_)) {
        frmPassword confirm(std::string(trimBlanks(password)), this);
        confirm.exec();
        if (confirm.answer() != LoginOk)
            return;
    }

    const std::int16_t index = adding_ ? takeFreeEntry(store_) : store_.SelectedUser;
    UpdateUserInfo(store_, index, name, password, rights_, checks_->checked());
    store_.Save_User_Record(index);
    saved_ = index;
    accept();
}

} // namespace corvane
