#pragma once

#include <cstdint>

namespace corvane::packet_type {

// What the terminal sends.
inline constexpr std::int16_t PortParms = 100; // a section of a port's parameters, both ways
inline constexpr std::int16_t PortParmsRequest = 200;
inline constexpr std::int16_t StatusRequest = 220;
inline constexpr std::int16_t MachineTypeRequest = 250;
inline constexpr std::int16_t VersionRequest = 270;
inline constexpr std::int16_t UpdateComplete = 301;
inline constexpr std::int16_t PurgeReset = 302;

// What the host answers.
inline constexpr std::int16_t PortStatusReply = 120;
inline constexpr std::int16_t MachineTypesReply = 150;
inline constexpr std::int16_t VersionReply = 170;
// Types the host may send that the terminal takes without doing anything.
inline constexpr std::int16_t AcceptedWithoutAction[]
    = {130, 160, PortParmsRequest, StatusRequest, 230, MachineTypeRequest, VersionRequest, UpdateComplete, PurgeReset};

// What the type of a received text reads as when it is not a typed packet.
inline constexpr std::int16_t Ack = 999; // "ACK..."
inline constexpr std::int16_t NoPacket = -1; // no "PKT_TYPE=" at its start

} // namespace corvane::packet_type
