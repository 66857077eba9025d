#pragma once

#include "protocol/Replies.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

// Ports whose status names one of these modes have no serial line.
bool isFtpTypeMode(std::string_view status);

// The port grid: 128 rows, bookmarks are the row numbers as text.
inline constexpr int GridRows = 128;
// Its columns, left to right; the port number column has no caption.
enum GridColumn : int {
    PortColumn,
    MachineColumn,
    ProgramColumn,
    IdColumn,
    StatusColumn,
    ByteCountColumn,
    GridColumns
};
inline constexpr std::int16_t InvalidRow = -9999;
// A null bookmark is before the first row reading forward and after the last reading backward;
// otherwise its value, truncated; outside 0-127 it is invalid.
std::int16_t bookmarkToRow(const std::optional<std::string>& bookmark, bool forward);
std::string rowBookmark(int row);
// The six values of a grid row: port number, machine, program, ID, status, byte count.
std::string gridValue(const std::vector<PortStatusRecord>& table, int row, int column);

} // namespace corvane
