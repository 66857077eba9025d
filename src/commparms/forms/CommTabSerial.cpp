#include "commparms/forms/CommTabSerial.h"

#include "dialogs/CommMessage.h"
#include "platform/Latin1.h"
#include "ui_CommTabSerial.h"
#include "widgets/DigitField.h"

#include <QButtonGroup>

namespace corvane {
CommTabSerial::CommTabSerial(ParmsEditing& editor, QWidget* parent)
    : CommParmsPage(editor, parent)
    , ui(std::make_unique<Ui::CommTabSerial>())
{
    ui->setupUi(this);
    fillList(*ui->BaudRates, "Baud");
    fillList(*ui->SpecificProtocols, "SpecificProtocol");
    fillList(*ui->EndofBlock, "EobConversion");
    dataType_ = &choices("DataType");
    handshake_ = &choices("Handshaking");
    // Backspace too is dropped here, unlike the other number fields.
    DigitField::apply(*ui->txtEobNumNulls, TypedKeys::DigitsOnly);

    const auto index = [](int i) { return static_cast<std::int16_t>(i); };
    connect(ui->BaudRates, &QComboBox::activated, this,
        [this, index](int i) { editor_.changed(BaudRates_Click(editor_.comm(), index(i), editor_.flags()), true); });
    connect(ui->SpecificProtocols, &QComboBox::activated, this, [this, index](int i) {
        editor_.changed(SpecificProtocols_Click(editor_.comm(), index(i), editor_.flags()), true);
    });
    connect(ui->EndofBlock, &QComboBox::activated, this,
        [this, index](int i) { editor_.changed(EndofBlock_Click(editor_.comm(), index(i), editor_.flags()), true); });
    connect(dataType_, &QButtonGroup::idClicked, this, [this, index](int code) {
        // The parity, data bits and end of block it forces are shown at once.
        editor_.changed(DataType_Click(editor_.comm(), index(code), editor_.flags()), true);
    });
    connect(handshake_, &QButtonGroup::idClicked, this,
        [this, index](int code) { editor_.changed(Handshake_Click(editor_.comm(), index(code), editor_.flags())); });
    connect(ui->txtEobNumNulls, &QLineEdit::textEdited, this, [this] {
        const RuleOutcome outcome = eobNullsChanged(editor_.comm(), textOf(*ui->txtEobNumNulls), editor_.flags());
        if (outcome.text)
            show(*ui->txtEobNumNulls, *outcome.text);
        editor_.changed(outcome);
    });
    connect(ui->ckEnableNoWaitRead, &QCheckBox::clicked, this, [this](bool ticked) {
        if (ckEnableNoWaitRead_Click(editor_.comm(), ticked, editor_.flags())) {
            CommMessage notice(fromLatin1Bytes(NoWaitReadNotice), this);
            notice.exec();
        }
        editor_.changed();
    });
}

CommTabSerial::~CommTabSerial() = default;

void CommTabSerial::showRecord()
{
    const PortCommParms& p = editor_.comm();
    showIndex(*ui->BaudRates, p.Baud);
    showIndex(*ui->SpecificProtocols, p.SpecificProtocol);
    showChoice(*dataType_, p.DataType);
    showChoice(*handshake_, p.Handshaking);
    showIndex(*ui->EndofBlock, p.EobConversion);
    show(*ui->txtEobNumNulls, std::to_string(p.EobNullNumber));
    show(*ui->ckEnableNoWaitRead, p.bEnableNoWaitRead != 0);
}

void CommTabSerial::showStates()
{
    ui->fraHandshake->setEnabled(commControlStates(editor_.comm()).handshakeFrame);
}

} // namespace corvane
