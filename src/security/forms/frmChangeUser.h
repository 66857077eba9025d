#pragma once

#include "security/Login.h"

#include <QDialog>

#include <memory>

namespace Ui {
class frmChangeUser;
}

namespace corvane {

// Log-in at start-up (LoginMode 1, "Security Information") and change of user (mode 2): proposes
// LoginUser's name; on success sets LoginUser and LoginResult "OK", otherwise "CANCELLED".
class frmChangeUser : public QDialog {
    Q_OBJECT

public:
    frmChangeUser(const UserStore& store, LoginValues& values, QWidget* parent = nullptr);
    ~frmChangeUser() override;

    void done(int result) override;

protected:
    void showEvent(QShowEvent* event) override;

private:
    void pressOk();
    void refuse(const QString& why, QWidget* focus);

    std::unique_ptr<Ui::frmChangeUser> ui;
    const UserStore& store_;
    LoginValues& values_;
};

} // namespace corvane
