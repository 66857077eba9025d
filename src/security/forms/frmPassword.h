#pragma once

#include <QDialog>

#include <memory>
#include <string>

namespace Ui {
class frmPassword;
}

namespace corvane {

// Has a new password typed a second time; answer() is "OK" when it matched, else "CANCELLED".
class frmPassword : public QDialog {
    Q_OBJECT

public:
    explicit frmPassword(std::string newPassword, QWidget* parent = nullptr);
    ~frmPassword() override;

    const std::string& answer() const { return answer_; }

private:
    std::unique_ptr<Ui::frmPassword> ui;
    std::string newPassword_;
    std::string answer_;
};

} // namespace corvane
