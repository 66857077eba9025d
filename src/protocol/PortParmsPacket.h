#pragma once

#include "protocol/Framing.h"
#include "commparms/FieldCatalogue.h"
#include "commparms/PortParms.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace corvane {

// Which end of the wire reads or writes the packet. The terminal never takes
// "EnableRemotePrinting=" from the host and sends a printer port only with remote printing on;
// the host keeps and returns both as they are, like every other field.
enum class PacketSide { Terminal, Host };

// The type 100 packet for one section of one port, from the port's records; ends with the last
// field's STX (the sender appends EOT; there is no ETX). A section outside 1-6 gives the header
// alone. The terminal, with remote printing on and no printer port, writes the first installed
// printer into the record and sends it; with no printer installed the port goes empty.
std::string Build_Port_Parms_Packet(
    std::int16_t section, std::int16_t port, PortParmsTables& tables, PacketSide side = PacketSide::Terminal);

// Takes a received type 100 packet apart into the port's records, field by field: a field that
// does not convert raises a run-time error there, and the fields before it stay stored.
void Extract_Port_Parms_Packet(std::string_view packet, PortParmsTables& tables, const PacketFaults& faults,
    PacketSide side = PacketSide::Terminal);

} // namespace corvane
