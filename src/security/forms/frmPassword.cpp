#include "security/forms/frmPassword.h"

#include "platform/Latin1.h"
#include "security/Login.h"
#include "ui_frmPassword.h"

namespace corvane {

frmPassword::frmPassword(std::string newPassword, QWidget* parent)
    : QDialog(parent)
    , ui(std::make_unique<Ui::frmPassword>())
    , newPassword_(std::move(newPassword))
    , answer_(LoginCancelled)
{
    ui->setupUi(this);
    ui->cmdButton_0->setEnabled(false);
    connect(ui->txtPassword, &QLineEdit::textChanged, this,
        [this](const QString& text) { ui->cmdButton_0->setEnabled(!text.isEmpty()); });
    connect(ui->cmdButton_0, &QPushButton::clicked, this, [this] {
        if (!passwordConfirmed(newPassword_, toLatin1Bytes(ui->txtPassword->text()))) {
            ui->lblNoMatch->show();
            return;
        }
        answer_ = std::string(LoginOk);
        accept();
    });
    connect(ui->cmdButton_1, &QPushButton::clicked, this, &QDialog::reject);
}

frmPassword::~frmPassword() = default;

} // namespace corvane
