// Edits as a script or a user makes them, one a line ("NAME=VALUE", the name as the records
// know it, or the first byte choosing a field), each through its control's rule, on a port with
// the host's machine types. A refused edit leaves both records as they were; an accepted one
// leaves records the six sections can carry.
#include "Input.h"
#include "commparms/FieldEdit.h"
#include "commparms/RecordFields.h"
#include "protocol/PortParmsPacket.h"
#include "runtime/RunTimeError.h"

#include <cstdlib>

using namespace corvane;

namespace {

const std::vector<MachineTypeRecord> Types{
    {1, "FANUC 0i-TF LATHE", "C:\\DNC\\LATHES", 'F'}, {6, "EDM", "C:\\DNC\\EDM", 'E'}};

// A port as the demo host configures a lathe.
void startingPort(PortCommParms& p, DataCollectionParms& d)
{
    p = {};
    d = {};
    p.wstat_name = "LATHE 01";
    p.Port_No = 1;
    p.Baud = 6;
    p.Machine_Unique_Id = 1;
    p.bPurgeIfInactive = -1;
    p.iPurgeIfInactiveSeconds = 60;
    p.iMinimumPurgeSeconds = 10;
    p.ConfirmFooter = "M30";
    d.ExtractData = 1;
    d.DataStreamOption = 1;
    d.MaxDataSegment = 500;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::scratchFolder();
    // Made once: only the first port is edited and sent, and it starts afresh each input.
    static PortParmsTables tables = [] {
        PortParmsTables t;
        t.resize();
        return t;
    }();
    PortCommParms& p = tables.PortCommParmsTable[0];
    DataCollectionParms& d = tables.DataCollectionTable[0];
    startingPort(p, d);
    static const auto fields = recordFields();

    std::string_view input = fuzz::text(data, size);
    while (!input.empty()) {
        const std::size_t end = input.find('\n');
        std::string_view line = input.substr(0, end);
        input = end == std::string_view::npos ? std::string_view() : input.substr(end + 1);
        if (line.empty())
            continue;
        std::string name, value;
        if (const std::size_t equals = line.find('='); equals != std::string_view::npos) {
            name = line.substr(0, equals);
            value = line.substr(equals + 1);
        } else {
            name = fields[static_cast<unsigned char>(line[0]) % fields.size()].name;
            value = line.substr(1);
        }
        // The save folder's check writes a probe file into the folder: keep it in the scratch.
        if (name == "SaveToFolder")
            value = fuzz::scratchFolder().string() + "/" + value;
        const PortCommParms commBefore = p;
        const DataCollectionParms collectionBefore = d;
        const FieldEdit edit = editField(p, d, name, value, Types);
        if (!edit.accepted && !(p == commBefore && d == collectionBefore))
            std::abort();
    }
    // Whatever the edits left goes out in six sections without a fault.
    try {
        for (std::int16_t section = 1; section <= 6; ++section)
            Build_Port_Parms_Packet(section, 0, tables);
    } catch (const RunTimeError&) {
        std::abort();
    }
    return 0;
}
