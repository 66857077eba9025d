#include "protocol/Replies.h"

#include "protocol/Framing.h"
#include "runtime/Convert.h"
#include "runtime/RunTimeError.h"

#include <algorithm>

namespace corvane {

std::vector<std::string_view> Split_Records(std::string_view packet)
{
    std::vector<std::string_view> pieces;
    std::size_t from = 0;
    for (std::size_t at = packet.find(ETX); at != std::string_view::npos; at = packet.find(ETX, from)) {
        pieces.push_back(packet.substr(from, at - from));
        from = at + 1;
    }
    pieces.push_back(packet.substr(from));
    return pieces;
}

namespace {

// Calls `each` with every piece in turn, holding no list of them: a reply of a million empty
// records costs no more memory than its text.
template <typename Each> void forEachRecord(std::string_view packet, Each&& each)
{
    std::size_t index = 0;
    std::size_t from = 0;
    for (std::size_t at = packet.find(ETX); at != std::string_view::npos; at = packet.find(ETX, from)) {
        each(index++, packet.substr(from, at - from));
        from = at + 1;
    }
    each(index, packet.substr(from));
}

} // namespace

void Extract_Status_Packet(
    std::string_view packet, std::vector<PortStatusRecord>& PortStatus, const PacketFaults& faults)
{
    forEachRecord(packet, [&](std::size_t i, std::string_view piece) {
        if (i >= PortStatus.size())
            raise(err::SubscriptOutOfRange);
        PortStatusRecord& record = PortStatus[i];
        record.WorkstationName = Get_Packet_Field(piece, "WorkstationName=", faults);
        record.FileName = Get_Packet_Field(piece, "FileName=", faults);
        record.DNC_ID = Get_Packet_Field(piece, "DNC_ID=", faults);
        record.Status = Get_Packet_Field(piece, "Status=", faults);
        record.ByteCount = Get_Packet_Field(piece, "ByteCount=", faults);
    });
}

void Extract_Machine_Types(std::string_view packet, std::vector<MachineTypeRecord>& MachineTypes,
    std::int16_t& MachineTypeCount, const PacketFaults& faults)
{
    // The count is 16-bit: a list longer than it can say overflows before anything is allocated
    // and the table keeps what it held.
    const auto pieces = static_cast<std::int64_t>(std::count(packet.begin(), packet.end(), ETX)) + 1;
    const std::int16_t count = toInt16(pieces);
    MachineTypes.assign(static_cast<std::size_t>(count), MachineTypeRecord{});
    MachineTypeCount = count;
    forEachRecord(packet, [&](std::size_t i, std::string_view piece) {
        MachineTypeRecord& record = MachineTypes[i];
        record.DefaultDir = Get_Packet_Field(piece, "DefaultDir=", faults);
        const std::string code = Get_Packet_Field(piece, "TarnMachineCode=", faults);
        record.TarnMachineCode = code.empty() ? ' ' : code.front();
        record.machine_type = Get_Packet_Field(piece, "machine_type=", faults);
        record.unique_id = textToInt32(Get_Packet_Field(piece, "unique_id=", faults));
    });
}

} // namespace corvane
