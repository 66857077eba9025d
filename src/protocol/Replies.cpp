#include "protocol/Replies.h"

#include "protocol/Framing.h"
#include "runtime/Convert.h"
#include "runtime/RunTimeError.h"

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

void Extract_Status_Packet(std::string_view packet, std::vector<PortStatusRecord>& PortStatus)
{
    const auto pieces = Split_Records(packet);
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        if (i >= PortStatus.size())
            raise(err::SubscriptOutOfRange);
        PortStatusRecord& record = PortStatus[i];
        record.WorkstationName = Get_Packet_Field(pieces[i], "WorkstationName=");
        record.FileName = Get_Packet_Field(pieces[i], "FileName=");
        record.DNC_ID = Get_Packet_Field(pieces[i], "DNC_ID=");
        record.Status = Get_Packet_Field(pieces[i], "Status=");
        record.ByteCount = Get_Packet_Field(pieces[i], "ByteCount=");
    }
}

void Extract_Machine_Types(
    std::string_view packet, std::vector<MachineTypeRecord>& MachineTypes, std::int16_t& MachineTypeCount)
{
    const auto pieces = Split_Records(packet);
    MachineTypes.assign(pieces.size(), MachineTypeRecord{});
    MachineTypeCount = toInt16(static_cast<std::int64_t>(pieces.size()));
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        MachineTypeRecord& record = MachineTypes[i];
        record.DefaultDir = Get_Packet_Field(pieces[i], "DefaultDir=");
        const std::string code = Get_Packet_Field(pieces[i], "TarnMachineCode=");
        record.TarnMachineCode = code.empty() ? ' ' : code.front();
        record.machine_type = Get_Packet_Field(pieces[i], "machine_type=");
        record.unique_id = textToInt32(Get_Packet_Field(pieces[i], "unique_id="));
    }
}

} // namespace corvane
