#include "protocol/Requests.h"

#include "protocol/Framing.h"
#include "runtime/Convert.h"

namespace corvane {
namespace {

std::string request(std::int16_t type, std::int16_t section = 0, std::string_view key = {}, std::int16_t value = 0)
{
    std::string packet = packetHeader(type, section);
    if (!key.empty())
        appendField(packet, key, numberText(value));
    endRequest(packet);
    return packet;
}

} // namespace

std::string Build_Port_Parms_Request(std::int16_t section, std::int16_t port)
{
    return request(packet_type::PortParmsRequest, section, "Port=", port);
}

std::string Build_Status_Request()
{
    return request(packet_type::StatusRequest);
}

std::string Build_Machine_Type_Request(std::int16_t displayRow)
{
    return request(packet_type::MachineTypeRequest, 0, "DisplayRow=", displayRow);
}

std::string Build_Version_Request()
{
    return request(packet_type::VersionRequest);
}

std::string Build_Update_Complete_Packet()
{
    return request(packet_type::UpdateComplete);
}

std::string Build_Purge_Reset_Request(std::int16_t displayRow)
{
    return request(packet_type::PurgeReset, 0, "DisplayRow=", displayRow);
}

std::string Get_Host_Version(std::string_view packet, const PacketFaults& faults)
{
    std::string version = Get_Packet_Field(packet, "VersionMajor=", faults);
    version += '.';
    version += Get_Packet_Field(packet, "VersionMinor=", faults);
    return version;
}

std::string Get_Minimum_Remote_Version(std::string_view packet, const PacketFaults& faults)
{
    return Get_Packet_Field(packet, "MinimumRemoteVersion=", faults);
}

} // namespace corvane
