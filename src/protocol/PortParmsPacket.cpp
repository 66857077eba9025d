#include "protocol/PortParmsPacket.h"

#include "protocol/Framing.h"
#include "runtime/Convert.h"
#include "runtime/Text.h"

#include <array>
#include <type_traits>

namespace corvane {
namespace {

// The host's section 2 is read qualifier, request code, feed string, then the rest in order.
constexpr std::array<std::size_t, 7> Section2ReadOrder = {0, 2, 1, 3, 4, 5, 6};

template <typename R> std::string encoded(const FieldSpec<R>& field, const R& record)
{
    switch (field.encoding) {
    case Encoding::Int16:
        return numberText(record.*field.int16);
    case Encoding::Int32:
        return numberText(record.*field.int32);
    case Encoding::Bool:
        return boolText(record.*field.int16);
    case Encoding::Text:
        return record.*field.text;
    case Encoding::Fixed:
        return fixedWidth(record.*field.text, field.width);
    }
    return {};
}

template <typename R> void store(const FieldSpec<R>& field, R& record, const std::string& value)
{
    switch (field.encoding) {
    case Encoding::Int16:
        record.*field.int16 = textToInt16(value);
        break;
    case Encoding::Int32:
        record.*field.int32 = textToInt32(value);
        break;
    case Encoding::Bool:
        record.*field.int16 = textToBool(value);
        break;
    case Encoding::Text:
        record.*field.text = value;
        break;
    case Encoding::Fixed:
        record.*field.text = fixedWidth(value, field.width);
        break;
    }
}

// The printer port to send. Remote printing off sends it empty; on with none chosen takes the
// first installed printer into the record. With no printer installed at all there is nothing to
// take, and the port goes out empty rather than failing the whole update.
std::string printerPortToSend(PortCommParms& record, const std::vector<std::string>& printerNames)
{
    if (record.EnableRemotePrinting == 0)
        return {};
    if (record.PrinterPort.empty() && !printerNames.empty())
        record.PrinterPort = printerNames.front();
    return record.PrinterPort;
}

// Each field is stored as soon as it is read, so a field that fails leaves the earlier ones in
// place. The record is looked up per field: a port with no record fails before anything is read.
template <typename R> const FieldSpec<R>& wireOf(const FieldRow& row)
{
    if constexpr (std::is_same_v<R, DataCollectionParms>)
        return row.collection;
    else
        return row.comm;
}

template <typename R, typename RecordOf>
void extractSection(std::string_view packet, std::span<const FieldRow> rows, std::span<const std::size_t> order,
    PacketSide side, const PacketFaults& faults, RecordOf recordOf)
{
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const FieldSpec<R>& field = wireOf<R>(rows[order.empty() ? i : order[i]]);
        if (field.sentOnly && side == PacketSide::Terminal)
            continue;
        R& record = recordOf();
        store(field, record, Get_Packet_Field(packet, field.key, faults));
    }
}

} // namespace

std::string Build_Port_Parms_Packet(std::int16_t section, std::int16_t port, PortParmsTables& tables, PacketSide side)
{
    std::string packet = packetHeader(packet_type::PortParms, section);
    appendField(packet, "Port=", numberText(port));
    if (section == LastParmsSection) {
        const DataCollectionParms& record = tables.dataCollection(port);
        for (const FieldRow& row : sectionFields(section))
            appendField(packet, row.collection.key, encoded(row.collection, record));
    } else if (section >= FirstParmsSection && section < LastParmsSection) {
        PortCommParms& record = tables.commParms(port);
        for (const FieldRow& row : sectionFields(section)) {
            const FieldSpec<PortCommParms>& field = row.comm;
            if (field.text == &PortCommParms::PrinterPort && side == PacketSide::Terminal)
                appendField(packet, field.key, printerPortToSend(record, tables.PrinterNames));
            else
                appendField(packet, field.key, encoded(field, record));
        }
    }
    return packet;
}

void Extract_Port_Parms_Packet(
    std::string_view packet, PortParmsTables& tables, const PacketFaults& faults, PacketSide side)
{
    const std::int16_t port = textToInt16(Get_Packet_Field(packet, "Port=", faults));
    const std::int16_t section = textToInt16(Get_Packet_Field(packet, "SECTION=", faults));
    if (section == LastParmsSection) {
        extractSection<DataCollectionParms>(packet, sectionFields(section), {}, side, faults,
            [&]() -> DataCollectionParms& { return tables.dataCollection(port); });
    } else if (section >= FirstParmsSection && section < LastParmsSection) {
        const auto order
            = section == 2 ? std::span<const std::size_t>(Section2ReadOrder) : std::span<const std::size_t>();
        extractSection<PortCommParms>(
            packet, sectionFields(section), order, side, faults, [&]() -> PortCommParms& { return tables.commParms(port); });
    }
}

} // namespace corvane
