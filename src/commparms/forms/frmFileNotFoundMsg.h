#pragma once

#include "commparms/PortParms.h"

#include <QDialog>

#include <memory>

namespace Ui {
class frmFileNotFoundMsg;
}

namespace corvane {

// The message a port sends its machine when a requested program is not found. Another
// connection's message may be browsed as a template; Save stores the text for the port being
// edited (`EditPort`) only.
class frmFileNotFoundMsg : public QDialog {
    Q_OBJECT

public:
    frmFileNotFoundMsg(PortParmsTables& tables, std::int16_t editPort, QWidget* parent = nullptr);
    ~frmFileNotFoundMsg() override;

private:
    void spnMachine_Change(int port);
    void cmdSave_Click();

    std::unique_ptr<Ui::frmFileNotFoundMsg> ui;
    PortParmsTables& tables_;
    std::int16_t EditPort;
};

} // namespace corvane
