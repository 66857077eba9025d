#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace corvane {

// Packet types the terminal sends, and the replies it reads.
namespace packet_type {
inline constexpr std::int16_t PortParms = 100;
inline constexpr std::int16_t PortStatusReply = 120;
inline constexpr std::int16_t MachineTypesReply = 150;
inline constexpr std::int16_t VersionReply = 170;
inline constexpr std::int16_t PortParmsRequest = 200;
inline constexpr std::int16_t StatusRequest = 220;
inline constexpr std::int16_t MachineTypeRequest = 250;
inline constexpr std::int16_t VersionRequest = 270;
inline constexpr std::int16_t UpdateComplete = 301;
inline constexpr std::int16_t PurgeReset = 302;
} // namespace packet_type

// Every request: SOH, "PKT_TYPE=" STX, "SECTION=" STX (0 where the type has no sections), its
// own fields, then ETX EOT. (The type 100 packet is built in PortParmsPacket.h.)
std::string Build_Port_Parms_Request(std::int16_t section, std::int16_t port); // 200
std::string Build_Status_Request(); // 220, 26 bytes
std::string Build_Machine_Type_Request(std::int16_t displayRow); // 250
std::string Build_Version_Request(); // 270
std::string Build_Update_Complete_Packet(); // 301
std::string Build_Purge_Reset_Request(std::int16_t displayRow); // 302

// From a version reply (170): "VersionMajor=" + "." + "VersionMinor=", both kept as text
// ("1" and "02" give "1.02"), and the lowest terminal version the host asks for.
std::string Get_Host_Version(std::string_view packet);
std::string Get_Minimum_Remote_Version(std::string_view packet);

} // namespace corvane
