#include "security/forms/frmSupervisorOps.h"

#include "dialogs/MessageBoxes.h"
#include "dialogs/UntrappedError.h"
#include "platform/Latin1.h"
#include "security/UserAdmin.h"
#include "security/forms/RightsChecks.h"
#include "security/forms/frmUserInfo.h"
#include "ui_frmSupervisorOps.h"

namespace corvane {
namespace {

std::int16_t indexOf(const QListWidgetItem* item)
{
    return static_cast<std::int16_t>(item->data(Qt::UserRole).toInt());
}

} // namespace

frmSupervisorOps::frmSupervisorOps(
    UserStore& store, const RightsList& rights, Logs& logs, MessageBoxes& boxes, QWidget* parent)
    : QDialog(parent)
    , ui(std::make_unique<Ui::frmSupervisorOps>())
    , store_(store)
    , rights_(rights)
    , logs_(logs)
    , boxes_(boxes)
{
    ui->setupUi(this);
    ui->pic2Rights->setEnabled(false); // the boxes only show values here
    checks_ = std::make_unique<RightsChecks>(rights, ui->pic2Rights, ui->chkRights_0, ui->vscrRights);

    connect(ui->lstUserList, &QListWidget::currentItemChanged, this,
        [this](QListWidgetItem* item) { guarded(logs_, boxes_, [&] { userSelected(item); }); });
    for (std::int16_t i = 0; i < store.count(); ++i) {
        const UserEntry& user = store.users[static_cast<std::size_t>(i)];
        if (user.UserName.empty())
            continue;
        auto* item = new QListWidgetItem(fromLatin1Bytes(user.UserName), ui->lstUserList);
        item->setData(Qt::UserRole, i);
        if (i == store.CurrentUser)
            ui->lstUserList->setCurrentItem(item);
    }

    connect(ui->cmdButton_0, &QPushButton::clicked, this, [this] { guarded(logs_, boxes_, [this] { addUser(); }); });
    connect(ui->cmdButton_1, &QPushButton::clicked, this, [this] { guarded(logs_, boxes_, [this] { modifyUser(); }); });
    connect(ui->cmdButton_2, &QPushButton::clicked, this, [this] { guarded(logs_, boxes_, [this] { deleteUser(); }); });
    connect(ui->cmdButton_3, &QPushButton::clicked, this, &QDialog::accept);
}

frmSupervisorOps::~frmSupervisorOps() = default;

void frmSupervisorOps::userSelected(QListWidgetItem* item)
{
    if (!item) {
        ui->cmdButton_1->setEnabled(false);
        ui->cmdButton_2->setEnabled(false);
        return;
    }
    store_.SelectedUser = indexOf(item);
    const UserButtons buttons = userButtonsFor(store_, store_.SelectedUser);
    ui->cmdButton_1->setEnabled(buttons.modify);
    ui->cmdButton_2->setEnabled(buttons.remove);
    LoadUserInfo();
}

void frmSupervisorOps::LoadUserInfo()
{
    const UserEntry& user = store_.user(store_.SelectedUser);
    ui->chkPassword->setChecked(!user.Password.empty());
    checks_->show(user);
}

void frmSupervisorOps::addUser()
{
    frmUserInfo form(store_, rights_, logs_, boxes_, true, this);
    form.exec();
    if (const auto saved = form.savedIndex()) {
        auto* item = new QListWidgetItem(fromLatin1Bytes(store_.user(*saved).UserName), ui->lstUserList);
        item->setData(Qt::UserRole, *saved);
        if (saved_)
            saved_(std::nullopt, store_.user(*saved));
    }
}

void frmSupervisorOps::modifyUser()
{
    const UserEntry before = store_.user(store_.SelectedUser);
    frmUserInfo form(store_, rights_, logs_, boxes_, false, this);
    form.exec();
    if (const auto saved = form.savedIndex()) {
        if (ui->lstUserList->currentItem())
            ui->lstUserList->currentItem()->setText(fromLatin1Bytes(store_.user(*saved).UserName));
        if (saved_)
            saved_(before, store_.user(*saved));
    }
    LoadUserInfo();
}

void frmSupervisorOps::deleteUser()
{
    UserEntry& user = store_.user(store_.SelectedUser);
    if (boxes_.Show_Gen_MsgBox(deleteQuestion(user.UserName), msg::YesNo | msg::Exclamation, "Delete User?")
        != msg::ResultYes)
        return;
    const UserEntry before = user;
    user.UserName.clear();
    store_.Save_User_Record(store_.SelectedUser);
    if (saved_)
        saved_(before, std::nullopt);

    // The next item takes the selection, or the one before when the last was deleted.
    const int row = ui->lstUserList->currentRow();
    delete ui->lstUserList->takeItem(row);
    const int count = ui->lstUserList->count();
    if (count > 0)
        ui->lstUserList->setCurrentRow(row < count ? row : count - 1);
}

} // namespace corvane
