#pragma once

#include "commparms/ParmsRules.h"
#include "commparms/PortParms.h"

#include <optional>
#include <string>
#include <string_view>

namespace corvane {

// Which data collection controls are enabled, from the port's record: the extract frame, the
// file naming frame and the print frame, all off while extraction is off.
struct DataCollectionStates {
    // Extract Data From Incoming Stream
    bool startString = false; // lblDataStartString, txtDataStartString
    bool streamOptions = false; // optDataStream
    bool terminationString = false; // lblDataTerminationString, txtDataTerminationString
    bool maxSegment = false; // lblMaxSegment, txtMaxSegment
    // File Naming Options
    bool fileNameFrame = false; // fraFileNameOptions and its naming options
    bool fileNameString = false; // txtFileNameString, chkAppendDateAndTime
    bool saveFolder = false; // lblSaveToFolder, txtSaveToFolder, cmdBrwoseFolder, cmdZoom
    bool useAdvancedFileOptions = false; // chkUseAdvancedFileOptions
    bool advancedFileOptions = false; // cmdAdvancedFileOptions
    // Print Options
    bool printFrame = false; // fraPrintOptions and its options
    bool printer = false; // lblPrinter, cboPrinters
    bool printCommand = false; // lblPrintCommandString, txtPrintCommandString
    bool useAdvancedPrintOptions = false; // chkUseAdvancedPrintOptions
    bool advancedPrintOptions = false; // cmdAdvancedPrintOptions

    bool operator==(const DataCollectionStates&) const = default;
};
DataCollectionStates dataCollectionStates(const DataCollectionParms& d);

// The option groups as the screen stands them, each button's code: print options show "Do not
// print", "Always print", "Print on command" but store 2, 0, 1.
inline constexpr std::int16_t PrintOptionOnScreen[3] = {2, 0, 1};

// What the advanced option buttons say.
inline constexpr std::string_view ReservedForFutureUse = "Reserved for future use.";
// The folder browser's title.
inline constexpr std::string_view SaveFolderBrowserTitle = "Select folder to save the data for this machine. ";

// Full read-write access: a file named "testaccessnow.txt" can be made in the folder, closed
// and removed again. Any failure along the way means no access.
bool checkAccessRights(const std::string& folder);

// A folder the browser returned (a 260-character buffer, cut at its first NUL): taken into
// SaveToFolder when the folder may be written and is not the host's normal receive folder
// (compared as path + "\", exactly, case counting); otherwise refused with its message.
struct FolderChoice {
    bool taken = false;
    std::optional<RuleMessage> message;
};
FolderChoice saveFolderChosen(DataCollectionParms& d, std::string_view browsed, const std::string& receiveFolder,
    bool (*accessible)(const std::string&) = checkAccessRights);

} // namespace corvane
