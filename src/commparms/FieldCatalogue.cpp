#include "commparms/FieldCatalogue.h"

#include "commparms/FieldRules.h"

#include <array>
#include <limits>

namespace corvane {
namespace {

using Comm = PortCommParms;
using Dc = DataCollectionParms;
using namespace field_rules;

// The wire side of a row.
template <typename R> constexpr FieldSpec<R> i16(std::string_view key, std::int16_t R::*member)
{
    return {.key = key, .encoding = Encoding::Int16, .int16 = member};
}
template <typename R> constexpr FieldSpec<R> flag(std::string_view key, std::int16_t R::*member)
{
    return {.key = key, .encoding = Encoding::Bool, .int16 = member};
}
template <typename R> constexpr FieldSpec<R> text(std::string_view key, std::string R::*member)
{
    return {.key = key, .encoding = Encoding::Text, .text = member};
}
constexpr FieldSpec<Comm> fixed(std::string_view key, std::string Comm::*member, std::size_t width)
{
    return {.key = key, .encoding = Encoding::Fixed, .text = member, .width = width};
}

// The editor's side of a row.
struct Look {
    Control control = Control::None;
    EditRule edit = nullptr;
    std::string_view controlName = {};
    std::string_view caption = {};
    std::string_view anchor = {};
    EnabledWhen enabled = nullptr;
    std::int32_t lowest = 0, highest = 0;
    std::span<const std::string_view> choices = {};
    std::size_t longest = std::string::npos;
};

constexpr FieldKind kindOf(Encoding encoding)
{
    switch (encoding) {
    case Encoding::Int16:
        return FieldKind::Int16;
    case Encoding::Int32:
        return FieldKind::Int32;
    case Encoding::Bool:
        return FieldKind::Bool;
    case Encoding::Text:
    case Encoding::Fixed:
        break;
    }
    return FieldKind::Text;
}

// What a fresh port holds in a field: a number, or a text for a text field.
struct Default {
    constexpr Default(std::int32_t number_)
        : number(number_)
    {
    }
    constexpr Default(const char* text_)
        : text(text_)
        , isText(true)
    {
    }
    std::int32_t number = 0;
    std::string_view text = {};
    bool isText = false;
};

constexpr FieldRow withLook(
    FieldRow row, std::string_view key, Encoding encoding, const Look& look, const Default& fresh)
{
    row.name = key.substr(0, key.size() - 1); // the key without its "="
    row.kind = kindOf(encoding);
    if (fresh.isText != (row.kind == FieldKind::Text))
        throw "a text field's default is a text, any other field's a number"; // stops the build
    row.defaultNumber = fresh.number;
    row.defaultText = fresh.text;
    row.control = look.control;
    row.lowest = look.lowest;
    row.highest = look.choices.empty() ? look.highest : static_cast<std::int32_t>(look.choices.size()) - 1;
    row.choices = look.choices;
    row.longest = look.longest;
    row.edit = look.edit;
    row.enabled = look.enabled;
    row.controlName = look.controlName;
    row.caption = look.caption;
    row.helpAnchor = look.anchor;
    return row;
}
constexpr FieldRow row(std::int16_t section, FieldSpec<Comm> wire, const Look& look, const Default& fresh)
{
    FieldRow r;
    r.section = section;
    r.comm = wire;
    return withLook(r, wire.key, wire.encoding, look, fresh);
}
constexpr FieldRow row(std::int16_t section, FieldSpec<Dc> wire, const Look& look, const Default& fresh)
{
    FieldRow r;
    r.section = section;
    r.dataCollection = true;
    r.collection = wire;
    return withLook(r, wire.key, wire.encoding, look, fresh);
}

// Where the help page speaks of each tab.
constexpr std::string_view Editor = "commparms";
constexpr std::string_view Communications = "commparms-communications";
constexpr std::string_view Requests = "commparms-requests";
constexpr std::string_view Options = "commparms-options";
constexpr std::string_view Strings = "commparms-strings";
constexpr std::string_view Collection = "commparms-collection";

constexpr std::int32_t Int16Max = std::numeric_limits<std::int16_t>::max();

// A fresh port's defaults that the rules decide: a fresh port runs at 110 baud (the list's
// first), whose least purge time the baud rate's rule sets, and holds no outgoing header values
// while its header is not stripped (the header's rule).
constexpr std::int32_t LeastPurgeSecondsAt110 = 360;
constexpr std::int32_t NoAsciiValue = -1;

constexpr std::array<std::string_view, 15> BaudCaptions = {"110", "300", "600", "1200", "2400", "4800", "9600", "14400",
    "19200", "38400", "56000", "57600", "115200", "128000", "256000"};
constexpr std::array<std::string_view, 4> DataTypeCaptions = {"ISO", "EIA", "ASCII", "BINARY"};
constexpr std::array<std::string_view, 3> ParityCaptions = {"NONE", "EVEN", "ODD"};
constexpr std::array<std::string_view, 2> DataBitsCaptions = {"7", "8"};
constexpr std::array<std::string_view, 2> StopBitsCaptions = {"1", "2"};
constexpr std::array<std::string_view, 3> HandshakeCaptions
    = {"Xon/Xoff", "RTS/CTS (Hardware)", "Xon (starts the download)"};
constexpr std::array<std::string_view, 2> DataStreamCaptions
    = {"All data will be sent from the machine in a continuous stream",
        "Data will arrive in segments.  Append data to one file until Data Termination Identification String is "
        "recrived."};
constexpr std::array<std::string_view, 2> FileNameCaptions
    = {"Auto name with Cell, Machine Name, Date, Time", "Extract name from data stream"};
constexpr std::array<std::string_view, 3> PrintOptionCaptions = {"Always print", "Print on command", "Do not print"};

// When a control is enabled, by the rule that decides it.
constexpr bool handshakeFrame(const ControlStates& s)
{
    return s.comm.handshakeFrame;
}
constexpr bool purgeOption(const ControlStates& s)
{
    return s.comm.purgeOption;
}
constexpr bool purgeSeconds(const ControlStates& s)
{
    return s.comm.purgeSeconds;
}
constexpr bool ignoreIncomingData(const ControlStates& s)
{
    return s.comm.ignoreIncomingData;
}
constexpr bool outgoingHeader(const ControlStates& s)
{
    return s.comm.outgoingHeader;
}
constexpr bool startString(const ControlStates& s)
{
    return s.collection.startString;
}
constexpr bool streamOptions(const ControlStates& s)
{
    return s.collection.streamOptions;
}
constexpr bool terminationString(const ControlStates& s)
{
    return s.collection.terminationString;
}
constexpr bool maxSegment(const ControlStates& s)
{
    return s.collection.maxSegment;
}
constexpr bool fileNameFrame(const ControlStates& s)
{
    return s.collection.fileNameFrame;
}
constexpr bool fileNameString(const ControlStates& s)
{
    return s.collection.fileNameString;
}
constexpr bool saveFolder(const ControlStates& s)
{
    return s.collection.saveFolder;
}
constexpr bool useAdvancedFileOptions(const ControlStates& s)
{
    return s.collection.useAdvancedFileOptions;
}
constexpr bool printFrame(const ControlStates& s)
{
    return s.collection.printFrame;
}
constexpr bool printer(const ControlStates& s)
{
    return s.collection.printer;
}
constexpr bool printCommand(const ControlStates& s)
{
    return s.collection.printCommand;
}
constexpr bool useAdvancedPrintOptions(const ControlStates& s)
{
    return s.collection.useAdvancedPrintOptions;
}

constexpr Look check(std::string_view control, std::string_view caption, std::string_view anchor,
    EnabledWhen enabled = nullptr, EditRule rule = tick)
{
    return {.control = Control::Check,
        .edit = rule,
        .controlName = control,
        .caption = caption,
        .anchor = anchor,
        .enabled = enabled};
}
constexpr Look ascii(
    std::string_view control, std::string_view caption, std::string_view anchor, EnabledWhen enabled = nullptr)
{
    return {.control = Control::Ascii,
        .edit = leaveAsciiValue,
        .controlName = control,
        .caption = caption,
        .anchor = anchor,
        .enabled = enabled,
        .lowest = -1,
        .highest = 255};
}
constexpr Look typed(std::string_view control, std::string_view caption, std::string_view anchor,
    EnabledWhen enabled = nullptr, std::size_t longest = std::string::npos)
{
    return {.control = Control::Text,
        .edit = storeText,
        .controlName = control,
        .caption = caption,
        .anchor = anchor,
        .enabled = enabled,
        .longest = longest};
}
constexpr Look options(EditRule rule, std::string_view prefix, std::string_view caption, std::string_view anchor,
    std::span<const std::string_view> captions, EnabledWhen enabled = nullptr)
{
    return {.control = Control::Options,
        .edit = rule,
        .controlName = prefix,
        .caption = caption,
        .anchor = anchor,
        .enabled = enabled,
        .choices = captions};
}
constexpr Look list(EditRule rule, std::string_view control, std::string_view caption, std::string_view anchor,
    std::span<const std::string_view> captions)
{
    return {.control = Control::List,
        .edit = rule,
        .controlName = control,
        .caption = caption,
        .anchor = anchor,
        .choices = captions};
}
constexpr Look digitsField(EditRule rule, std::string_view control, std::string_view caption, std::string_view anchor,
    std::int32_t lowest, std::int32_t highest, EnabledWhen enabled = nullptr)
{
    return {.control = Control::Digits,
        .edit = rule,
        .controlName = control,
        .caption = caption,
        .anchor = anchor,
        .enabled = enabled,
        .lowest = lowest,
        .highest = highest};
}
// A field no control edits.
constexpr Look untouched(std::string_view caption)
{
    return {.caption = caption, .anchor = Editor};
}

// A field the terminal sends but never takes from the host's reply.
constexpr FieldSpec<Comm> neverTakenFromTheHost(FieldSpec<Comm> wire)
{
    wire.sentOnly = true;
    return wire;
}

// The catalogue, in wire order (the host reads the second packet's first three keys in another
// order, which the codec knows).
constexpr std::array Rows = {
    // The first packet: the connection and its serial line.
    row(1, text("wstat_name=", &Comm::wstat_name), typed("WorkstationName", "Connection/Machine", Editor), ""),
    row(1, i16("Port_No=", &Comm::Port_No), digitsField(storeDigits, "txtCommPort", "Comm Port", Editor, 0, Int16Max),
        0),
    row(1, i16("Baud=", &Comm::Baud),
        list(choose<BaudRates_Click>, "BaudRates", "Baud Rate", Communications, BaudCaptions), 0),
    row(1, i16("DataType=", &Comm::DataType),
        options(choose<DataType_Click>, "DataType_", "Data Type", Communications, DataTypeCaptions), 0),
    row(1, i16("DataBits=", &Comm::DataBits),
        options(storeChoice, "DataBits_", "Data Bits", Communications, DataBitsCaptions), 0),
    // A fresh port is ISO, whose rule sets even parity and 7 data bits.
    row(1, i16("Parity=", &Comm::Parity), options(storeChoice, "Parity_", "Parity", Communications, ParityCaptions), 1),
    row(1, i16("StopBits=", &Comm::StopBits),
        options(storeChoice, "StopBits_", "Stop Bits", Communications, StopBitsCaptions), 0),
    row(1, i16("SpecificProtocol=", &Comm::SpecificProtocol),
        list(choose<SpecificProtocols_Click>, "SpecificProtocols", "Protocol", Communications, ProtocolCaptions), 0),
    row(1, i16("EobConversion=", &Comm::EobConversion),
        list(choose<EndofBlock_Click>, "EndofBlock", "End of Block", Communications, EndOfBlockCaptions), 0),
    row(1, i16("Handshaking=", &Comm::Handshaking),
        options(choose<Handshake_Click>, "Handshake_", "Handshake", Communications, HandshakeCaptions, handshakeFrame),
        0),
    row(1, i16("Machine_Unique_Id=", &Comm::Machine_Unique_Id),
        {.control = Control::List,
            .edit = chooseMachineType,
            .controlName = "cboMachineTypes",
            .caption = "Machine Type",
            .anchor = Editor,
            .highest = Int16Max},
        0),
    row(1, i16("Machine_Category_Id=", &Comm::Machine_Category_Id), untouched("Machine category"), 0),

    // The second packet: remote requests. A fixed-width text is blanks at its width when fresh, as
    // it travels.
    row(2, fixed("ProgQualifier=", &Comm::ProgQualifier, 10),
        typed("ProgQualifier", "NC Program Qualifier String", Requests, nullptr, 10), "          "),
    row(2, text("ContinuousFeedString=", &Comm::ContinuousFeedString),
        typed("ContinuousFeedString", "Continuous Feed String", Requests), ""),
    row(2, fixed("RequestCode=", &Comm::RequestCode, 1), typed("RequestCode", "Request Code", Requests, nullptr, 1),
        " "),
    row(2, i16("Remote_Req=", &Comm::Remote_Req),
        list(choose<KeyPad_Click>, "KeyPad", "Key Pad", Requests, KeyPadCaptions), 0),
    row(2, i16("RedirectCode=", &Comm::RedirectCode),
        {.control = Control::Text,
            .edit = changeRedirectCode,
            .controlName = "RedirectCode",
            .caption = "Redirect Code",
            .anchor = Requests,
            .highest = 255,
            .longest = 1},
        0),
    row(2, flag("FileNotFoundMsgSet=", &Comm::FileNotFoundMsgSet),
        check("chkFileNotFoundMsg", "File Not Found Message", Requests), FalseValue),
    row(2, text("FileNotFoundMessage=", &Comm::FileNotFoundMessage),
        typed("txtFileNotFoundMsg", "File Not Found Message text", Requests), ""),

    // The third packet: receiving, compression, sending, the outgoing header and remote printing.
    row(3, i16("CompressComment=", &Comm::CompressComment), check("Comment", "Compress Comments", Options), 0),
    row(3, i16("CompressLineNumber=", &Comm::CompressLineNumber), check("LineNums", "Compress Line Numbers", Options),
        0),
    row(3, i16("CompressTab=", &Comm::CompressTab), check("Tabs", "Compress Tabs", Options), 0),
    row(3, i16("CompressSpace=", &Comm::CompressSpace), check("Spaces", "Compress Spaces", Options), 0),
    row(3, i16("CompressChar=", &Comm::CompressChar), check("Char", "Compress Character", Options), 0),
    row(3, i16("CharToCompress=", &Comm::CharToCompress), ascii("CharVal", "Character to compress", Options), 0),
    row(3, i16("StripHeader=", &Comm::StripHeader), check("StripHeader", "Strip Header on Incoming Data", Options), 0),
    row(3, i16("ByPassRec=", &Comm::ByPassRec), check("BypassRecAdmin", "Bypass Receive File Admin.", Options), 0),
    row(3, i16("Aux=", &Comm::Aux),
        check("IgnoreIncomingData", "Ignore Incoming Data while Sending", Options, ignoreIncomingData), 0),
    row(3, i16("SendStbyTimeout=", &Comm::SendStbyTimeout),
        check("SendStbyTimeout", "Use Send Standby Timeout", Options), 0),
    row(3, i16("SendStbyPurge=", &Comm::SendStbyPurge), check("SendStbyPurge", "Use Send Standby Purge", Options), 0),
    row(3, i16("EobNullNumber=", &Comm::EobNullNumber),
        digitsField(changeEobNulls, "txtEobNumNulls", "E.O.B Nulls", Communications, 0, MostEobNulls), 0),
    row(3, flag("StripTrailingEob=", &Comm::StripTrailingEob),
        check("StripTrailingEOB", "Strip Trailing End of Blocks", Communications), FalseValue),
    row(3, flag("bPurgeIfInactive=", &Comm::bPurgeIfInactive),
        check("ckPurgeIfInactive", "Purge If Sending and Inactive", Options, purgeOption, tickPurgeIfInactive),
        FalseValue),
    row(3, i16("iPurgeIfInactiveSeconds=", &Comm::iPurgeIfInactiveSeconds),
        digitsField(
            leavePurgeSeconds, "txtPurgeIfInactiveSeconds", "Purge after seconds", Options, 1, Int16Max, purgeSeconds),
        LeastPurgeSecondsAt110),
    row(3, i16("iMinimumPurgeSeconds=", &Comm::iMinimumPurgeSeconds), untouched("Least purge seconds"),
        LeastPurgeSecondsAt110),
    row(3, flag("bEnableNoWaitRead=", &Comm::bEnableNoWaitRead),
        check("ckEnableNoWaitRead", "Enable No-Wait Read", Communications, nullptr, tickNoWaitRead), FalseValue),
    row(3, flag("StripOutgoingHeader=", &Comm::StripOutgoingHeader),
        check("StripOutgoingHeader", "Strip Header on Outgoing Data", Options, nullptr, tickStripOutgoingHeader),
        FalseValue),
    row(3, flag("OutHdrEobVal=", &Comm::OutHdrEobVal),
        check("chkOutHdrEOBVal", "End of Outgoing Header EOB", Options, outgoingHeader), FalseValue),
    row(3, flag("HandleFramingError=", &Comm::HandleFramingError),
        check("HandleFramingError", "Handle Framing or Parity Errors", Communications), FalseValue),
    row(3, i16("OutHdrVal1=", &Comm::OutHdrVal1),
        ascii("txtOutHdrVal1", "End of Outgoing Header 1", Options, outgoingHeader), NoAsciiValue),
    row(3, i16("OutHdrVal2=", &Comm::OutHdrVal2),
        ascii("txtOutHdrVal2", "End of Outgoing Header 2", Options, outgoingHeader), NoAsciiValue),
    row(3, i16("OutHdrVal3=", &Comm::OutHdrVal3),
        ascii("txtOutHdrVal3", "End of Outgoing Header 3", Options, outgoingHeader), NoAsciiValue),
    row(3, i16("OutHdrVal4=", &Comm::OutHdrVal4),
        ascii("txtOutHdrVal4", "End of Outgoing Header 4", Options, outgoingHeader), NoAsciiValue),
    row(3, i16("OutHdrVal5=", &Comm::OutHdrVal5),
        ascii("txtOutHdrVal5", "End of Outgoing Header 5", Options, outgoingHeader), NoAsciiValue),
    row(3, i16("OutHdrVal6=", &Comm::OutHdrVal6),
        ascii("txtOutHdrVal6", "End of Outgoing Header 6", Options, outgoingHeader), NoAsciiValue),
    row(3, neverTakenFromTheHost(flag("EnableRemotePrinting=", &Comm::EnableRemotePrinting)),
        check("chkEnableRemotePrint", "Enable Remote Printing", Options), 0),
    row(3, text("PrinterPort=", &Comm::PrinterPort), typed("cbPrinter", "Remote printer", Options), ""),

    // The fourth packet: start and end strings.
    row(4, i16("StStr=", &Comm::StStr), ascii("StartChar", "Start Char", Strings), 0),
    row(4, i16("StAmt=", &Comm::StAmt),
        digitsField(storeDigits, "StartAmt", "Start Char occurrence", Strings, 0, Int16Max), 0),
    row(4, i16("EndStr=", &Comm::EndStr), ascii("EndChar", "End Char", Strings), 0),
    row(4, i16("EndAmt=", &Comm::EndAmt),
        digitsField(storeDigits, "EndAmt", "End Char occurrence", Strings, 0, Int16Max), 0),
    row(4, i16("VarStrtStr1=", &Comm::VarStrtStr1), ascii("StartStrVal_1", "Start String 1", Strings), 0),
    row(4, i16("VarStrtStr2=", &Comm::VarStrtStr2), ascii("StartStrVal_2", "Start String 2", Strings), 0),
    row(4, i16("VarStrtStr3=", &Comm::VarStrtStr3), ascii("StartStrVal_3", "Start String 3", Strings), 0),
    row(4, i16("VarStrtStr4=", &Comm::VarStrtStr4), ascii("StartStrVal_4", "Start String 4", Strings), 0),
    row(4, i16("VarStrtStr5=", &Comm::VarStrtStr5), ascii("StartStrVal_5", "Start String 5", Strings), 0),
    row(4, i16("VarStrtStr6=", &Comm::VarStrtStr6), ascii("StartStrVal_6", "Start String 6", Strings), 0),
    row(4, i16("VarStrtStr7=", &Comm::VarStrtStr7), ascii("StartStrVal_7", "Start String 7", Strings), 0),
    row(4, i16("VarStrtStr8=", &Comm::VarStrtStr8), ascii("StartStrVal_8", "Start String 8", Strings), 0),
    row(4, i16("VarEndStr1=", &Comm::VarEndStr1), ascii("EndStrVal_1", "End String 1", Strings), 0),
    row(4, i16("VarEndStr2=", &Comm::VarEndStr2), ascii("EndStrVal_2", "End String 2", Strings), 0),
    row(4, i16("VarEndStr3=", &Comm::VarEndStr3), ascii("EndStrVal_3", "End String 3", Strings), 0),
    row(4, i16("VarEndStr4=", &Comm::VarEndStr4), ascii("EndStrVal_4", "End String 4", Strings), 0),
    row(4, i16("VarEndStr5=", &Comm::VarEndStr5), ascii("EndStrVal_5", "End String 5", Strings), 0),
    row(4, i16("VarEndStr6=", &Comm::VarEndStr6), ascii("EndStrVal_6", "End String 6", Strings), 0),
    row(4, i16("VarEndStr7=", &Comm::VarEndStr7), ascii("EndStrVal_7", "End String 7", Strings), 0),
    row(4, i16("VarEndStr8=", &Comm::VarEndStr8), ascii("EndStrVal_8", "End String 8", Strings), 0),

    // The fifth packet: the confirmation file.
    row(5, flag("SendConfirmFile=", &Comm::SendConfirmFile),
        check("ckSendConfirmFile", "Send Confirmation File After Receive", Requests), FalseValue),
    row(5, text("ConfirmHeader=", &Comm::ConfirmHeader), typed("txtConfirmHeader", "Confirmation Header", Requests),
        ""),
    row(5, text("ConfirmFooter=", &Comm::ConfirmFooter), typed("txtConfirmFooter", "Confirmation Footer", Requests),
        ""),

    // The sixth packet: data collection.
    row(6, i16("ExtractData=", &Dc::ExtractData),
        check("chkExtractData", "Extract Data From Incoming Stream", Collection), 0),
    row(6, i16("DataStreamOption=", &Dc::DataStreamOption),
        options(storeChoice, "optDataStream_", "Data stream", Collection, DataStreamCaptions, streamOptions), 0),
    row(6, i16("FileNameOption=", &Dc::FileNameOption),
        options(storeChoice, "optFileName_", "File Naming Options", Collection, FileNameCaptions, fileNameFrame), 0),
    row(6, i16("PrintOption=", &Dc::PrintOption),
        options(storeChoice, "optPrintOptions_", "Print Options", Collection, PrintOptionCaptions, printFrame), 0),
    row(6, text("SelectedPrinter=", &Dc::SelectedPrinter), typed("cboPrinters", "Print To", Collection, printer), ""),
    row(6, text("DataStartString=", &Dc::DataStartString),
        typed("txtDataStartString", "Data Start Identification String", Collection, startString), ""),
    row(6, text("DataTerminationString=", &Dc::DataTerminationString),
        typed("txtDataTerminationString", "Data Termination Identifier String", Collection, terminationString), ""),
    row(6, FieldSpec<Dc>{.key = "MaxDataSegment=", .encoding = Encoding::Int32, .int32 = &Dc::MaxDataSegment},
        digitsField(leaveSegmentLength, "txtMaxSegment", "Maximum Segment Length", Collection, LeastSegmentLength,
            MostSegmentLength, maxSegment),
        MostSegmentLength),
    row(6, text("FileNameString=", &Dc::FileNameString),
        typed("txtFileNameString", "File Name Identifier String", Collection, fileNameString), ""),
    row(6, text("PrintCommandString=", &Dc::PrintCommandString),
        typed("txtPrintCommandString", "Print Command String", Collection, printCommand), ""),
    row(6, text("SaveToFolder=", &Dc::SaveToFolder),
        {.control = Control::Text,
            .edit = chooseSaveFolder,
            .controlName = "txtSaveToFolder",
            .caption = "Save To Folder",
            .anchor = Collection,
            .enabled = saveFolder},
        ""),

    // Kept by this terminal only.
    row(NotCarried, i16("AppendDateAndTime=", &Dc::AppendDateAndTime),
        check("chkAppendDateAndTime", "Append date and time to extracted name", Collection, fileNameString), 0),
    row(NotCarried, i16("UseAdvancedFileOptions=", &Dc::UseAdvancedFileOptions),
        check("chkUseAdvancedFileOptions", "Use advanced file options", Collection, useAdvancedFileOptions), 0),
    row(NotCarried, i16("UseAdvancedPrintOptions=", &Dc::UseAdvancedPrintOptions),
        check("chkUseAdvancedPrintOptions", "Use advanced print options", Collection, useAdvancedPrintOptions), 0),
};

} // namespace

ControlStates controlStates(const PortCommParms& p, const DataCollectionParms& d)
{
    return {commControlStates(p), dataCollectionStates(d)};
}

std::span<const FieldRow> fieldCatalogue()
{
    return Rows;
}

const FieldRow* findField(std::string_view name)
{
    for (const FieldRow& r : Rows)
        if (r.name == name)
            return &r;
    return nullptr;
}

std::span<const FieldRow> sectionFields(std::int16_t section)
{
    const FieldRow* first = nullptr;
    std::size_t count = 0;
    for (const FieldRow& r : Rows)
        if (r.section == section && section != NotCarried) {
            if (first == nullptr)
                first = &r;
            ++count;
        }
    return first == nullptr ? std::span<const FieldRow>() : std::span<const FieldRow>(first, count);
}

const FieldRow* fieldOfControl(std::string_view objectName)
{
    for (const FieldRow& r : Rows) {
        if (r.controlName.empty())
            continue;
        if (r.controlName == objectName)
            return &r;
        // An option group's buttons: the prefix and a code of the group.
        if (r.control == Control::Options && objectName.starts_with(r.controlName)) {
            const std::string_view code = objectName.substr(r.controlName.size());
            if (code.size() == 1 && code[0] >= '0' && code[0] - '0' <= r.highest)
                return &r;
        }
    }
    return nullptr;
}

} // namespace corvane
