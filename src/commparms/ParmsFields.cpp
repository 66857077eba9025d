#include "commparms/ParmsFields.h"

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

} // namespace corvane
