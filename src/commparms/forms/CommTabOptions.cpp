#include "commparms/forms/CommTabOptions.h"

#include "commparms/ParmsLink.h"
#include "widgets/InstalledPrinters.h"
#include "platform/Latin1.h"
#include "ui_CommTabOptions.h"

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

    const struct {
        QCheckBox* box;
        std::int16_t PortCommParms::*field;
    } plain[] = {
        {ui->StripHeader, &PortCommParms::StripHeader},
        {ui->BypassRecAdmin, &PortCommParms::ByPassRec},
        {ui->IgnoreIncomingData, &PortCommParms::Aux},
        {ui->SendStbyTimeout, &PortCommParms::SendStbyTimeout},
        {ui->SendStbyPurge, &PortCommParms::SendStbyPurge},
        {ui->Comment, &PortCommParms::CompressComment},
        {ui->LineNums, &PortCommParms::CompressLineNumber},
        {ui->Tabs, &PortCommParms::CompressTab},
        {ui->Spaces, &PortCommParms::CompressSpace},
        {ui->Char, &PortCommParms::CompressChar},
        {ui->chkOutHdrEOBVal, &PortCommParms::OutHdrEobVal},
        {ui->chkEnableRemotePrint, &PortCommParms::EnableRemotePrinting},
    };
    for (const auto& [box, field] : plain)
        connect(box, &QCheckBox::clicked, this, [this, field = field](bool ticked) {
            editor_.comm().*field = flagOf(ticked);
            editor_.changed();
        });

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
    asciiField(ui->CharVal, &PortCommParms::CharToCompress);
    for (auto [field, value] : {std::pair{ui->txtOutHdrVal1, &PortCommParms::OutHdrVal1},
             std::pair{ui->txtOutHdrVal2, &PortCommParms::OutHdrVal2},
             std::pair{ui->txtOutHdrVal3, &PortCommParms::OutHdrVal3},
             std::pair{ui->txtOutHdrVal4, &PortCommParms::OutHdrVal4},
             std::pair{ui->txtOutHdrVal5, &PortCommParms::OutHdrVal5},
             std::pair{ui->txtOutHdrVal6, &PortCommParms::OutHdrVal6}})
        asciiField(field, value);
    connect(ui->cbPrinter, &QComboBox::activated, this, &CommTabOptions::cbPrinter_Click);
}

CommTabOptions::~CommTabOptions() = default;

void CommTabOptions::asciiField(QLineEdit* field, std::int16_t PortCommParms::*value)
{
    connect(field, &QLineEdit::editingFinished, this, [this, field, value] {
        const RuleOutcome outcome = asciiFieldLeft(editor_.comm().*value, textOf(*field), editor_.flags());
        if (outcome.text)
            show(*field, *outcome.text);
        editor_.changed(outcome);
    });
}

void CommTabOptions::cbPrinter_Click(int index)
{
    editor_.comm().PrinterPort = toLatin1Bytes(ui->cbPrinter->itemData(index).toString());
    editor_.changed();
}

void CommTabOptions::showRecord()
{
    const PortCommParms& p = editor_.comm();
    show(*ui->StripHeader, p.StripHeader != 0);
    show(*ui->BypassRecAdmin, p.ByPassRec != 0);
    show(*ui->IgnoreIncomingData, p.Aux != 0);
    show(*ui->SendStbyTimeout, p.SendStbyTimeout != 0);
    show(*ui->SendStbyPurge, p.SendStbyPurge != 0);
    show(*ui->ckPurgeIfInactive, p.bPurgeIfInactive != 0);
    show(*ui->txtPurgeIfInactiveSeconds, std::to_string(p.iPurgeIfInactiveSeconds));
    show(*ui->Comment, p.CompressComment != 0);
    show(*ui->LineNums, p.CompressLineNumber != 0);
    show(*ui->Tabs, p.CompressTab != 0);
    show(*ui->Spaces, p.CompressSpace != 0);
    show(*ui->Char, p.CompressChar != 0);
    show(*ui->CharVal, asciiFieldText(p.CharToCompress));
    show(*ui->StripOutgoingHeader, p.StripOutgoingHeader != 0);
    show(*ui->chkOutHdrEOBVal, p.OutHdrEobVal != 0);
    const std::int16_t values[] = {p.OutHdrVal1, p.OutHdrVal2, p.OutHdrVal3, p.OutHdrVal4, p.OutHdrVal5, p.OutHdrVal6};
    QLineEdit* const fields[] = {ui->txtOutHdrVal1, ui->txtOutHdrVal2, ui->txtOutHdrVal3, ui->txtOutHdrVal4,
        ui->txtOutHdrVal5, ui->txtOutHdrVal6};
    for (std::size_t i = 0; i < std::size(fields); ++i)
        show(*fields[i], p.StripOutgoingHeader != 0 ? asciiFieldText(values[i]) : std::string());
    show(*ui->chkEnableRemotePrint, p.EnableRemotePrinting != 0);
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
