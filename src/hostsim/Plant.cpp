#include "hostsim/Plant.h"

#include "commparms/RecordFields.h"
#include "hostsim/HostPackets.h"
#include "protocol/PortParmsPacket.h"
#include "runtime/Convert.h"
#include "runtime/RunTimeError.h"
#include "runtime/Text.h"

#include <array>
#include <string_view>

namespace corvane::hostsim {
namespace {

struct Machine {
    int row;
    const char* name;
    const char* program;
    const char* status;
    long bytes;
    std::int16_t machineType;
};

// A plant of lathes and machining centres, a few grinders and EDMs, and the FTP-fed cells.
constexpr std::array<Machine, 36> Machines = {{
    {0, "LATHE 01", "O1001.NC", "Sending", 18432, 1},
    {1, "LATHE 02", "O1002.NC", "Idle", 0, 1},
    {2, "LATHE 03", "O2210.NC", "Receiving", 4096, 1},
    {3, "VMC 01", "O5100.NC", "Sending", 102400, 2},
    {4, "VMC 02", "O5101.NC", "Idle", 0, 2},
    {5, "VMC 03", "O5230.NC", "Waiting", 0, 2},
    {6, "VMC 04", "O5240.NC", "Sending", 512, 2},
    {7, "HMC 01", "O7001.MPF", "Sending", 233472, 4},
    {8, "HMC 02", "O7002.MPF", "Complete", 61440, 4},
    {9, "HMC 03", "O7003.MPF", "Idle", 0, 4},
    {10, "5-AXIS 01", "IMPELLER.H", "Sending", 1048576, 3},
    {11, "5-AXIS 02", "BLISK_R2.H", "Idle", 0, 3},
    {12, "GRINDER 1", "G100.NC", "Idle", 0, 5},
    {13, "GRINDER 2", "G120.NC", "Error", 2048, 5},
    {14, "EDM 1", "E300.NC", "Receiving", 16384, 6},
    {15, "EDM 2", "", "Disabled", 0, 6},
    {16, "MILL-TURN 1", "O8800.NC", "Sending", 40960, 1},
    {17, "MILL-TURN 2", "O8801.NC", "Idle", 0, 1},
    {18, "ROUTER 1", "PANEL_A.NC", "Sending", 786432, 2},
    {19, "PUNCH 1", "P4410.NC", "Idle", 0, 2},
    {20, "CMM 1", "", "Waiting", 0, 3},
    {21, "SWISS 01", "O3100.NC", "Sending", 9216, 1},
    {22, "SWISS 02", "O3101.NC", "Idle", 0, 1},
    {23, "SWISS 03", "O3102.NC", "Receiving", 1024, 1},
    {24, "CELL A FTP", "", "FTP", 0, 2},
    {25, "CELL B TIMER", "", "Timer Folder", 0, 2},
    {26, "CELL C DC", "", "DC + FTP", 0, 4},
    {27, "CELL D DC", "", "DC + TMR FLDR", 0, 4},
    {32, "LATHE 10", "O1010.NC", "Idle", 0, 1},
    {33, "LATHE 11", "O1011.NC", "Sending", 3072, 1},
    {40, "VMC 10", "O5900.NC", "Idle", 0, 2},
    {41, "VMC 11", "O5901.NC", "Sending", 65536, 2},
    {48, "TOOL ROOM", "O9000.NC", "Idle", 0, 3},
    {63, "TRAINING", "DEMO.NC", "Idle", 0, 2},
    {64, "BAY 2 LATHE", "O1200.NC", "Complete", 8192, 1},
    {127, "SPARE", "", "Disabled", 0, 2},
}};

// How long each sending program is; a port that reaches it has finished.
constexpr long ProgramLength = 1 << 21;

const std::array<MachineTypeRecord, 6> Types = {{
    {1, "FANUC 0i-TF LATHE", "C:\\DNC\\LATHES", 'F'},
    {2, "FANUC 0i-MF MILL", "C:\\DNC\\MILLS", 'F'},
    {3, "HEIDENHAIN TNC 640", "C:\\DNC\\5AXIS", 'H'},
    {4, "SIEMENS 840D", "C:\\DNC\\HMC", 'S'},
    {5, "GRINDER GENERIC", "C:\\DNC\\GRIND", 'G'},
    {6, "EDM GENERIC", "C:\\DNC\\EDM", ' '},
}};

void configure(PortCommParms& p, DataCollectionParms& dc, const Machine& m)
{
    const std::string_view name = m.name;
    p.wstat_name = m.name;
    p.Port_No = static_cast<std::int16_t>(m.row + 1);
    p.Machine_Unique_Id = m.machineType;
    p.Machine_Category_Id = static_cast<std::int16_t>(m.machineType <= 2 ? 10 : 20);
    p.Baud = static_cast<std::int16_t>(name.starts_with("5-AXIS") || name.starts_with("HMC") ? 8
            : m.row % 5 == 0                                                                 ? 4
                                                                                             : 6);
    p.DataType = static_cast<std::int16_t>(name.starts_with("5-AXIS") ? 2 : 0); // ASCII for the conversational ones
    p.DataBits = static_cast<std::int16_t>(p.DataType == 0 ? 0 : 1);
    p.Parity = static_cast<std::int16_t>(p.DataType == 0 ? 1 : 0);
    p.StopBits = static_cast<std::int16_t>(m.row % 7 == 0 ? 1 : 0);
    p.SpecificProtocol = static_cast<std::int16_t>(name.starts_with("5-AXIS") ? 2 : 0);
    p.EobConversion = static_cast<std::int16_t>(m.machineType == 4 ? 1 : 0);
    p.Handshaking = static_cast<std::int16_t>(p.Baud >= 8 ? 1 : 0);
    p.ProgQualifier = fixedWidth(m.machineType == 3 ? "" : "O", 10); // held as the wire carries it
    p.RequestCode = "%";
    p.ContinuousFeedString = m.row % 2 ? "%" : "";
    p.Remote_Req = static_cast<std::int16_t>(m.row % 9 == 0 ? 1 : 0);
    p.FileNotFoundMsgSet = m.row % 3 == 0 ? TrueValue : FalseValue;
    p.FileNotFoundMessage = "(" + p.wstat_name + " - FILE NOT FOUND)";
    p.CompressComment = p.CompressSpace = static_cast<std::int16_t>(m.row % 4 == 0 ? -1 : 0);
    p.EobNullNumber = static_cast<std::int16_t>(p.Baud <= 4 ? 10 : 0);
    p.bPurgeIfInactive = m.row % 2 == 0 ? TrueValue : FalseValue;
    p.iMinimumPurgeSeconds = static_cast<std::int16_t>(p.Baud <= 4 ? 60 : 30);
    p.iPurgeIfInactiveSeconds = static_cast<std::int16_t>(p.iMinimumPurgeSeconds * 2);
    p.OutHdrVal1 = 37; // %
    p.EnableRemotePrinting = static_cast<std::int16_t>(m.row % 6 == 0 ? -1 : 0);
    p.PrinterPort = p.EnableRemotePrinting ? "Shop Floor Laser" : "";
    p.StStr = 37;
    p.StAmt = 1;
    p.EndStr = 37;
    p.EndAmt = 2;
    p.SendConfirmFile = m.row % 5 == 0 ? TrueValue : FalseValue;
    p.ConfirmHeader = "%";
    p.ConfirmFooter = "M30";

    // Grinders, EDMs and the data-collection cells report their measurements.
    if (m.machineType >= 5 || name.starts_with("CELL C") || name.starts_with("CELL D")) {
        dc.ExtractData = 1;
        dc.DataStreamOption = 1;
        dc.FileNameOption = 1;
        dc.PrintOption = 2;
        dc.DataStartString = "(DATA START)";
        dc.DataTerminationString = "(DATA END)";
        dc.MaxDataSegment = 500;
        dc.FileNameString = "(FILE=";
        dc.SaveToFolder = "C:\\DNC\\COLLECTED\\" + p.wstat_name;
    }
}

} // namespace

Plant Plant::demo()
{
    Plant plant;
    plant.status.assign(PortCount, PortStatusRecord{"", "", "Not Configured", "0", ""});
    // Every port starts as a fresh one; the machines' ports are then set up for them.
    const PortRecords fresh = freshPort();
    plant.parms.PortCommParmsTable.assign(PortCount, fresh.comm);
    plant.parms.DataCollectionTable.assign(PortCount, fresh.collection);
    for (const Machine& m : Machines) {
        const auto row = static_cast<std::size_t>(m.row);
        plant.status[row] = {m.name, m.program, m.status, std::to_string(m.bytes), std::to_string(100 + m.row)};
        configure(plant.parms.PortCommParmsTable[row], plant.parms.DataCollectionTable[row], m);
    }
    plant.machineTypes.assign(Types.begin(), Types.end());
    return plant;
}

bool Plant::isSending(int row) const
{
    return row >= 0 && static_cast<std::size_t>(row) < status.size()
        && status[static_cast<std::size_t>(row)].Status == "Sending";
}

void Plant::advance()
{
    for (std::size_t row = 0; row < status.size(); ++row) {
        if (!isSending(static_cast<int>(row)))
            continue;
        PortStatusRecord& s = status[row];
        // Faster lines move more bytes between two looks: 9600 baud is about 1 KiB a second.
        const long step = 1024L * (1 + parms.PortCommParmsTable[row].Baud / 4);
        const long bytes = std::stol(s.ByteCount) + step;
        if (bytes >= ProgramLength) {
            s.Status = "Complete";
            s.ByteCount = std::to_string(ProgramLength);
        } else {
            s.ByteCount = std::to_string(bytes);
        }
    }
}

namespace {

// The settings a serial port of the host can actually take: every choice within its list.
std::string valueNoPortCanHold(const PortCommParms& p, const DataCollectionParms& dc)
{
    for (const FieldRow& row : fieldCatalogue()) {
        if (!row.isChoice())
            continue;
        const auto value = std::get<std::int64_t>(fieldValue(p, dc, row));
        if (value < row.lowest || value > row.highest)
            return std::string(row.name) + "=" + std::to_string(value);
    }
    return {};
}

} // namespace

bool Plant::storeUpdate(std::string_view packet, std::string& refused)
{
    PortParmsTables updated = parms;
    std::size_t port = 0;
    std::string fault; // a field the packet lacks: the update is not taken in
    try {
        Extract_Port_Parms_Packet(
            packet, updated, [&fault](std::string_view message) { fault.assign(message); }, PacketSide::Host);
        const std::int16_t number = textToInt16(requestField(packet, "Port=").value_or(""));
        if (number < 0 || number >= PortCount)
            raise(err::SubscriptOutOfRange);
        port = static_cast<std::size_t>(number);
    } catch (const RunTimeError& e) {
        refused = "run-time error " + std::to_string(e.number());
        return false;
    }
    if (!fault.empty()) {
        refused = fault;
        return false;
    }
    refused = valueNoPortCanHold(updated.PortCommParmsTable[port], updated.DataCollectionTable[port]);
    if (!refused.empty())
        return false;
    parms = std::move(updated);
    return true;
}

void Plant::purge(int row)
{
    if (row < 0 || static_cast<std::size_t>(row) >= status.size())
        return;
    PortStatusRecord& s = status[static_cast<std::size_t>(row)];
    if (s.Status == "Not Configured")
        return;
    s.Status = "Idle";
    s.FileName.clear();
    s.ByteCount = "0";
}

} // namespace corvane::hostsim
