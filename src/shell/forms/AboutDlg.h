#pragma once

#include <QDialog>

#include <memory>

namespace Ui {
class AboutDlg;
}

namespace corvane {

class AboutDlg : public QDialog {
    Q_OBJECT

public:
    explicit AboutDlg(QWidget* parent = nullptr);
    ~AboutDlg() override;

private:
    std::unique_ptr<Ui::AboutDlg> ui;
};

} // namespace corvane
