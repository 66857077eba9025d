#include "commparms/ParmsRules.h"
#include "commparms/DataCollectionRules.h"
#include "commparms/MachineTypes.h"
#include "runtime/RunTimeError.h"
#include "support/ScratchProgramFolder.h"

#include <gtest/gtest.h>

#include <tuple>

namespace corvane {
namespace {

using test::errorNumberRaisedBy;

const EditorFlags User{true, false, false}; // the form is up and the user changed something
const EditorFlags Showing{true, false, true}; // a record is being shown
const EditorFlags Loading{true, true, false}; // SetDataValues fills the controls
const EditorFlags NotYetUp{false, false, false};

TEST(ParmsRules, EachBaudIndexHasItsMinimumAndABaudRateOnlyEverRaisesThePurgeTime)
{
    const std::int16_t minimums[] = {360, 132, 64, 32, 16, 16, 10, 10, 10, 10, 10, 10, 10, 10, 10};
    for (std::int16_t index = 0; index < 15; ++index)
        EXPECT_EQ(minimumPurgeSeconds(index), minimums[index]) << index;
    for (std::int16_t beyond : {std::int16_t{-1}, std::int16_t{15}})
        EXPECT_EQ(errorNumberRaisedBy([&] { minimumPurgeSeconds(beyond); }), err::DivisionByZero) << beyond;

    struct Case {
        std::int16_t index, purge, minimum;
        std::int16_t purgeAfter, minimumAfter;
        bool warns;
    } const cases[] = {
        {5, 10, 10, 16, 16, false}, // 4800 counts as 2400
        {1, 200, 16, 200, 16, false}, // already above: neither is lowered, the minimum stays as it was
        {10, 10, 10, 10, 10, true}, // 56000
        {12, 10, 10, 10, 10, false},
        {14, 10, 10, 10, 10, true},
    };
    for (const auto& c : cases) {
        PortCommParms p;
        p.iPurgeIfInactiveSeconds = c.purge;
        p.iMinimumPurgeSeconds = c.minimum;
        const RuleOutcome outcome = BaudRates_Click(p, c.index, User);
        EXPECT_EQ(p.iPurgeIfInactiveSeconds, c.purgeAfter) << c.index;
        EXPECT_EQ(p.iMinimumPurgeSeconds, c.minimumAfter) << c.index;
        EXPECT_EQ(outcome.messages.size(), c.warns ? 1u : 0u) << c.index;
    }
    // Before the form is up: the correction without the warning.
    PortCommParms quiet;
    EXPECT_TRUE(BaudRates_Click(quiet, 14, NotYetUp).messages.empty());
    EXPECT_EQ(quiet.iPurgeIfInactiveSeconds, 10);
}

TEST(ParmsRules, NumberFieldsCorrectedWhenLeftOrChanged)
{
    PortCommParms p;
    p.iMinimumPurgeSeconds = 16;
    DataCollectionParms d;
    struct Case {
        bool segment; // else the purge seconds
        const char* typed;
        std::int32_t stored;
        std::optional<std::string> shown;
        std::size_t messages;
    } const cases[] = {
        {false, "", 16, "16", 1}, // empty reads 1, which is below the minimum
        {false, "5", 16, "16", 1},
        {false, "16", 16, std::nullopt, 0},
        {false, "999999", 32767, "32767", 0},
        {true, "49", 50, "50", 1},
        {true, "50", 50, std::nullopt, 0},
        {true, "1000", 1000, std::nullopt, 0},
        {true, "1001", 1000, "1000", 1},
    };
    for (const auto& c : cases) {
        const RuleOutcome outcome
            = c.segment ? segmentLengthLeft(d, c.typed, User) : purgeSecondsLeft(p, c.typed, User);
        EXPECT_EQ(c.segment ? d.MaxDataSegment : p.iPurgeIfInactiveSeconds, c.stored) << c.typed;
        EXPECT_EQ(outcome.text, c.shown) << c.typed;
        EXPECT_EQ(outcome.messages.size(), c.messages) << c.typed;
    }

    const RuleOutcome nulls = eobNullsChanged(p, "300", User);
    EXPECT_EQ(p.EobNullNumber, 64);
    EXPECT_EQ(nulls.text, "64");
    EXPECT_EQ(nulls.messages.size(), 1u);
    EXPECT_TRUE(eobNullsChanged(p, "64", User).messages.empty());

    for (const auto& [typed, value] : {std::pair{"", 0}, std::pair{"007", 7}, std::pair{"40000", 32767}})
        EXPECT_EQ(numberFieldValue(typed), value) << typed;
}

TEST(ParmsRules, AsciiValuesAreRefusedSilentlyOrWithTheirCriticalBox)
{
    struct Case {
        const char* typed;
        std::int16_t stored;
        std::optional<std::string> shown;
        std::optional<std::string> title; // of the critical box, when there is one
    } const cases[] = {
        {"0", 0, std::nullopt, std::nullopt}, {"255.4", 255, std::nullopt, std::nullopt}, {"-5", -1, "", std::nullopt},
        {" ", -1, "", std::nullopt}, {"abc", -1, "", "Not ASCII Value"}, {"True", -1, "", "Not ASCII Value"},
        {"255.5", -1, "", "Value out of Range."}, // rounds to 256
    };
    for (const auto& c : cases) {
        std::int16_t field = 42;
        const RuleOutcome outcome = asciiFieldLeft(field, c.typed, User);
        EXPECT_EQ(field, c.stored) << c.typed;
        EXPECT_EQ(outcome.text, c.shown) << c.typed;
        ASSERT_EQ(outcome.messages.size(), c.title ? 1u : 0u) << c.typed;
        if (c.title) {
            EXPECT_EQ(outcome.messages[0].title, *c.title);
            EXPECT_EQ(outcome.messages[0].style, 16) << "critical";
        }
        std::int16_t quiet = 42;
        EXPECT_TRUE(asciiFieldLeft(quiet, c.typed, Loading).messages.empty()) << c.typed;
    }
    EXPECT_EQ(asciiFieldText(-1), "");
}

TEST(ParmsRules, ChoicesForceTheirSettingsAndWarn)
{
    using Click = RuleOutcome (*)(PortCommParms&, std::int16_t, const EditorFlags&);
    using Settings = std::tuple<int, int, int, int, int, std::string>; // Parity DataBits EOB Handshaking Redirect Feed
    struct Case {
        const char* name;
        Click click;
        std::int16_t index, protocol;
        const char* feed;
        std::int16_t redirect;
        Settings after;
        std::size_t warnings;
    } const cases[] = {
        {"ISO", DataType_Click, 0, protocol::General, "", 0, {1, 0, 3, 0, 0, ""}, 0},
        {"EIA", DataType_Click, 1, protocol::General, "", 0, {0, 1, 3, 0, 0, ""}, 1},
        {"BINARY", DataType_Click, 3, protocol::General, "", 0, {0, 1, 5, 0, 0, ""}, 1},
        {"CR with Heidenhain", EndofBlock_Click, 2, protocol::Heidenhain, "", 0, {2, 0, 2, 0, 0, ""}, 1},
        {"CR with General", EndofBlock_Click, 2, protocol::General, "", 0, {2, 0, 2, 0, 0, ""}, 0},
        {"Xon with General", Handshake_Click, 2, protocol::General, "", 0, {2, 0, 3, 2, 0, ""}, 1},
        {"QSI without a feed string", KeyPad_Click, 2, protocol::General, "", 0, {2, 0, 3, 0, '#', "+"}, 1},
        {"QSI with a feed string", KeyPad_Click, 2, protocol::General, "%", 0, {2, 0, 3, 0, 0, "%"}, 0},
        {"QSI with a redirect code", KeyPad_Click, 2, protocol::General, "", '@', {2, 0, 3, 0, '@', ""}, 0},
    };
    for (const auto& c : cases) {
        PortCommParms p;
        p.Parity = 2;
        p.EobConversion = 3;
        p.SpecificProtocol = c.protocol;
        p.ContinuousFeedString = c.feed;
        p.RedirectCode = c.redirect;
        const RuleOutcome outcome = c.click(p, c.index, User);
        EXPECT_EQ(
            Settings(p.Parity, p.DataBits, p.EobConversion, p.Handshaking, p.RedirectCode, p.ContinuousFeedString),
            c.after)
            << c.name;
        EXPECT_EQ(outcome.messages.size(), c.warnings) << c.name;
    }
}

TEST(ParmsRules, ProtocolPresetsAndTheFramesTheyEnable)
{
    PortCommParms p;
    p.bPurgeIfInactive = -1;
    p.iPurgeIfInactiveSeconds = 10;
    // The binary data type's warning alone: GE 2000's own CR and Xon settings are not warned of.
    EXPECT_EQ(SpecificProtocols_Click(p, protocol::Ge2000, User).messages.size(), 1u);
    EXPECT_EQ(std::tuple(p.Baud, p.DataType, p.DataBits, p.Parity, p.StopBits, p.EobConversion, p.Handshaking),
        std::tuple(5, 3, 1, 0, 0, 5, 2));
    EXPECT_EQ(p.iPurgeIfInactiveSeconds, 16) << "its 4800 baud raises the purge time as a click would";
    EXPECT_EQ(p.bPurgeIfInactive, 0) << "the purge option goes with any protocol but General";
    EXPECT_FALSE(commControlStates(p).handshakeFrame);
    EXPECT_FALSE(commControlStates(p).purgeOption);

    SpecificProtocols_Click(p, protocol::General, User);
    EXPECT_TRUE(commControlStates(p).handshakeFrame);

    SpecificProtocols_Click(p, protocol::Heidenhain, User);
    EXPECT_EQ(std::tuple(p.DataType, p.DataBits, p.Parity, p.StopBits, p.EobConversion), std::tuple(0, 0, 1, 1, 5));

    // Shown from a record, a protocol's settings stand as the host keeps them.
    PortCommParms shown;
    shown.bPurgeIfInactive = -1;
    SpecificProtocols_Click(shown, protocol::Ge2000, Showing);
    EXPECT_EQ(shown.Baud, 0);
    EXPECT_EQ(shown.bPurgeIfInactive, 0);
}

TEST(ParmsRules, SmallerRules)
{
    PortCommParms p;
    for (const auto& [typed, code] :
        {std::pair{"", 0}, std::pair{" ", 0}, std::pair{"#", 35}, std::pair{"\xe9", 233}}) {
        RedirectCode_Change(p, typed);
        EXPECT_EQ(p.RedirectCode, code) << typed;
    }
    EXPECT_EQ(redirectCodeText(0), "");

    EXPECT_TRUE(ckEnableNoWaitRead_Click(p, true, User));
    EXPECT_EQ(p.bEnableNoWaitRead, -1);
    EXPECT_FALSE(ckEnableNoWaitRead_Click(p, true, Showing));
    EXPECT_FALSE(ckEnableNoWaitRead_Click(p, true, Loading));
    EXPECT_FALSE(ckEnableNoWaitRead_Click(p, false, User));

    p.OutHdrVal3 = 13;
    p.OutHdrEobVal = -1;
    StripOutgoingHeader_Click(p, true);
    EXPECT_EQ(p.OutHdrVal3, 13);
    StripOutgoingHeader_Click(p, false);
    EXPECT_FALSE(commControlStates(p).outgoingHeader);
    EXPECT_EQ(p.OutHdrEobVal, 0);
    for (std::int16_t v : {p.OutHdrVal1, p.OutHdrVal2, p.OutHdrVal3, p.OutHdrVal4, p.OutHdrVal5, p.OutHdrVal6})
        EXPECT_EQ(v, -1);

    p.Handshaking = 1;
    EXPECT_FALSE(commControlStates(p).ignoreIncomingData);
}

TEST(DataCollectionRules, FramesFollowTheOptions)
{
    struct Case {
        std::int16_t extract, stream, fileName, print, advancedFile, advancedPrint;
        DataCollectionStates expected;
    } const cases[] = {
        {0, 1, 1, 1, 1, 1, {}}, // extraction off: everything off, whatever the options say
        {1, 0, 0, 0, 0, 0, {true, true, false, false, true, false, true, true, false, true, true, false, true, false}},
        {1, 1, 1, 1, 1, 1, {true, true, true, true, true, true, true, true, true, true, true, true, true, true}},
        {1, 0, 0, 2, 0, 0, {true, true, false, false, true, false, true, true, false, true, false, false, true, false}},
    };
    for (const auto& c : cases) {
        DataCollectionParms d;
        d.ExtractData = c.extract;
        d.DataStreamOption = c.stream;
        d.FileNameOption = c.fileName;
        d.PrintOption = c.print;
        d.UseAdvancedFileOptions = c.advancedFile;
        d.UseAdvancedPrintOptions = c.advancedPrint;
        EXPECT_EQ(dataCollectionStates(d), c.expected) << c.extract << c.stream << c.print;
    }
}

TEST(DataCollectionRules, TheSaveFolderIsTakenOnlyWhenWritableAndNotTheReceiveFolder)
{
    // Write access is checked on a real folder below, and refused through the field editor.
    struct Case {
        std::string browsed;
        bool taken;
    } const cases[] = {
        {"C:\\Data", false}, // the normal receive folder
        {"c:\\data", true}, // case counts
        {std::string("C:\\Data\0junk", 12), false}, // cut at the NUL: the receive folder again
    };
    for (const auto& c : cases) {
        DataCollectionParms d;
        d.SaveToFolder = "before";
        const FolderChoice choice
            = saveFolderChosen(d, c.browsed, "C:\\Data\\", [](const std::string&) { return true; });
        EXPECT_EQ(choice.taken, c.taken) << c.browsed;
        EXPECT_EQ(d.SaveToFolder, c.taken ? c.browsed : "before") << c.browsed;
        EXPECT_EQ(choice.message.has_value(), !c.taken) << c.browsed;
    }

    test::ScratchProgramFolder folder;
    EXPECT_TRUE(checkAccessRights(folder.path().string()));
    EXPECT_FALSE(std::filesystem::exists(folder.file("testaccessnow.txt"))) << "the probe is removed again";

    const std::vector<MachineTypeRecord> types
        = {{1, "LATHE", "C:\\DNC\\LATHES", 'F'}, {2, "MILL", "C:\\DNC\\MILLS\\", 'F'}};
    EXPECT_EQ(normalReceiveFolder(types, 1), "C:\\DNC\\LATHES\\");
    EXPECT_EQ(normalReceiveFolder(types, 2), "C:\\DNC\\MILLS\\");
    EXPECT_EQ(normalReceiveFolder(types, 3), "");
}

} // namespace
} // namespace corvane
