#include "commparms/DataCollectionRules.h"

#include "runtime/Text.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <system_error>

namespace corvane {

DataCollectionStates dataCollectionStates(const DataCollectionParms& d)
{
    DataCollectionStates s;
    if (d.ExtractData == 0)
        return s; // DisableAllDataCollectionOptions
    // Display_ExtractDataFrame
    s.startString = s.streamOptions = true;
    s.terminationString = s.maxSegment = d.DataStreamOption == 1;
    // Display_FileNameOptionsFrame
    s.fileNameFrame = s.saveFolder = s.useAdvancedFileOptions = true;
    s.fileNameString = d.FileNameOption == 1;
    s.advancedFileOptions = d.UseAdvancedFileOptions == 1;
    // Display_PrintOptionsFrame
    s.printFrame = s.useAdvancedPrintOptions = true;
    s.printer = d.PrintOption != 2;
    s.printCommand = d.PrintOption == 1;
    s.advancedPrintOptions = d.UseAdvancedPrintOptions == 1;
    return s;
}

bool checkAccessRights(const std::string& folder)
{
#ifdef _WIN32
    const std::string name = folder + "\\testaccessnow.txt";
#else
    const std::string name = folder + "/testaccessnow.txt";
#endif
    {
        std::ofstream probe(name, std::ios::binary | std::ios::trunc);
        if (!probe)
            return false;
        probe.close();
        if (probe.fail())
            return false;
    }
    std::error_code ec;
    return std::filesystem::remove(name, ec) && !ec;
}

FolderChoice saveFolderChosen(DataCollectionParms& d, std::string_view browsed, const std::string& receiveFolder,
    bool (*accessible)(const std::string&))
{
    constexpr std::size_t Buffer = 260; // characters, the NUL that ends the path included
    const std::string path(browsed.substr(0, std::min<std::size_t>({browsed.find('\0'), browsed.size(), Buffer - 1})));
    if (!accessible(path))
        return {false,
            RuleMessage{joinLines({"This computer does not have full read write access to: ", path,
                "Contact your systems administrator, or select another folder."})}};
    if (path + "\\" == receiveFolder)
        return {false, RuleMessage{"Data Save To Folder cannot be the same as the normal receive foder"}};
    d.SaveToFolder = path;
    return {true, std::nullopt};
}

} // namespace corvane
