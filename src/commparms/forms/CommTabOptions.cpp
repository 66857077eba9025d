#include "commparms/forms/CommTabOptions.h"

#include "commparms/ParmsLink.h"
#include "platform/Latin1.h"
#include "ui_CommTabOptions.h"
#include "widgets/InstalledPrinters.h"

namespace corvane {

CommTabOptions::CommTabOptions(ParmsEditing& editor, QWidget* parent)
    : CommParmsPage(editor, parent)
    , ui(std::make_unique<Ui::CommTabOptions>())
{
    ui->setupUi(this);
    // The installed printers as "name ( port )"; each entry keeps the printer's name.
    for (const InstalledPrinter& printer : installedPrinters())
        ui->cbPrinter->addItem(
            fromLatin1Bytes(printer.name + " ( " + printer.port + " )"), fromLatin1Bytes(printer.name));

    connect(ui->ckPurgeIfInactive, &QCheckBox::clicked, this, [this](bool ticked) {
        ckPurgeIfInactive_Click(editor_.comm(), ticked);
        editor_.changed();
    });
    digitsOnly(*ui->txtPurgeIfInactiveSeconds);
    connect(ui->txtPurgeIfInactiveSeconds, &QLineEdit::editingFinished, this, [this] {
        const RuleOutcome outcome
            = purgeSecondsLeft(editor_.comm(), textOf(*ui->txtPurgeIfInactiveSeconds), editor_.flags());
        if (outcome.text)
            show(*ui->txtPurgeIfInactiveSeconds, *outcome.text);
        editor_.changed(outcome);
    });
    connect(ui->StripOutgoingHeader, &QCheckBox::clicked, this, [this](bool ticked) {
        StripOutgoingHeader_Click(editor_.comm(), ticked);
        editor_.changed({}, true); // the EOB box and the six values are cleared with it
    });
    connect(ui->cbPrinter, &QComboBox::activated, this, &CommTabOptions::cbPrinter_Click);
}

CommTabOptions::~CommTabOptions() = default;

void CommTabOptions::cbPrinter_Click(int index)
{
    editor_.comm().PrinterPort = toLatin1Bytes(ui->cbPrinter->itemData(index).toString());
    editor_.changed();
}

void CommTabOptions::showRecord()
{
    const PortCommParms& p = editor_.comm();
    show(*ui->ckPurgeIfInactive, p.bPurgeIfInactive != 0);
    show(*ui->txtPurgeIfInactiveSeconds, std::to_string(p.iPurgeIfInactiveSeconds));
    show(*ui->StripOutgoingHeader, p.StripOutgoingHeader != 0);
    // A header that is not stripped shows no end values, whatever the record holds.
    if (p.StripOutgoingHeader == 0)
        for (QLineEdit* field : {ui->txtOutHdrVal1, ui->txtOutHdrVal2, ui->txtOutHdrVal3, ui->txtOutHdrVal4,
                 ui->txtOutHdrVal5, ui->txtOutHdrVal6})
            show(*field, std::string());
    const int printer = ui->cbPrinter->findData(fromLatin1Bytes(p.PrinterPort));
    if (printer >= 0)
        showIndex(*ui->cbPrinter, printer);
}

void CommTabOptions::showStates()
{
    const CommControlStates states = commControlStates(editor_.comm());
    ui->txtPurgeIfInactiveSeconds->setEnabled(states.purgeSeconds);
    ui->ckPurgeIfInactive->setEnabled(states.purgeOption);
    ui->lblDoNotUse->setEnabled(states.doNotUseNote);
    ui->IgnoreIncomingData->setEnabled(states.ignoreIncomingData);
    for (QWidget* w : {static_cast<QWidget*>(ui->lblOutHdr), static_cast<QWidget*>(ui->chkOutHdrEOBVal),
             static_cast<QWidget*>(ui->txtOutHdrVal1), static_cast<QWidget*>(ui->txtOutHdrVal2),
             static_cast<QWidget*>(ui->txtOutHdrVal3), static_cast<QWidget*>(ui->txtOutHdrVal4),
             static_cast<QWidget*>(ui->txtOutHdrVal5), static_cast<QWidget*>(ui->txtOutHdrVal6)})
        w->setEnabled(states.outgoingHeader);
}

} // namespace corvane
