#include "shell/forms/AboutDlg.h"

#include "shell/VersionRules.h"
#include "ui_AboutDlg.h"

namespace corvane {

AboutDlg::AboutDlg(QWidget* parent)
    : QDialog(parent)
    , ui(std::make_unique<Ui::AboutDlg>())
{
    ui->setupUi(this);
    ui->lblVersion->setText(QStringLiteral("Ver ") + QString::fromLatin1(clientVersionText().c_str()));
    connect(ui->cmdOK, &QPushButton::clicked, this, &QDialog::accept);
}

AboutDlg::~AboutDlg() = default;

} // namespace corvane
