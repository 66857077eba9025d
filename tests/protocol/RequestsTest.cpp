#include "protocol/Requests.h"
#include "protocol/Framing.h"
#include "protocol/PacketErrorLog.h"
#include "support/ScratchProgramFolder.h"
#include "support/Wire.h"

#include <gtest/gtest.h>

namespace corvane {
namespace {

using test::operator""_w;

TEST(Requests, EveryBuilderSendsItsExactBytes)
{
    struct Case {
        std::string built;
        std::string expected;
    } const cases[] = {
        {Build_Status_Request(), "<SOH>PKT_TYPE=220<STX>SECTION=0<STX><ETX><EOT>"_w},
        {Build_Version_Request(), "<SOH>PKT_TYPE=270<STX>SECTION=0<STX><ETX><EOT>"_w},
        {Build_Update_Complete_Packet(), "<SOH>PKT_TYPE=301<STX>SECTION=0<STX><ETX><EOT>"_w},
        {Build_Port_Parms_Request(4, 12), "<SOH>PKT_TYPE=200<STX>SECTION=4<STX>Port=12<STX><ETX><EOT>"_w},
        {Build_Purge_Reset_Request(3), "<SOH>PKT_TYPE=302<STX>SECTION=0<STX>DisplayRow=3<STX><ETX><EOT>"_w},
        {Build_Machine_Type_Request(0), "<SOH>PKT_TYPE=250<STX>SECTION=0<STX>DisplayRow=0<STX><ETX><EOT>"_w},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.built, c.expected);
}

TEST(Requests, VersionReplyKeepsTheMinorAsText)
{
    test::ScratchProgramFolder folder;
    const PacketFaults faults = packetLogOf(folder.logs());
    const std::string reply
        = "PKT_TYPE=170<STX>SECTION=0<STX>VersionMajor=1<STX>VersionMinor=02<STX>MinimumRemoteVersion=1.02<STX><ETX><EOT>"_w;
    EXPECT_EQ(Get_Host_Version(reply, faults), "1.02");
    EXPECT_EQ(Get_Minimum_Remote_Version(reply, faults), "1.02");
}

} // namespace
} // namespace corvane
