#include "dialogs/CommMessage.h"

#include "ui_CommMessage.h"

namespace corvane {

CommMessage::CommMessage(const QString& notice, QWidget* parent)
    : QDialog(parent)
    , ui(std::make_unique<Ui::CommMessage>())
{
    ui->setupUi(this);
    ui->lblMessage->setText(notice);
    connect(ui->cmdOK, &QPushButton::clicked, this, &QDialog::accept);
}

CommMessage::~CommMessage() = default;

} // namespace corvane
