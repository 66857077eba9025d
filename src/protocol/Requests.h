#pragma once

#include "protocol/Framing.h"
#include "protocol/PacketTypes.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace corvane {

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
std::string Get_Host_Version(std::string_view packet, const PacketFaults& faults);
std::string Get_Minimum_Remote_Version(std::string_view packet, const PacketFaults& faults);

} // namespace corvane
