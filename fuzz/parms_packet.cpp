// A received port parameter section taken into the records, then built back as the host would
// send it and taken in again: the second build must equal the first, unless a value holds text
// that reads as another key (the packet's contract then lets the first occurrence win).
#include "Input.h"
#include "commparms/FieldCatalogue.h"
#include "commparms/RecordFields.h"
#include "protocol/Framing.h"
#include "protocol/PortParmsPacket.h"
#include "runtime/RunTimeError.h"

#include <cstdlib>

using namespace corvane;

namespace {

bool holdsKeyText(const PortParmsTables& t, std::int16_t port)
{
    const PortCommParms& p = t.PortCommParmsTable[static_cast<std::size_t>(port)];
    const DataCollectionParms& d = t.DataCollectionTable[static_cast<std::size_t>(port)];
    for (const FieldRow& row : fieldCatalogue())
        if (row.section != NotCarried && row.kind == FieldKind::Text
            && std::get<std::string>(fieldValue(p, d, row)).find('=') != std::string::npos)
            return true;
    return false;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::scratchFolder();
    const std::string packet(fuzz::text(data, size));
    PortParmsTables tables;
    tables.resize();
    std::int16_t port = 0, section = 0;
    try {
        Extract_Port_Parms_Packet(packet, tables, fuzz::packetFaults());
        port = textToInt16(Get_Packet_Field(packet, "Port=", fuzz::packetFaults()));
        section = textToInt16(Get_Packet_Field(packet, "SECTION=", fuzz::packetFaults()));
    } catch (const RunTimeError&) {
        return 0; // the dispatch's trap takes it; the packet is dropped
    }
    if (port < 0 || port >= 128 || section < FirstParmsSection || section > LastParmsSection)
        return 0;
    try {
        const std::string first = Build_Port_Parms_Packet(section, port, tables, PacketSide::Host).substr(1);
        PortParmsTables again;
        again.resize();
        Extract_Port_Parms_Packet(first, again, fuzz::packetFaults());
        const std::string second = Build_Port_Parms_Packet(section, port, again, PacketSide::Host).substr(1);
        if (first != second && !holdsKeyText(tables, port))
            std::abort();
    } catch (const RunTimeError&) {
        // A value that took a 16-bit place fits it again; a raise here is a fault of the builder
        // or the reader unless a value holds key text.
        if (!holdsKeyText(tables, port))
            std::abort();
    }
    return 0;
}
