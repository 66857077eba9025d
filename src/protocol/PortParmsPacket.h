#pragma once

#include "commparms/PortParms.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace corvane {

// One packet type, 100, carries a port's parameters in six sections, both ways: sections 1-5
// fill the port's PortCommParms, section 6 its DataCollectionParms.
inline constexpr std::int16_t FirstParmsSection = 1;
inline constexpr std::int16_t LastParmsSection = 6;

enum class Encoding {
    Int16, // decimal text of a 16-bit integer
    Int32, // decimal text of a 32-bit integer
    Bool, // "True"/"False"; a number is accepted on receipt
    Text, // as it stands
    Fixed, // exactly `width` characters: padded with blanks or cut
};

// One key of a section, in wire order, and the record field it carries.
template <typename Record> struct FieldSpec {
    std::string_view key;
    Encoding encoding;
    std::int16_t Record::*int16 = nullptr; // Int16 and Bool
    std::int32_t Record::*int32 = nullptr; // Int32
    std::string Record::*text = nullptr; // Text and Fixed
    std::size_t width = 0; // Fixed
    bool sentOnly = false; // sent by the terminal, never taken from the host
};

// The keys of section 1-5 and of section 6, in the order they are sent.
std::span<const FieldSpec<PortCommParms>> commParmsSection(std::int16_t section);
std::span<const FieldSpec<DataCollectionParms>> dataCollectionSection();

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
void Extract_Port_Parms_Packet(
    std::string_view packet, PortParmsTables& tables, PacketSide side = PacketSide::Terminal);

} // namespace corvane
