#pragma once

#include "security/Rights.h"

#include <QDialog>

#include <functional>
#include <memory>
#include <optional>

class QListWidgetItem;

namespace Ui {
class frmSupervisorOps;
}

namespace corvane {

class MessageBoxes;
class RightsChecks;

// The supervisor's list of users: the selected user's password mark and rights are shown, and
// users are added, changed and deleted, each change written to the store at once.
class frmSupervisorOps : public QDialog {
    Q_OBJECT

public:
    frmSupervisorOps(
        UserStore& store, const RightsList& rights, Logs& logs, MessageBoxes& boxes, QWidget* parent = nullptr);
    ~frmSupervisorOps() override;

    // Told of each change written to the store: the entry before (none: a user added) and after
    // (none: deleted).
    using UserSaved
        = std::function<void(const std::optional<UserEntry>& before, const std::optional<UserEntry>& after)>;
    void setUserSaved(UserSaved saved) { saved_ = std::move(saved); }

private:
    void userSelected(QListWidgetItem* item);
    void LoadUserInfo();
    void addUser();
    void modifyUser();
    void deleteUser();

    std::unique_ptr<Ui::frmSupervisorOps> ui;
    std::unique_ptr<RightsChecks> checks_;
    UserStore& store_;
    const RightsList& rights_;
    Logs& logs_;
    MessageBoxes& boxes_;
    UserSaved saved_;
};

} // namespace corvane
