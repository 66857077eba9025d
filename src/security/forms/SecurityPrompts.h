#pragma once

#include "security/Login.h"
#include "security/Rights.h"

class QWidget;

namespace corvane {

class MessageBoxes;

// The desktop program's answers to the access check and the start-up log-in: its own forms,
// modal over `parent`.
class SecurityPrompts final : public AccessUi, public LoginUi {
public:
    SecurityPrompts(UserStore& store, LoginValues& values, MessageBoxes& boxes, QWidget* parent);

    TempUserAnswer askTemporaryUser() override;
    void showAccessNotAllowed() override;
    void showChangeUser(LoginValues& values) override;

private:
    UserStore& store_;
    LoginValues& values_;
    MessageBoxes& boxes_;
    QWidget* parent_;
};

} // namespace corvane
