#pragma once

#include "runtime/Convert.h"

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

// A port's communication and data-handling parameters, as the host keeps them. Field names are
// the packet keys. "flag" fields hold -1 (on) or 0 (off); Bool16 fields are booleans that the
// packet carries as "True"/"False"; the rest are 16-bit unless marked 32-bit.
struct PortCommParms {
    std::string wstat_name;
    std::int16_t Port_No = 0;
    std::int16_t Baud = 0; // index into BaudRates
    std::int16_t DataType = 0; // 0 ISO, 1 EIA, 2 ASCII, 3 BINARY
    std::int16_t DataBits = 0; // 0 = 7 bits, 1 = 8 bits
    std::int16_t Parity = 0; // 0 NONE, 1 EVEN, 2 ODD
    std::int16_t StopBits = 0; // 0 = 1 bit, 1 = 2 bits
    std::int16_t SpecificProtocol = 0;
    std::int16_t EobConversion = 0; // index into EndOfBlockCaptions
    std::int16_t Handshaking = 0; // 0 Xon/Xoff, 1 RTS/CTS, 2 Xon
    std::int16_t Machine_Unique_Id = 0;
    std::int16_t Machine_Category_Id = 0;
    std::string ProgQualifier; // travels as exactly 10 characters
    std::string RequestCode; // travels as exactly 1 character
    std::string ContinuousFeedString;
    std::int16_t Remote_Req = 0; // 0 none, 1 Burr-Brown, 2 QSI Terminal
    std::int16_t RedirectCode = 0;
    Bool16 FileNotFoundMsgSet = FalseValue;
    std::string FileNotFoundMessage;
    std::int16_t CompressComment = 0; // flag
    std::int16_t CompressLineNumber = 0;
    std::int16_t CompressTab = 0;
    std::int16_t CompressSpace = 0;
    std::int16_t CompressChar = 0;
    std::int16_t CharToCompress = 0;
    std::int16_t StripHeader = 0; // flag
    std::int16_t ByPassRec = 0;
    std::int16_t Aux = 0;
    std::int16_t SendStbyTimeout = 0;
    std::int16_t SendStbyPurge = 0;
    std::int16_t EobNullNumber = 0;
    Bool16 StripTrailingEob = FalseValue;
    Bool16 bPurgeIfInactive = FalseValue;
    std::int16_t iPurgeIfInactiveSeconds = 0;
    std::int16_t iMinimumPurgeSeconds = 0;
    Bool16 bEnableNoWaitRead = FalseValue;
    Bool16 StripOutgoingHeader = FalseValue;
    Bool16 OutHdrEobVal = FalseValue;
    Bool16 HandleFramingError = FalseValue;
    std::int16_t OutHdrVal1 = 0, OutHdrVal2 = 0, OutHdrVal3 = 0, OutHdrVal4 = 0, OutHdrVal5 = 0, OutHdrVal6 = 0;
    std::int16_t EnableRemotePrinting = 0; // flag; sent, never taken from the host
    std::string PrinterPort;
    std::int16_t StStr = 0;
    std::int16_t StAmt = 0;
    std::int16_t EndStr = 0;
    std::int16_t EndAmt = 0;
    std::int16_t VarStrtStr1 = 0, VarStrtStr2 = 0, VarStrtStr3 = 0, VarStrtStr4 = 0;
    std::int16_t VarStrtStr5 = 0, VarStrtStr6 = 0, VarStrtStr7 = 0, VarStrtStr8 = 0;
    std::int16_t VarEndStr1 = 0, VarEndStr2 = 0, VarEndStr3 = 0, VarEndStr4 = 0;
    std::int16_t VarEndStr5 = 0, VarEndStr6 = 0, VarEndStr7 = 0, VarEndStr8 = 0;
    Bool16 SendConfirmFile = FalseValue;
    std::string ConfirmHeader;
    std::string ConfirmFooter;

    bool operator==(const PortCommParms&) const = default;
};

// A port's data collection options. Its on/off fields hold 1 or 0, unlike the -1 flags above.
struct DataCollectionParms {
    std::int16_t ExtractData = 0;
    std::int16_t DataStreamOption = 0; // 0 continuous stream, 1 segments
    std::int16_t FileNameOption = 0; // 0 automatic, 1 extracted from the stream
    std::int16_t PrintOption = 0; // 0 always, 1 on command, 2 never
    std::string SelectedPrinter;
    std::string DataStartString;
    std::string DataTerminationString;
    std::int32_t MaxDataSegment = 0; // 50-1000
    std::string FileNameString;
    std::string PrintCommandString;
    std::string SaveToFolder;
    std::int16_t AppendDateAndTime = 0;
    std::int16_t UseAdvancedFileOptions = 0;
    std::int16_t UseAdvancedPrintOptions = 0;

    bool operator==(const DataCollectionParms&) const = default;
};

inline constexpr int PortCount = 128;

// Rates of the `Baud` indexes 0-14.
inline constexpr std::array<std::int32_t, 15> BaudRates
    = {110, 300, 600, 1200, 2400, 4800, 9600, 14400, 19200, 38400, 56000, 57600, 115200, 128000, 256000};

// Captions of the `EobConversion` indexes 0-6, blanks as the lists show them.
inline constexpr std::array<std::string_view, 7> EndOfBlockCaptions = {"CR LF        (default)", "LF              (10)",
    "CR             (13)", "LF CR CR  (10 13 13)", "$ CR LF     (36 13 10)", "No Conversion", "LF CR        (10 13)"};

// Every port's records, indexed by port number as the main screen's rows number them (from 0),
// and the installed printers that remote printing falls back on.
// Both records of one port, as one value.
struct PortRecords {
    PortCommParms comm;
    DataCollectionParms collection;
    bool operator==(const PortRecords&) const = default;
};

struct PortParmsTables {
    std::vector<PortCommParms> PortCommParmsTable;
    std::vector<DataCollectionParms> DataCollectionTable;
    std::vector<std::string> PrinterNames;

    // Both tables sized to `PortCount` empty records.
    void resize();
    // The records of a port; a port with no record raises "Subscript out of range".
    PortCommParms& commParms(std::int16_t port);
    DataCollectionParms& dataCollection(std::int16_t port);
    PortRecords records(std::int16_t port) const;
    void setRecords(std::int16_t port, const PortRecords& records)
    {
        commParms(port) = records.comm;
        dataCollection(port) = records.collection;
    }
};

} // namespace corvane
