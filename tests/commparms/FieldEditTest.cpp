#include "commparms/FieldEdit.h"
#include "commparms/FieldRules.h"
#include "commparms/RecordFields.h"
#include "protocol/Framing.h"
#include "protocol/PortParmsPacket.h"

#include <gtest/gtest.h>

#include <set>

namespace corvane {
namespace {

struct Port {
    PortCommParms comm;
    DataCollectionParms collection;
    Port()
    {
        comm.Baud = 6;
        comm.iMinimumPurgeSeconds = 10;
        comm.iPurgeIfInactiveSeconds = 60;
        comm.bPurgeIfInactive = -1;
        comm.ConfirmFooter = "M30";
        comm.Machine_Unique_Id = 1;
        comm.StripOutgoingHeader = -1; // the outgoing header's values can be set
        collection.ExtractData = 1;
        collection.DataStreamOption = 1; // and the segment length
        collection.MaxDataSegment = 500;
    }
    FieldValue operator[](std::string_view name) const { return fieldValue(comm, collection, *findRecordField(name)); }
};

const std::vector<MachineTypeRecord> Types{{1, "FANUC 0i-TF LATHE", "C:\\DNC\\LATHES", 'F'}};

// Each change as a script names it: what the control's rule makes of it, or why it is refused.
TEST(FieldEdit, EachChangeGoesThroughItsControlsRule)
{
    struct Case {
        const char* name;
        const char* value;
        const char* field; // what to look at afterwards
        FieldValue expected;
        const char* says = ""; // a warning that comes with it
    } const cases[] = {
        {"ConfirmFooter", "M77", "ConfirmFooter", std::string("M77")},
        {"Baud", "14", "Baud", std::int64_t{14}, "Some communications ports or devices cannot use the baud rates"},
        {"iPurgeIfInactiveSeconds", "3", "iPurgeIfInactiveSeconds", std::int64_t{10},
            "minimumn value for this option is 10"},
        {"MaxDataSegment", "2000", "MaxDataSegment", std::int64_t{1000}, "The maximum segment length is 1000."},
        {"bPurgeIfInactive", "1", "bPurgeIfInactive", std::int64_t{-1}}, // stored as the box stores a tick
        {"StStr", "37", "StStr", std::int64_t{37}}, {"RedirectCode", "65", "RedirectCode", std::int64_t{65}},
        {"SpecificProtocol", "4", "bPurgeIfInactive", std::int64_t{0}}, // a fixed protocol clears the purge
        {"SaveToFolder", "/tmp", "SaveToFolder", std::string("/tmp")}, // where this computer may write
    };
    for (const Case& c : cases) {
        Port port;
        const FieldEdit edit = editField(port.comm, port.collection, c.name, c.value, Types);
        ASSERT_TRUE(edit.accepted) << c.name << "=" << c.value << ": " << edit.refusal;
        EXPECT_EQ(port[c.field], c.expected) << c.name << "=" << c.value;
        const bool warned = std::any_of(edit.outcome.messages.begin(), edit.outcome.messages.end(),
            [&](const RuleMessage& m) { return m.text.find(c.says) != std::string::npos; });
        EXPECT_TRUE(*c.says == 0 || warned) << c.name << "=" << c.value;
    }
}

TEST(FieldEdit, ARefusedChangeLeavesTheRecordsAsTheyWere)
{
    struct Case {
        const char* name;
        const char* value;
        const char* why;
    } const cases[] = {
        {"Nonsense", "1", "no field the editor changes"}, {"Machine_Category_Id", "3", "no field the editor changes"},
        {"Baud", "15", "it takes 0 to 14"}, {"OutHdrVal1", "300", "does not take \"300\""},
        {"iPurgeIfInactiveSeconds", "-5", "digits only"}, {"bPurgeIfInactive", "maybe", "to tick"},
        {"ProgQualifier", "ABCDEFGHIJK", "10 characters at most"},
        {"ConfirmHeader",
            "a\x02"
            "b",
            "control characters"},
        {"Machine_Unique_Id", "9", "no machine type with that identifier"},
        {"SaveToFolder", "C:\\DNC\\NOWHERE", "does not have full read write access"},
        {"iMinimumPurgeSeconds", "5", "no field the editor changes"}, // the baud rate's rule sets it
        {"PrintOption", "1", "disabled"}, {"DataStartString", "%", "disabled"}, // with data collection off
    };
    for (const Case& c : cases) {
        Port port;
        const std::string_view name = c.name;
        port.collection.ExtractData = name == "PrintOption" || name == "DataStartString" ? 0 : 1;
        const Port before = port;
        const FieldEdit edit = editField(port.comm, port.collection, c.name, c.value, Types);
        EXPECT_FALSE(edit.accepted) << c.name << "=" << c.value;
        EXPECT_NE(edit.refusal.find(c.why), std::string::npos) << c.name << "=" << c.value << ": " << edit.refusal;
        EXPECT_TRUE(changedFields(before.comm, before.collection, port.comm, port.collection).empty()) << c.name;
    }
}

// Every field reads back what was stored in it, and a difference is seen in that field alone.
TEST(RecordFields, EveryFieldStoresReadsAndShowsAsChanged)
{
    for (const RecordField& field : recordFields()) {
        Port port;
        const Port before = port;
        const FieldValue value = field.kind == FieldKind::Text ? FieldValue{std::string("X7")}
            : field.kind == FieldKind::Bool                    ? FieldValue{std::int64_t{-1}}
                                                               : FieldValue{std::int64_t{123}};
        ASSERT_TRUE(setFieldValue(port.comm, port.collection, field, value)) << field.name;
        EXPECT_EQ(port[field.name], value) << field.name;
        const std::vector<ChangedField> changes
            = changedFields(before.comm, before.collection, port.comm, port.collection);
        ASSERT_EQ(changes.size(), before[field.name] == value ? 0u : 1u) << field.name;
        if (!changes.empty()) {
            EXPECT_EQ(changes[0].name, field.name);
            EXPECT_EQ(changes[0].before, before[field.name]);
        }
        const FieldValue wrongKind
            = field.kind == FieldKind::Text ? FieldValue{std::int64_t{1}} : FieldValue{std::string("1")};
        EXPECT_FALSE(setFieldValue(port.comm, port.collection, field, wrongKind)) << field.name;
    }
}

// Each field is one row: its key is its name, its section's rows stand together in wire order,
// and a control edits one field only.
TEST(FieldCatalogue, EachFieldIsOneRowAndEachControlEditsOneField)
{
    std::set<std::string_view> names, controls;
    std::size_t carried = 0;
    for (const FieldRow& row : fieldCatalogue()) {
        EXPECT_TRUE(names.insert(row.name).second) << row.name;
        const std::string_view key = row.dataCollection ? row.collection.key : row.comm.key;
        EXPECT_EQ(key, std::string(row.name) + "=");
        if (!row.controlName.empty()) {
            EXPECT_TRUE(controls.insert(row.controlName).second) << row.controlName;
            const std::string control = std::string(row.controlName) + (row.control == Control::Options ? "0" : "");
            EXPECT_EQ(fieldOfControl(control), &row) << control;
        }
        EXPECT_EQ(row.isChoice() && !row.choices.empty(), row.choices.size() == std::size_t(row.highest + 1))
            << row.name;
    }
    for (std::int16_t section = FirstParmsSection; section <= LastParmsSection; ++section)
        for (const FieldRow& row : sectionFields(section)) {
            EXPECT_EQ(row.section, section) << row.name;
            ++carried;
        }
    EXPECT_EQ(carried + 3, fieldCatalogue().size()) << "every carried field in its section, three kept here";
}

// Every field's default, what a fresh port holds, is a value its own row takes as it stands: within
// the row's range; through the row's rule accepted without a word and changing nothing (by the
// client's way in, enabling checked, where a fresh port's control is enabled; the rule alone
// where it is disabled); untouched by the rules of showing a record; and whole after travelling
// from the host to the terminal and back.
TEST(FieldCatalogue, EveryDefaultIsWhatItsOwnRowTakesAsItStands)
{
    const PortRecords fresh = freshPort();
    // A host that lists the fresh port's machine type.
    const std::vector<MachineTypeRecord> types{{fresh.comm.Machine_Unique_Id, "", "", ' '}};
    const ControlStates states = controlStates(fresh.comm, fresh.collection);
    for (const FieldRow& row : fieldCatalogue()) {
        SCOPED_TRACE(row.name);
        const FieldValue value = fieldValue(fresh.comm, fresh.collection, row);
        ASSERT_EQ(value, defaultValue(row)) << "stored as the row has it";
        const auto* number = std::get_if<std::int64_t>(&value);
        if (number && row.highest > row.lowest) {
            EXPECT_GE(*number, row.lowest);
            EXPECT_LE(*number, row.highest);
        }
        if (row.edit == nullptr)
            continue;
        const std::string text = number ? std::to_string(*number) : std::get<std::string>(value);
        PortRecords after = fresh;
        if (row.enabledFor(states)) {
            const FieldEdit edit = editField(after.comm, after.collection, row.name, text, types);
            EXPECT_TRUE(edit.accepted) << edit.refusal;
            EXPECT_TRUE(edit.outcome.messages.empty());
        } else if (row.edit != &field_rules::chooseSaveFolder) { // which asks the disk about the folder
            FieldEditing editing{after.comm, after.collection, types, row};
            EXPECT_TRUE(row.edit(editing, text).messages.empty());
        }
        EXPECT_EQ(after, fresh) << "changed by its own rule";
    }
    EXPECT_EQ(fresh.comm.iMinimumPurgeSeconds, minimumPurgeSeconds(fresh.comm.Baud)) << "the baud rate's least";
    PortCommParms shown = fresh.comm;
    applyShowRules(shown);
    EXPECT_EQ(shown, fresh.comm);

    const std::int16_t port = 7;
    PortParmsTables host, terminal, back;
    for (PortParmsTables* tables : {&host, &terminal, &back})
        tables->resize();
    host.setRecords(port, fresh);
    const PacketFaults none = [](std::string_view fault) { ADD_FAILURE() << fault; };
    for (std::int16_t section = FirstParmsSection; section <= LastParmsSection; ++section)
        Extract_Port_Parms_Packet(
            Build_Port_Parms_Packet(section, port, host, PacketSide::Host) + EOT, terminal, none, PacketSide::Terminal);
    EXPECT_EQ(terminal.records(port), fresh) << "as the terminal fetches it";
    for (std::int16_t section = FirstParmsSection; section <= LastParmsSection; ++section)
        Extract_Port_Parms_Packet(Build_Port_Parms_Packet(section, port, terminal) + EOT, back, none, PacketSide::Host);
    EXPECT_EQ(back.records(port), fresh) << "as the host takes the update";
}

} // namespace
} // namespace corvane
