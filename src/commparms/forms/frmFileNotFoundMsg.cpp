#include "commparms/forms/frmFileNotFoundMsg.h"

#include "platform/Latin1.h"
#include "ui_frmFileNotFoundMsg.h"

#include <QSignalBlocker>

#include <algorithm>

namespace corvane {

frmFileNotFoundMsg::frmFileNotFoundMsg(PortParmsTables& tables, std::int16_t editPort, QWidget* parent)
    : QDialog(parent)
    , ui(std::make_unique<Ui::frmFileNotFoundMsg>())
    , tables_(tables)
    , EditPort(editPort)
{
    ui->setupUi(this);
    ui->spnMachine->setRange(0, static_cast<int>(tables.PortCommParmsTable.size()) - 1);
    ui->spnMachine->setPrefix(QStringLiteral("row ")); // the row; the port's number stands beside it
    ui->txtFileNotFoundMsg->setTabChangesFocus(true); // Tab leaves the message; no tab goes in it
    EditPort
        = static_cast<std::int16_t>(std::clamp<int>(EditPort, ui->spnMachine->minimum(), ui->spnMachine->maximum()));
    {
        const QSignalBlocker quiet(ui->spnMachine);
        ui->spnMachine->setValue(EditPort);
    }
    spnMachine_Change(EditPort);
    connect(ui->spnMachine, &QSpinBox::valueChanged, this, &frmFileNotFoundMsg::spnMachine_Change);
    connect(ui->cmdSave, &QPushButton::clicked, this, &frmFileNotFoundMsg::cmdSave_Click);
    connect(ui->cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
}

frmFileNotFoundMsg::~frmFileNotFoundMsg() = default;

// Browsing only: the port being edited stays EditPort.
void frmFileNotFoundMsg::spnMachine_Change(int port)
{
    const PortCommParms& browsed = tables_.commParms(static_cast<std::int16_t>(port));
    ui->txtMachineNum->setText(QString::number(port + 1));
    ui->txtMachineName->setText(fromLatin1Bytes(browsed.wstat_name));
    ui->txtFileNotFoundMsg->setPlainText(fromLatin1Bytes(browsed.FileNotFoundMessage));
}

void frmFileNotFoundMsg::cmdSave_Click()
{
    PortCommParms& edited = tables_.commParms(EditPort);
    edited.FileNotFoundMessage = toLatin1Bytes(ui->txtFileNotFoundMsg->toPlainText());
    edited.FileNotFoundMsgSet = -1;
    accept();
}

} // namespace corvane
