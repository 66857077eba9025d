#pragma once

#include "protocol/Framing.h"
#include "runtime/Convert.h"
#include "runtime/Logs.h"

#include <string>
#include <string_view>

namespace corvane {

// Protocol faults are never shown; each one is a line in "PacketError-Current.log" beside the
// program, which keeps one older generation in "PacketError-Previous.log".
inline constexpr long long PacketLogRotateAbove = 10000; // bytes; exactly this many does not rotate
inline constexpr int PacketLogLocation = 501;

inline constexpr std::string_view CurrentPacketLogName = "PacketError-Current.log";
inline constexpr std::string_view PreviousPacketLogName = "PacketError-Previous.log";

// Appends "Packet Error Location 501 " + message + " " + date and time + CR LF, after moving a
// current log of more than 10,000 bytes aside. Never fails towards the caller: a fault of the
// log itself leaves "Error Location 201 Err = ..." in error.log and the message is lost.
void Log_Packet_Error(Logs& logs, std::string_view message);
// The codec's faults, told to the packet log of `logs` (which must outlive what it is handed to).
PacketFaults packetLogOf(Logs& logs);

// True when an ordinary file is found at the path; any failure of the look-up reads as false.
Bool16 File_Exists(const std::string& path);

} // namespace corvane
