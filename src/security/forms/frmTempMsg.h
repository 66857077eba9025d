#pragma once

#include "security/Login.h"
#include "security/Rights.h"

#include <QDialog>

#include <memory>

namespace Ui {
class frmTempMsg;
}

namespace corvane {

// Asked when the current user lacks a right: a temporary user for this one operation, or a
// permanent change of user through frmChangeUser.
class frmTempMsg : public QDialog {
    Q_OBJECT

public:
    frmTempMsg(UserStore& store, LoginValues& values, QWidget* parent = nullptr);
    ~frmTempMsg() override;

    const TempUserAnswer& answer() const { return answer_; }
    void done(int result) override;

private:
    void changeUser();

    std::unique_ptr<Ui::frmTempMsg> ui;
    UserStore& store_;
    LoginValues& values_;
    TempUserAnswer answer_;
};

} // namespace corvane
