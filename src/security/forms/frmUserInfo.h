#pragma once

#include "security/Rights.h"

#include <QDialog>

#include <memory>
#include <optional>

namespace Ui {
class frmUserInfo;
}

namespace corvane {

class MessageBoxes;
class RightsChecks;

// Adds a user (AddingUser) or changes the selected one; every change is written to the store at
// once. savedIndex() names the entry written, when OK went through.
class frmUserInfo : public QDialog {
    Q_OBJECT

public:
    frmUserInfo(UserStore& store, const RightsList& rights, Logs& logs, MessageBoxes& boxes, bool addingUser,
        QWidget* parent = nullptr);
    ~frmUserInfo() override;

    std::optional<std::int16_t> savedIndex() const { return saved_; }

private:
    void nameEdited();
    void somethingChanged();
    void pressOk();

    std::unique_ptr<Ui::frmUserInfo> ui;
    std::unique_ptr<RightsChecks> checks_;
    UserStore& store_;
    const RightsList& rights_;
    Logs& logs_;
    MessageBoxes& boxes_;
    bool adding_;
    std::string passwordAtOpen_;
    std::string nameAtOpen_; // upper-cased
    bool namePresent_ = false;
    bool changed_ = false;
    std::optional<std::int16_t> saved_;
};

} // namespace corvane
