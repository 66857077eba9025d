#include "protocol/PortParmsPacket.h"
#include "protocol/Framing.h"
#include "protocol/PacketErrorLog.h"
#include "support/ScratchProgramFolder.h"
#include "support/Wire.h"

#include <gtest/gtest.h>

namespace corvane {
namespace {

using test::operator""_w;
using test::errorNumberRaisedBy;

// A port whose every field holds a value of its own, so a field sent or read under the wrong
// key shows up.
PortCommParms distinctCommParms()
{
    PortCommParms p;
    std::int16_t next = 1;
    for (std::int16_t section = 1; section <= 5; ++section)
        for (const FieldRow& row : sectionFields(section)) {
            const FieldSpec<PortCommParms>& field = row.comm;
            if (field.encoding == Encoding::Bool)
                p.*field.int16 = (next++ % 2) ? TrueValue : FalseValue;
            else if (field.int16)
                p.*field.int16 = static_cast<std::int16_t>(next++ * 7 - 40);
            else
                p.*field.text = std::string(field.key.substr(0, field.key.size() - 1)) + " value";
        }
    p.ProgQualifier = "O1234     ";
    p.RequestCode = "%";
    p.EnableRemotePrinting = TrueValue;
    p.PrinterPort = "Shop Printer";
    return p;
}

// Its segment length needs more than 16 bits, as the field's 32-bit value may.
DataCollectionParms distinctDataCollection()
{
    return {1, 1, 1, 2, "Office", "%START", "%END", 100000, "O", "PRINT", "C:\\DATA\\CELL 4", 1, 1, 0};
}

PortParmsTables tablesWith(std::int16_t port, const PortCommParms& comm, const DataCollectionParms& dc)
{
    PortParmsTables t;
    t.resize();
    t.PortCommParmsTable[static_cast<std::size_t>(port)] = comm;
    t.DataCollectionTable[static_cast<std::size_t>(port)] = dc;
    return t;
}

TEST(PortParmsPacket, EverySectionRoundTripsThroughThePacket)
{
    test::ScratchProgramFolder folder;
    const PacketFaults faults = packetLogOf(folder.logs());
    for (std::int16_t port : {std::int16_t{0}, std::int16_t{127}}) {
        auto sender = tablesWith(port, distinctCommParms(), distinctDataCollection());
        PortParmsTables receiver;
        receiver.resize();
        for (std::int16_t section = FirstParmsSection; section <= LastParmsSection; ++section)
            Extract_Port_Parms_Packet(Build_Port_Parms_Packet(section, port, sender) + EOT, receiver, faults);

        PortCommParms expected = sender.PortCommParmsTable[static_cast<std::size_t>(port)];
        expected.EnableRemotePrinting = 0; // sent on, but never taken from the host
        EXPECT_EQ(receiver.PortCommParmsTable[static_cast<std::size_t>(port)], expected) << "port " << port;
        // The date, advanced-file and advanced-print options are not among section 6's keys:
        // they never travel, and the receiver keeps its own.
        DataCollectionParms expectedDc = distinctDataCollection();
        expectedDc.AppendDateAndTime = expectedDc.UseAdvancedFileOptions = expectedDc.UseAdvancedPrintOptions = 0;
        EXPECT_EQ(receiver.DataCollectionTable[static_cast<std::size_t>(port)], expectedDc) << "port " << port;
        EXPECT_EQ(receiver.PortCommParmsTable[static_cast<std::size_t>(port == 0 ? 1 : 0)], PortCommParms{});
    }
    EXPECT_FALSE(folder.exists("PacketError-Current.log"));
}

TEST(PortParmsPacket, SectionsGoOutInWireOrderWithoutEtx)
{
    PortCommParms p;
    p.wstat_name = "MILL 3";
    p.Baud = 6;
    p.Machine_Category_Id = -2;
    p.ProgQualifier = "O";
    p.RequestCode = "";
    p.FileNotFoundMsgSet = TrueValue;
    auto t = tablesWith(12, p, {});

    EXPECT_EQ(Build_Port_Parms_Packet(1, 12, t),
        "<SOH>PKT_TYPE=100<STX>SECTION=1<STX>Port=12<STX>wstat_name=MILL 3<STX>Port_No=0<STX>Baud=6<STX>DataType=0<STX>"
        "DataBits=0<STX>Parity=0<STX>StopBits=0<STX>SpecificProtocol=0<STX>"
        "EobConversion=0<STX>Handshaking=0<STX>Machine_Unique_Id=0<STX>Machine_Category_Id=-2<STX>"_w);
    EXPECT_EQ(Build_Port_Parms_Packet(2, 12, t),
        "<SOH>PKT_TYPE=100<STX>SECTION=2<STX>Port=12<STX>ProgQualifier=O         <STX>"
        "ContinuousFeedString=<STX>RequestCode= <STX>Remote_Req=0<STX>RedirectCode=0<STX>"
        "FileNotFoundMsgSet=True<STX>FileNotFoundMessage=<STX>"_w);
    EXPECT_EQ(Build_Port_Parms_Packet(6, 12, t),
        "<SOH>PKT_TYPE=100<STX>SECTION=6<STX>Port=12<STX>ExtractData=0<STX>DataStreamOption=0<STX>"
        "FileNameOption=0<STX>PrintOption=0<STX>SelectedPrinter=<STX>DataStartString=<STX>DataTerminationString=<STX>"
        "MaxDataSegment=0<STX>FileNameString=<STX>PrintCommandString=<STX>SaveToFolder=<STX>"_w);
    EXPECT_EQ(Build_Port_Parms_Packet(7, 999, t), "<SOH>PKT_TYPE=100<STX>SECTION=7<STX>Port=999<STX>"_w)
        << "an unknown section names the port without looking it up";
}

TEST(PortParmsPacket, PrinterRuleOfSectionThree)
{
    struct Case {
        std::int16_t enabled;
        std::string recordPort;
        std::vector<std::string> printers;
        std::string sent; // the section's last two fields
        std::string recordAfter;
    } const cases[] = {
        {0, "Shop Printer", {"Laser"}, "False<STX>PrinterPort=<STX>"_w, "Shop Printer"}, // off: the port goes empty
        {-1, "Shop Printer", {"Laser"}, "True<STX>PrinterPort=Shop Printer<STX>"_w, "Shop Printer"},
        {-1, "", {"Laser", "Plotter"}, "True<STX>PrinterPort=Laser<STX>"_w, "Laser"}, // the first printer, kept
        {-1, "", {}, "True<STX>PrinterPort=<STX>"_w, ""},
    };
    for (const auto& c : cases) {
        PortCommParms p;
        p.EnableRemotePrinting = c.enabled;
        p.PrinterPort = c.recordPort;
        auto t = tablesWith(3, p, {});
        t.PrinterNames = c.printers;
        const std::string packet = Build_Port_Parms_Packet(3, 3, t);
        EXPECT_TRUE(packet.ends_with("EnableRemotePrinting=" + c.sent)) << packet;
        EXPECT_EQ(t.PortCommParmsTable[3].PrinterPort, c.recordAfter) << c.recordPort << ", " << c.printers.size();
    }
}

TEST(PortParmsPacket, ReceivedFieldsAreFittedToTheirWidths)
{
    test::ScratchProgramFolder folder;
    const PacketFaults faults = packetLogOf(folder.logs());
    PortParmsTables t;
    t.resize();
    Extract_Port_Parms_Packet("PKT_TYPE=100<STX>SECTION=2<STX>Port=5<STX>ProgQualifier=ABCDEFGHIJKL<STX>"
                              "ContinuousFeedString=%<STX>RequestCode=<STX>Remote_Req=2<STX>RedirectCode=65<STX>"
                              "FileNotFoundMsgSet=1<STX>FileNotFoundMessage=NOT FOUND<STX><EOT>"_w,
        t, faults);
    const auto& p = t.PortCommParmsTable[5];
    EXPECT_EQ(p.ProgQualifier, "ABCDEFGHIJ");
    EXPECT_EQ(p.RequestCode, " ");
    EXPECT_EQ(p.FileNotFoundMsgSet, TrueValue); // a number is accepted for a boolean
}

TEST(PortParmsPacket, ABadFieldStopsTheTakingApartThereAndKeepsEarlierFields)
{
    test::ScratchProgramFolder folder;
    const PacketFaults faults = packetLogOf(folder.logs());
    PortParmsTables t;
    t.resize();
    t.PortCommParmsTable[4].DataType = 9;
    EXPECT_EQ(errorNumberRaisedBy([&] {
        Extract_Port_Parms_Packet("PKT_TYPE=100<STX>SECTION=1<STX>Port=4<STX>wstat_name=X<STX>Port_No=1<STX>Baud=3<STX>"
                                  "DataType=100000<STX><EOT>"_w,
            t, faults);
    }),
        err::Overflow);
    EXPECT_EQ(t.PortCommParmsTable[4].Baud, 3);
    EXPECT_EQ(t.PortCommParmsTable[4].DataType, 9);
}

TEST(PortParmsPacket, PortsWithoutARecordAndUnknownSections)
{
    PortParmsTables t;
    t.resize();
    EXPECT_EQ(errorNumberRaisedBy([&] { Build_Port_Parms_Packet(1, 128, t); }), err::SubscriptOutOfRange);
    EXPECT_EQ(errorNumberRaisedBy([&] { Build_Port_Parms_Packet(6, -1, t); }), err::SubscriptOutOfRange);
    EXPECT_EQ(errorNumberRaisedBy([&] {
        Extract_Port_Parms_Packet("PKT_TYPE=100<STX>SECTION=5<STX>Port=128<STX>SendConfirmFile=True<STX><EOT>"_w, t, {});
    }),
        err::SubscriptOutOfRange);

    const PortParmsTables before = t;
    Extract_Port_Parms_Packet("PKT_TYPE=100<STX>SECTION=7<STX>Port=1<STX>wstat_name=Z<STX><EOT>"_w, t, {});
    EXPECT_EQ(t.PortCommParmsTable, before.PortCommParmsTable);
}

} // namespace
} // namespace corvane
