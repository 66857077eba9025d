#include "dialogs/forms/CommMessage.h"

#include "ui_CommMessage.h"

namespace corvane {

CommMessage::CommMessage(QWidget* parent)
    : QDialog(parent)
    , ui(std::make_unique<Ui::CommMessage>())
{
    ui->setupUi(this);
    connect(ui->cmdOK, &QPushButton::clicked, this, &QDialog::accept);
}

CommMessage::~CommMessage() = default;

} // namespace corvane
