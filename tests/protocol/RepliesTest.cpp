#include "protocol/Replies.h"
#include "protocol/Framing.h"
#include "protocol/PacketErrorLog.h"
#include "support/ScratchProgramFolder.h"
#include "support/Wire.h"

#include <gtest/gtest.h>

namespace corvane {
namespace {

using test::operator""_w;
using test::errorNumberRaisedBy;

std::string statusRecord(const std::string& machine, const std::string& status)
{
    return "WorkstationName=" + machine + "<STX>"_w + "FileName=O1000<STX>"_w + "Status=" + status + "<STX>"_w
        + "ByteCount=512<STX>"_w + "DNC_ID=7<STX>"_w;
}

TEST(Replies, StatusRowsAreFilledFromTheTopAndTheRestKeepTheirValues)
{
    test::ScratchProgramFolder folder;
    const PacketFaults faults = packetLogOf(folder.logs());
    std::vector<PortStatusRecord> table(128, PortStatusRecord{"old", "old", "old", "old", "old"});
    const std::string packet = "PKT_TYPE=120<STX>SECTION=0<STX>"_w + statusRecord("LATHE 1", "Idle") + ETX
        + statusRecord("MILL 2", "DC + FTP") + ETX + EOT;

    // The piece after the last ETX holds no fields: reading it fails after rows 0 and 1.
    EXPECT_EQ(errorNumberRaisedBy([&] { Extract_Status_Packet(packet, table, faults); }), err::InvalidProcedureCall);
    EXPECT_EQ(table[0], (PortStatusRecord{"LATHE 1", "O1000", "Idle", "512", "7"}));
    EXPECT_EQ(table[1].Status, "DC + FTP");
    EXPECT_EQ(table[2], (PortStatusRecord{"old", "old", "old", "old", "old"}));
}

TEST(Replies, MachineTypesReplaceTheTable)
{
    test::ScratchProgramFolder folder;
    const PacketFaults faults = packetLogOf(folder.logs());
    std::vector<MachineTypeRecord> types(5);
    std::int16_t count = 5;
    const std::string packet = "PKT_TYPE=150<STX>SECTION=0<STX>unique_id=70000<STX>machine_type=Fanuc 0i<STX>"
                               "DefaultDir=C:\\NC\\FANUC<STX>TarnMachineCode=FX<STX><ETX>"
                               "unique_id=2<STX>machine_type=Haas<STX>"
                               "DefaultDir=<STX>TarnMachineCode=<STX><ETX><EOT>"_w;
    EXPECT_EQ(errorNumberRaisedBy([&] { Extract_Machine_Types(packet, types, count, faults); }), err::InvalidProcedureCall);
    EXPECT_EQ(count, 3);
    ASSERT_EQ(types.size(), 3u);
    EXPECT_EQ(types[0], (MachineTypeRecord{70000, "Fanuc 0i", "C:\\NC\\FANUC", 'F'}));
    EXPECT_EQ(types[1], (MachineTypeRecord{2, "Haas", "", ' '}));

    // More records than the 16-bit count can say: refused before the table is touched.
    const std::string absurd = "PKT_TYPE=150<STX>SECTION=0<STX>"_w + std::string(1'000'000, ETX) + EOT;
    EXPECT_EQ(errorNumberRaisedBy([&] { Extract_Machine_Types(absurd, types, count, faults); }), err::Overflow);
    EXPECT_EQ(count, 3);
    EXPECT_EQ(types.size(), 3u);
}

} // namespace
} // namespace corvane
