#include "commparms/forms/CommTabRequests.h"

#include "commparms/ParmsLink.h"
#include "commparms/forms/frmFileNotFoundMsg.h"
#include "ui_CommTabRequests.h"

namespace corvane {

CommTabRequests::CommTabRequests(ParmsEditing& editor, QWidget* parent)
    : CommParmsPage(editor, parent)
    , ui(std::make_unique<Ui::CommTabRequests>())
{
    ui->setupUi(this);
    fillList(*ui->KeyPad, "Remote_Req");

    connect(ui->RedirectCode, &QLineEdit::textEdited, this, [this] {
        RedirectCode_Change(editor_.comm(), textOf(*ui->RedirectCode));
        editor_.changed();
    });
    connect(ui->KeyPad, &QComboBox::activated, this, [this](int i) {
        // QSI may fill in the redirect code and the feed string: shown at once.
        editor_.changed(KeyPad_Click(editor_.comm(), static_cast<std::int16_t>(i), editor_.flags()), true);
    });
    connect(ui->cmdEditMsg, &QPushButton::clicked, this, &CommTabRequests::cmdEditMsg_Click);
}

CommTabRequests::~CommTabRequests() = default;

// The message is edited in its own form; the box shows whether the port now has one.
void CommTabRequests::cmdEditMsg_Click()
{
    frmFileNotFoundMsg form(editor_.link().parmsTables(), editor_.currentPort(), this);
    form.exec();
    show(*ui->chkFileNotFoundMsg, editor_.comm().FileNotFoundMsgSet != 0);
    editor_.changed();
}

void CommTabRequests::showRecord()
{
    const PortCommParms& p = editor_.comm();
    showIndex(*ui->KeyPad, p.Remote_Req);
    show(*ui->RedirectCode, redirectCodeText(p.RedirectCode));
}

} // namespace corvane
