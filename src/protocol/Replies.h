#pragma once

#include "protocol/Framing.h"
#include "commparms/MachineTypes.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

// Replies that carry a list (port states, machine types) hold one record per piece of the
// packet text split at every ETX; the header fields sit in the first record, and the piece
// after the last ETX is what is left before the EOT.
std::vector<std::string_view> Split_Records(std::string_view packet);

// One port's line of the main screen, as the host words it.
struct PortStatusRecord {
    std::string WorkstationName;
    std::string FileName;
    std::string Status;
    std::string ByteCount;
    std::string DNC_ID;

    bool operator==(const PortStatusRecord&) const = default;
};

// Fills record i of the table from piece i, key by key ("WorkstationName=", "FileName=",
// "DNC_ID=", "Status=", "ByteCount="). The table keeps its size: a piece beyond it raises
// "Subscript out of range", after the pieces before it were stored.
void Extract_Status_Packet(
    std::string_view packet, std::vector<PortStatusRecord>& PortStatus, const PacketFaults& faults);

// Replaces the table by one record per piece, read "DefaultDir=", "TarnMachineCode=",
// "machine_type=", "unique_id=" in that order; the count is set before the pieces are read.
void Extract_Machine_Types(std::string_view packet, std::vector<MachineTypeRecord>& MachineTypes,
    std::int16_t& MachineTypeCount, const PacketFaults& faults);

} // namespace corvane
