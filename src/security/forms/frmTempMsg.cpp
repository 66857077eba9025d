#include "security/forms/frmTempMsg.h"

#include "platform/Latin1.h"
#include "security/forms/frmChangeUser.h"
#include "ui_frmTempMsg.h"

namespace corvane {

frmTempMsg::frmTempMsg(UserStore& store, LoginValues& values, QWidget* parent)
    : QDialog(parent)
    , ui(std::make_unique<Ui::frmTempMsg>())
    , store_(store)
    , values_(values)
{
    ui->setupUi(this);
    ui->cmdButton_0->setEnabled(false);
    connect(ui->txtTempUserName, &QLineEdit::textChanged, this,
        [this](const QString& text) { ui->cmdButton_0->setEnabled(!text.isEmpty()); });
    connect(ui->cmdButton_0, &QPushButton::clicked, this, [this] {
        answer_.name = toLatin1Bytes(ui->txtTempUserName->text());
        answer_.password = toLatin1Bytes(ui->txtTempPassword->text());
        ui->txtTempPassword->clear(); // handed on, and kept by the form no longer
        accept();
    });
    connect(ui->cmdButton_1, &QPushButton::clicked, this, &QDialog::reject);
    connect(ui->cmdButton_2, &QPushButton::clicked, this, &frmTempMsg::changeUser);
}

frmTempMsg::~frmTempMsg() = default;

void frmTempMsg::changeUser()
{
    values_.LoginMode = LoginModeChangeUser;
    values_.LoginUser = store_.CurrentUser;
    frmChangeUser form(store_, values_, this);
    form.exec();
    if (values_.LoginResult == LoginOk) {
        answer_.userChanged = true;
        store_.CurrentUser = values_.LoginUser;
        accept();
    }
}

void frmTempMsg::done(int result)
{
    if (result != Accepted)
        answer_.cancelled = true;
    QDialog::done(result);
}

} // namespace corvane
