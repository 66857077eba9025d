#include "commparms/forms/CommTabDataCollection.h"

#include "commparms/DataCollectionRules.h"
#include "commparms/ParmsLink.h"
#include "dialogs/MessageBoxes.h"
#include "dialogs/Services.h"
#include "dialogs/frmPathZoom.h"
#include "platform/Latin1.h"
#include "ui_CommTabDataCollection.h"
#include "widgets/Desktop.h"
#include "widgets/InstalledPrinters.h"

#include <QApplication>
#include <QButtonGroup>

namespace corvane {

CommTabDataCollection::CommTabDataCollection(ParmsEditing& editor, QWidget* parent)
    : CommParmsPage(editor, parent)
    , ui(std::make_unique<Ui::CommTabDataCollection>())
{
    ui->setupUi(this);
    for (const std::string& name : installedPrinterNames())
        ui->cboPrinters->addItem(fromLatin1Bytes(name));

    digitsOnly(*ui->txtMaxSegment);
    connect(ui->txtMaxSegment, &QLineEdit::textEdited, this, [this] {
        editor_.collection().MaxDataSegment = roundToInt32(textVal(textOf(*ui->txtMaxSegment)));
        editor_.changed();
    });
    connect(ui->txtMaxSegment, &QLineEdit::editingFinished, this, [this] {
        const RuleOutcome outcome
            = segmentLengthLeft(editor_.collection(), textOf(*ui->txtMaxSegment), editor_.flags());
        if (outcome.text) {
            show(*ui->txtMaxSegment, *outcome.text);
            ui->txtMaxSegment->end(false); // the caret after it
        }
        editor_.changed(outcome);
    });
    connect(ui->cboPrinters, &QComboBox::activated, this, [this] {
        editor_.collection().SelectedPrinter = toLatin1Bytes(ui->cboPrinters->currentText());
        editor_.changed();
    });
    connect(ui->cmdBrwoseFolder, &QPushButton::clicked, this, &CommTabDataCollection::cmdBrwoseFolder_Click);
    connect(ui->cmdZoom, &QPushButton::clicked, this, &CommTabDataCollection::cmdZoom_Click);
    for (QPushButton* reserved : {ui->cmdAdvancedFileOptions, ui->cmdAdvancedPrintOptions})
        connect(reserved, &QPushButton::clicked, this, [this] {
            editor_.services().boxes.MsgBox(
                std::string(ReservedForFutureUse), msg::Information, toLatin1Bytes(QApplication::applicationName()));
        });
}

CommTabDataCollection::~CommTabDataCollection() = default;

void CommTabDataCollection::cmdBrwoseFolder_Click()
{
    const QString folder = editor_.services().desktop.chooseFolder(this, QLatin1String(SaveFolderBrowserTitle));
    if (folder.isEmpty())
        return;
    const std::string receiveFolder
        = normalReceiveFolder(editor_.link().machineTypes(), editor_.comm().Machine_Unique_Id);
    const FolderChoice choice = saveFolderChosen(editor_.collection(), toLatin1Bytes(folder), receiveFolder);
    if (choice.taken)
        show(*ui->txtSaveToFolder, editor_.collection().SaveToFolder);
    RuleOutcome outcome;
    if (choice.message)
        outcome.messages.push_back(*choice.message);
    editor_.changed(outcome);
}

void CommTabDataCollection::cmdZoom_Click()
{
    frmPathZoom zoom(ui->txtSaveToFolder->text(), this);
    zoom.exec();
}

void CommTabDataCollection::Match_cboPrinters(const std::string& printer)
{
    const int found = ui->cboPrinters->findText(fromLatin1Bytes(printer), Qt::MatchExactly);
    if (found >= 0)
        showIndex(*ui->cboPrinters, found);
}

void CommTabDataCollection::showRecord()
{
    const DataCollectionParms& d = editor_.collection();
    show(*ui->txtMaxSegment, std::to_string(d.MaxDataSegment));
    show(*ui->txtSaveToFolder, d.SaveToFolder);
    Match_cboPrinters(d.SelectedPrinter);
}

// Display_ExtractDataFrame, Display_FileNameOptionsFrame, Display_PrintOptionsFrame, or
// DisableAllDataCollectionOptions while extraction is off.
void CommTabDataCollection::showStates()
{
    const DataCollectionStates s = dataCollectionStates(editor_.collection());
    const auto enable = [](bool on, std::initializer_list<QWidget*> widgets) {
        for (QWidget* w : widgets)
            w->setEnabled(on);
    };
    enable(s.startString, {ui->lblDataStartString, ui->txtDataStartString});
    enable(s.streamOptions, {ui->optDataStream_0, ui->optDataStream_1});
    enable(s.terminationString, {ui->lblDataTerminationString, ui->txtDataTerminationString});
    enable(s.maxSegment, {ui->lblMaxSegment, ui->txtMaxSegment});
    enable(s.fileNameFrame, {ui->fraFileNameOptions});
    enable(s.fileNameString, {ui->lblFileNameString, ui->txtFileNameString, ui->chkAppendDateAndTime});
    enable(s.saveFolder, {ui->lblSaveToFolder, ui->txtSaveToFolder, ui->cmdBrwoseFolder, ui->cmdZoom});
    enable(s.useAdvancedFileOptions, {ui->chkUseAdvancedFileOptions});
    enable(s.advancedFileOptions, {ui->cmdAdvancedFileOptions});
    enable(s.printFrame, {ui->fraPrintOptions});
    enable(s.printer, {ui->lblPrinter, ui->cboPrinters});
    enable(s.printCommand, {ui->lblPrintCommandString, ui->txtPrintCommandString});
    enable(s.useAdvancedPrintOptions, {ui->chkUseAdvancedPrintOptions});
    enable(s.advancedPrintOptions, {ui->cmdAdvancedPrintOptions});
}

} // namespace corvane
