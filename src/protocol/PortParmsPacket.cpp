#include "protocol/PortParmsPacket.h"

#include "protocol/Framing.h"
#include "runtime/Convert.h"
#include "runtime/Text.h"

#include <array>

namespace corvane {
namespace {

using Comm = PortCommParms;
using Dc = DataCollectionParms;

template <typename R> constexpr FieldSpec<R> i16(std::string_view key, std::int16_t R::*field)
{
    return {.key = key, .encoding = Encoding::Int16, .int16 = field};
}
template <typename R> constexpr FieldSpec<R> flag(std::string_view key, std::int16_t R::*field)
{
    return {.key = key, .encoding = Encoding::Bool, .int16 = field};
}
template <typename R> constexpr FieldSpec<R> text(std::string_view key, std::string R::*field)
{
    return {.key = key, .encoding = Encoding::Text, .text = field};
}
template <typename R> constexpr FieldSpec<R> fixed(std::string_view key, std::string R::*field, std::size_t width)
{
    return {.key = key, .encoding = Encoding::Fixed, .text = field, .width = width};
}

constexpr std::array<FieldSpec<Comm>, 12> Section1 = {
    text("wstat_name=", &Comm::wstat_name),
    i16("Port_No=", &Comm::Port_No),
    i16("Baud=", &Comm::Baud),
    i16("DataType=", &Comm::DataType),
    i16("DataBits=", &Comm::DataBits),
    i16("Parity=", &Comm::Parity),
    i16("StopBits=", &Comm::StopBits),
    i16("SpecificProtocol=", &Comm::SpecificProtocol),
    i16("EobConversion=", &Comm::EobConversion),
    i16("Handshaking=", &Comm::Handshaking),
    i16("Machine_Unique_Id=", &Comm::Machine_Unique_Id),
    i16("Machine_Category_Id=", &Comm::Machine_Category_Id),
};

constexpr std::array<FieldSpec<Comm>, 7> Section2 = {
    fixed("ProgQualifier=", &Comm::ProgQualifier, 10),
    text("ContinuousFeedString=", &Comm::ContinuousFeedString),
    fixed("RequestCode=", &Comm::RequestCode, 1),
    i16("Remote_Req=", &Comm::Remote_Req),
    i16("RedirectCode=", &Comm::RedirectCode),
    flag("FileNotFoundMsgSet=", &Comm::FileNotFoundMsgSet),
    text("FileNotFoundMessage=", &Comm::FileNotFoundMessage),
};
// The host's section 2 is read qualifier, request code, feed string, then the rest in order.
constexpr std::array<std::size_t, 7> Section2ReadOrder = {0, 2, 1, 3, 4, 5, 6};

constexpr FieldSpec<Comm> EnableRemotePrintingField = {
    .key = "EnableRemotePrinting=", .encoding = Encoding::Bool, .int16 = &Comm::EnableRemotePrinting, .sentOnly = true};

constexpr std::array<FieldSpec<Comm>, 28> Section3 = {
    i16("CompressComment=", &Comm::CompressComment),
    i16("CompressLineNumber=", &Comm::CompressLineNumber),
    i16("CompressTab=", &Comm::CompressTab),
    i16("CompressSpace=", &Comm::CompressSpace),
    i16("CompressChar=", &Comm::CompressChar),
    i16("CharToCompress=", &Comm::CharToCompress),
    i16("StripHeader=", &Comm::StripHeader),
    i16("ByPassRec=", &Comm::ByPassRec),
    i16("Aux=", &Comm::Aux),
    i16("SendStbyTimeout=", &Comm::SendStbyTimeout),
    i16("SendStbyPurge=", &Comm::SendStbyPurge),
    i16("EobNullNumber=", &Comm::EobNullNumber),
    flag("StripTrailingEob=", &Comm::StripTrailingEob),
    flag("bPurgeIfInactive=", &Comm::bPurgeIfInactive),
    i16("iPurgeIfInactiveSeconds=", &Comm::iPurgeIfInactiveSeconds),
    i16("iMinimumPurgeSeconds=", &Comm::iMinimumPurgeSeconds),
    flag("bEnableNoWaitRead=", &Comm::bEnableNoWaitRead),
    flag("StripOutgoingHeader=", &Comm::StripOutgoingHeader),
    flag("OutHdrEobVal=", &Comm::OutHdrEobVal),
    flag("HandleFramingError=", &Comm::HandleFramingError),
    i16("OutHdrVal1=", &Comm::OutHdrVal1),
    i16("OutHdrVal2=", &Comm::OutHdrVal2),
    i16("OutHdrVal3=", &Comm::OutHdrVal3),
    i16("OutHdrVal4=", &Comm::OutHdrVal4),
    i16("OutHdrVal5=", &Comm::OutHdrVal5),
    i16("OutHdrVal6=", &Comm::OutHdrVal6),
    EnableRemotePrintingField,
    text("PrinterPort=", &Comm::PrinterPort),
};

constexpr std::array<FieldSpec<Comm>, 20> Section4 = {
    i16("StStr=", &Comm::StStr),
    i16("StAmt=", &Comm::StAmt),
    i16("EndStr=", &Comm::EndStr),
    i16("EndAmt=", &Comm::EndAmt),
    i16("VarStrtStr1=", &Comm::VarStrtStr1),
    i16("VarStrtStr2=", &Comm::VarStrtStr2),
    i16("VarStrtStr3=", &Comm::VarStrtStr3),
    i16("VarStrtStr4=", &Comm::VarStrtStr4),
    i16("VarStrtStr5=", &Comm::VarStrtStr5),
    i16("VarStrtStr6=", &Comm::VarStrtStr6),
    i16("VarStrtStr7=", &Comm::VarStrtStr7),
    i16("VarStrtStr8=", &Comm::VarStrtStr8),
    i16("VarEndStr1=", &Comm::VarEndStr1),
    i16("VarEndStr2=", &Comm::VarEndStr2),
    i16("VarEndStr3=", &Comm::VarEndStr3),
    i16("VarEndStr4=", &Comm::VarEndStr4),
    i16("VarEndStr5=", &Comm::VarEndStr5),
    i16("VarEndStr6=", &Comm::VarEndStr6),
    i16("VarEndStr7=", &Comm::VarEndStr7),
    i16("VarEndStr8=", &Comm::VarEndStr8),
};

constexpr std::array<FieldSpec<Comm>, 3> Section5 = {
    flag("SendConfirmFile=", &Comm::SendConfirmFile),
    text("ConfirmHeader=", &Comm::ConfirmHeader),
    text("ConfirmFooter=", &Comm::ConfirmFooter),
};

constexpr std::array<FieldSpec<Dc>, 11> Section6 = {
    i16("ExtractData=", &Dc::ExtractData),
    i16("DataStreamOption=", &Dc::DataStreamOption),
    i16("FileNameOption=", &Dc::FileNameOption),
    i16("PrintOption=", &Dc::PrintOption),
    text("SelectedPrinter=", &Dc::SelectedPrinter),
    text("DataStartString=", &Dc::DataStartString),
    text("DataTerminationString=", &Dc::DataTerminationString),
    FieldSpec<Dc>{.key = "MaxDataSegment=", .encoding = Encoding::Int32, .int32 = &Dc::MaxDataSegment},
    text("FileNameString=", &Dc::FileNameString),
    text("PrintCommandString=", &Dc::PrintCommandString),
    text("SaveToFolder=", &Dc::SaveToFolder),
};

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
template <typename R, typename RecordOf>
void extractSection(std::string_view packet, std::span<const FieldSpec<R>> fields, std::span<const std::size_t> order,
    PacketSide side, RecordOf recordOf)
{
    for (std::size_t i = 0; i < fields.size(); ++i) {
        const auto& field = fields[order.empty() ? i : order[i]];
        if (field.sentOnly && side == PacketSide::Terminal)
            continue;
        R& record = recordOf();
        store(field, record, Get_Packet_Field(packet, field.key));
    }
}

} // namespace

std::span<const FieldSpec<PortCommParms>> commParmsSection(std::int16_t section)
{
    switch (section) {
    case 1:
        return Section1;
    case 2:
        return Section2;
    case 3:
        return Section3;
    case 4:
        return Section4;
    case 5:
        return Section5;
    default:
        return {};
    }
}

std::span<const FieldSpec<DataCollectionParms>> dataCollectionSection()
{
    return Section6;
}

std::string Build_Port_Parms_Packet(std::int16_t section, std::int16_t port, PortParmsTables& tables, PacketSide side)
{
    std::string packet = packetHeader(packet_type::PortParms, section);
    appendField(packet, "Port=", numberText(port));
    if (section == LastParmsSection) {
        const DataCollectionParms& record = tables.dataCollection(port);
        for (const auto& field : Section6)
            appendField(packet, field.key, encoded(field, record));
    } else if (section >= FirstParmsSection && section < LastParmsSection) {
        PortCommParms& record = tables.commParms(port);
        for (const auto& field : commParmsSection(section)) {
            if (field.text == &PortCommParms::PrinterPort && side == PacketSide::Terminal)
                appendField(packet, field.key, printerPortToSend(record, tables.PrinterNames));
            else
                appendField(packet, field.key, encoded(field, record));
        }
    }
    return packet;
}

void Extract_Port_Parms_Packet(std::string_view packet, PortParmsTables& tables, PacketSide side)
{
    const std::int16_t port = textToInt16(Get_Packet_Field(packet, "Port="));
    const std::int16_t section = textToInt16(Get_Packet_Field(packet, "SECTION="));
    if (section == LastParmsSection) {
        extractSection<DataCollectionParms>(
            packet, Section6, {}, side, [&]() -> DataCollectionParms& { return tables.dataCollection(port); });
    } else if (section >= FirstParmsSection && section < LastParmsSection) {
        const auto order
            = section == 2 ? std::span<const std::size_t>(Section2ReadOrder) : std::span<const std::size_t>();
        extractSection<PortCommParms>(
            packet, commParmsSection(section), order, side, [&]() -> PortCommParms& { return tables.commParms(port); });
    }
}

} // namespace corvane
