#include "shell/GridRules.h"

#include "runtime/Convert.h"
#include "runtime/RunTimeError.h"

#include <cmath>

namespace corvane {

bool isFtpTypeMode(std::string_view status)
{
    return status == "FTP" || status == "Timer Folder" || status == "DC + FTP" || status == "DC + TMR FLDR";
}

std::int16_t bookmarkToRow(const std::optional<std::string>& bookmark, bool forward)
{
    if (!bookmark)
        return forward ? -1 : GridRows;
    double value = 0;
    try {
        value = std::trunc(textToDouble(*bookmark));
    } catch (const RunTimeError&) {
        return InvalidRow;
    }
    return value < 0 || value >= GridRows ? InvalidRow : roundToInt16(value);
}

std::string rowBookmark(int row)
{
    return std::to_string(row);
}

std::string gridValue(const std::vector<PortStatusRecord>& table, int row, int column)
{
    if (column == PortColumn)
        return std::to_string(row + 1);
    if (row < 0 || static_cast<std::size_t>(row) >= table.size())
        return {};
    const PortStatusRecord& r = table[static_cast<std::size_t>(row)];
    switch (column) {
    case MachineColumn:
        return r.WorkstationName;
    case ProgramColumn:
        return r.FileName;
    case IdColumn:
        return r.DNC_ID;
    case StatusColumn:
        return r.Status;
    case ByteCountColumn:
        return r.ByteCount;
    default:
        return {};
    }
}

} // namespace corvane
