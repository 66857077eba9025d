#include "dialogs/CommMessage.h"

#include "dialogs/frmGenMsgBox.h"
#include "ui_CommMessage.h"

namespace corvane {
namespace {

constexpr int NoticeWidth = 360;

} // namespace

CommMessage::CommMessage(const QString& notice, QWidget* parent)
    : QDialog(parent)
    , ui(std::make_unique<Ui::CommMessage>())
{
    ui->setupUi(this);
    dressAsBox(*this);
    ui->lblMessage->setText(notice);
    // The whole sentence in lines of like length, and Enter is OK.
    wrapBalanced(*ui->lblMessage, NoticeWidth);
    ui->cmdOK->setDefault(true);
    ui->cmdOK->setFocus();
    connect(ui->cmdOK, &QPushButton::clicked, this, &QDialog::accept);
}

CommMessage::~CommMessage() = default;

} // namespace corvane
