#include "security/forms/frmChangeUser.h"

#include "platform/Latin1.h"
#include "ui_frmChangeUser.h"

#include <algorithm>

namespace corvane {

frmChangeUser::frmChangeUser(const UserStore& store, LoginValues& values, QWidget* parent)
    : QDialog(parent)
    , ui(std::make_unique<Ui::frmChangeUser>())
    , store_(store)
    , values_(values)
{
    ui->setupUi(this);
    setWindowTitle(
        values.LoginMode == LoginModeStartUp ? QStringLiteral("Security Information") : QStringLiteral("Change User"));
    if (values.LoginUser >= 0 && values.LoginUser < store.count())
        ui->txtUserName->setText(fromLatin1Bytes(store.users[static_cast<std::size_t>(values.LoginUser)].UserName));
    ui->cmdButton_0->setEnabled(!ui->txtUserName->text().isEmpty());

    connect(ui->txtUserName, &QLineEdit::textChanged, this,
        [this](const QString& text) { ui->cmdButton_0->setEnabled(!text.isEmpty()); });
    connect(ui->cmdButton_0, &QPushButton::clicked, this, &frmChangeUser::pressOk);
    connect(ui->cmdButton_1, &QPushButton::clicked, this, &QDialog::reject);
}

frmChangeUser::~frmChangeUser() = default;

void frmChangeUser::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    (values_.LoginMode == LoginModeStartUp ? ui->txtPassword : ui->txtUserName)->setFocus();
}

void frmChangeUser::pressOk()
{
    std::int16_t index = 0;
    std::string typed = toLatin1Bytes(ui->txtPassword->text());
    const LoginCheck check = checkLogin(store_, toLatin1Bytes(ui->txtUserName->text()), typed, index);
    std::fill(typed.begin(), typed.end(), '\0'); // the password is kept in no buffer once checked
    switch (check) {
    case LoginCheck::Ok:
        values_.LoginUser = index;
        values_.LoginResult = std::string(LoginOk);
        ui->txtPassword->clear();
        accept();
        break;
    case LoginCheck::InvalidPassword:
        refuse(QStringLiteral("Invalid Password"), ui->txtPassword);
        break;
    case LoginCheck::InvalidUserName:
        refuse(QStringLiteral("Invalid User Name"), ui->txtUserName);
        break;
    }
}

void frmChangeUser::refuse(const QString& why, QWidget* focus)
{
    ui->lblInvalid->setText(why);
    ui->lblInvalid->show();
    focus->setFocus();
}

// Cancel, Escape and the close box all cancel: nobody gets in without the OK of a password.
void frmChangeUser::done(int result)
{
    if (result != Accepted)
        values_.LoginResult = std::string(LoginCancelled);
    QDialog::done(result);
}

} // namespace corvane
