#include "dialogs/forms/CommMessage.h"

#include "commparms/ParmsRules.h"
#include "ui_CommMessage.h"

namespace corvane {

CommMessage::CommMessage(QWidget* parent)
    : QDialog(parent)
    , ui(std::make_unique<Ui::CommMessage>())
{
    ui->setupUi(this);
    ui->lblMessage->setText(QLatin1String(NoWaitReadNotice.data(), static_cast<qsizetype>(NoWaitReadNotice.size())));
    connect(ui->cmdOK, &QPushButton::clicked, this, &QDialog::accept);
}

CommMessage::~CommMessage() = default;

} // namespace corvane
