#include "protocol/Framing.h"
#include "protocol/PacketErrorLog.h"
#include "support/ScratchProgramFolder.h"
#include "support/Wire.h"

#include <gtest/gtest.h>

namespace corvane {
namespace {

using test::errorNumberRaisedBy;
using test::operator""_w;

const std::string Status = "PKT_TYPE=120<STX>SECTION=0<STX>WorkstationName=LATHE 1<STX><EOT>"_w;

TEST(Framing, ChunksJoinIntoPacketsOnTheirFirstAndLastCharacter)
{
    struct Case {
        const char* name;
        std::vector<std::string> chunks;
        std::vector<bool> completeAfter;
        std::string completed;
    } const cases[] = {
        {"three chunks", {"<SOH>PKT_TYPE=120<STX>"_w, "SECTION=0<STX>WorkstationName="_w, "LATHE 1<STX><EOT>"_w},
            {false, false, true}, Status},
        {"new SOH drops a half packet", {"<SOH>PKT_TYPE=999<STX>half"_w, "<SOH>"_w + Status}, {false, true}, Status},
        {"SOH inside a chunk does not restart", {"<SOH>PKT_TYPE=1<STX>"_w, "x<SOH>PKT_TYPE=2<STX><EOT>"_w},
            {false, true}, "PKT_TYPE=1<STX>x<SOH>PKT_TYPE=2<STX><EOT>"_w},
        {"EOT inside a chunk does not end", {"<SOH>a<EOT>b"_w}, {false}, ""},
        {"continuation without SOH", {"tail<EOT>"_w}, {true}, "tail<EOT>"_w},
        {"two packets joined in one chunk are one text",
            {"<SOH>PKT_TYPE=120<STX>SECTION=0<STX><EOT><SOH>PKT_TYPE=170<STX>SECTION=0<STX><EOT>"_w}, {true},
            "PKT_TYPE=120<STX>SECTION=0<STX><EOT><SOH>PKT_TYPE=170<STX>SECTION=0<STX><EOT>"_w},
        {"an empty chunk clears the flag", {"<SOH>"_w + Status, ""}, {true, false}, Status},
    };
    for (const auto& c : cases) {
        PacketReceiver receiver({});
        for (std::size_t i = 0; i < c.chunks.size(); ++i) {
            receiver.accumulate(c.chunks[i]);
            EXPECT_EQ(receiver.packetComplete(), c.completeAfter[i]) << c.name << ", chunk " << i;
        }
        EXPECT_EQ(receiver.completedPacket(), c.completed) << c.name;
    }
}

// A packet that never ends is dropped once it passes the bound; what is left of it (up to and
// including a chunk that ends it) is passed over, and the next chunk that starts a packet counts.
TEST(Framing, TextThatNeverEndsIsDroppedAndItsTailNeverComesOutAsAPacket)
{
    test::ScratchProgramFolder folder;
    const PacketFaults faults = packetLogOf(folder.logs());
    PacketReceiver receiver(faults);
    const std::string half(PacketReceiver::MaxGathered / 2 + 1, 'x');
    receiver.accumulate("<SOH>"_w + half);
    receiver.accumulate(half);
    for (const std::string& tail : {half, "WorkstationName=X<STX><ETX><EOT>"_w}) {
        receiver.accumulate(tail);
        EXPECT_FALSE(receiver.packetComplete());
    }
    EXPECT_EQ(folder.lines("PacketError-Current.log").size(), 1u) << "one line for the whole packet";
    receiver.accumulate("<SOH>PKT_TYPE=120<STX>SECTION=0<STX><EOT>"_w);
    EXPECT_TRUE(receiver.packetComplete());
    EXPECT_EQ(receiver.completedPacket(), "PKT_TYPE=120<STX>SECTION=0<STX><EOT>"_w);

    // A packet over the bound that ends in the very chunk that passes it leaves nothing to skip.
    receiver.accumulate("<SOH>"_w + std::string(PacketReceiver::MaxGathered + 1, 'x') + "<EOT>"_w);
    receiver.accumulate("PKT_TYPE=120<STX><EOT>"_w);
    EXPECT_TRUE(receiver.packetComplete()) << "a continuation is taken in as ever";
}

TEST(PacketType, TypesAcknowledgementsAndTextThatIsNoPacket)
{
    test::ScratchProgramFolder folder;
    const PacketFaults faults = packetLogOf(folder.logs());
    int notices = 0;
    const auto notice = [&] { ++notices; };

    EXPECT_EQ(Get_Packet_Type(Status, faults, notice), 120);
    EXPECT_EQ(Get_Packet_Type("ACK<EOT>"_w, faults, notice), packet_type::Ack);
    EXPECT_EQ(Get_Packet_Type("PKT_TYPE<STX>"_w, faults, notice), packet_type::NoPacket);
    EXPECT_EQ(notices, 1) << "an acknowledgement is no stray text";
    EXPECT_EQ(folder.lines("PacketError-Current.log").size(), 2u) << "both are logged";
}

TEST(PacketType, ABadTypeRaisesToTheCaller)
{
    test::ScratchProgramFolder folder;
    const PacketFaults faults = packetLogOf(folder.logs());
    struct Case {
        std::string packet;
        int error;
    } const cases[] = {
        {"PKT_TYPE=abc<STX>SECTION=0<STX><EOT>"_w, err::TypeMismatch}, {"PKT_TYPE=100000<STX><EOT>"_w, err::Overflow},
        {"PKT_TYPE=120<EOT>"_w, err::InvalidProcedureCall}, // no STX after the type
        {"PKT_TYPE=1" + std::string(40000, '0') + "<STX>"_w, err::Overflow}, // STX past 32,767
    };
    for (const auto& c : cases)
        EXPECT_EQ(errorNumberRaisedBy([&] { Get_Packet_Type(c.packet, faults); }), c.error) << c.packet.substr(0, 20);
    EXPECT_FALSE(folder.exists("PacketError-Current.log"));
}

TEST(PacketField, ReadsTheFirstOccurrenceUpToTheNextStx)
{
    test::ScratchProgramFolder folder;
    const PacketFaults faults = packetLogOf(folder.logs());
    const std::string packet
        = "PKT_TYPE=120<STX>SECTION=0<STX>DisplayRow=<STX>Port=3<STX>PrinterPort=LPT1<STX><ETX><EOT>"_w;
    EXPECT_EQ(Get_Packet_Field(packet, "DisplayRow=", faults), "");
    EXPECT_EQ(Get_Packet_Field(packet, "Port=", faults), "3");
    // A short key that is the tail of a longer one is found inside the longer one when it
    // comes second: the order of fields on the wire matters.
    EXPECT_EQ(Get_Packet_Field("PrinterPort=LPT1<STX>Port=3<STX>"_w, "Port=", faults), "LPT1");
}

TEST(PacketField, AMissingKeyIsLoggedAndReturnsTextFromTheStart)
{
    test::ScratchProgramFolder folder;
    const PacketFaults faults = packetLogOf(folder.logs());
    const std::string packet = "PKT_TYPE=100<STX>SECTION=1<STX>Port=3<STX><EOT>"_w;
    // "Baud=" has five characters: the value is taken from position 5 up to the first STX.
    EXPECT_EQ(Get_Packet_Field(packet, "Baud=", faults), "TYPE=100");
    // No STX after the value: both lines are logged and the negative length raises.
    EXPECT_EQ(errorNumberRaisedBy([&] { Get_Packet_Field("PKT_TYPE=100<EOT>"_w, "WorkstationName=", faults); }),
        err::InvalidProcedureCall);
    EXPECT_EQ(folder.lines("PacketError-Current.log").size(), 3u);
}

TEST(PacketField, PositionsPast32767Overflow)
{
    test::ScratchProgramFolder folder;
    const PacketFaults faults = packetLogOf(folder.logs());
    const std::string filler(40000, 'x');
    const std::string early = "PKT_TYPE=120<STX>Early=1<STX>Filler="_w + filler + "<STX>Late=2<STX><EOT>"_w;
    EXPECT_EQ(Get_Packet_Field(early, "Early=", faults), "1");
    EXPECT_EQ(errorNumberRaisedBy([&] { Get_Packet_Field(early, "Late=", faults); }), err::Overflow);
    // Found early, but its STX lies past the limit.
    EXPECT_EQ(errorNumberRaisedBy([&] { Get_Packet_Field(early, "Filler=", faults); }), err::Overflow);
    // A key that ends just before the limit still reads.
    const std::string edge = std::string(32750, 'y') + "Key=" + "ab<STX>"_w;
    EXPECT_EQ(Get_Packet_Field(edge, "Key=", faults), "ab");
}

} // namespace
} // namespace corvane
