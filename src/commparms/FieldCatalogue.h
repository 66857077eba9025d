#pragma once

#include "commparms/DataCollectionRules.h"
#include "commparms/MachineTypes.h"
#include "commparms/ParmsRules.h"
#include "commparms/PortParms.h"

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

// Every field of a port's two records is one row of one table: where it travels, how it is
// encoded, what values it takes and holds on a fresh port, the rule that edits it, when its
// control is enabled, and how the editor and its help name it. The packet codec, the record access, the editor's rules,
// the tabs, the client's set-parms and import and the simulated host's plant all read this table; adding a field is one
// row here.

// A port's parameters travel in six sections, both ways: sections 1-5 fill the port's
// PortCommParms, section 6 its DataCollectionParms.
inline constexpr std::int16_t FirstParmsSection = 1;
inline constexpr std::int16_t LastParmsSection = 6;
// The section of the fields no packet carries: kept by this terminal only.
inline constexpr std::int16_t NotCarried = 0;

enum class Encoding {
    Int16, // decimal text of a 16-bit integer
    Int32, // decimal text of a 32-bit integer
    Bool, // "True"/"False"; a number is accepted on receipt
    Text, // as it stands
    Fixed, // exactly `width` characters: padded with blanks or cut
};

// How a field's value is held, as the front ends see it.
enum class FieldKind {
    Int16, // a number, flags included (-1 on, 0 off)
    Int32,
    Bool, // -1 or 0, carried as "True"/"False"
    Text,
};

// The wire key of a field and the record member it carries.
template <typename Record> struct FieldSpec {
    std::string_view key = {};
    Encoding encoding = Encoding::Int16;
    std::int16_t Record::*int16 = nullptr; // Int16 and Bool
    std::int32_t Record::*int32 = nullptr; // Int32
    std::string Record::*text = nullptr; // Text and Fixed
    std::size_t width = 0; // Fixed
    bool sentOnly = false; // sent by the terminal, never taken from the host
};

// The kind of control that edits a field, which decides how a value is read for it.
enum class Control {
    None, // no control edits it (the editor never changes it)
    List, // a drop-down list: the index of a choice
    Options, // a group of option buttons: the code of a choice
    Check, // a check box
    Digits, // a field that takes digits only
    Ascii, // an ASCII value, 0-255, empty for none
    Text, // free text, up to `longest` characters
};

struct FieldRow;

// A change to one field under way: both records, the host's machine types, and the row.
struct FieldEditing {
    PortCommParms& p;
    DataCollectionParms& d;
    const std::vector<MachineTypeRecord>& machineTypes;
    const FieldRow& row;
};
// The rule a control applies when the user changes it: corrects the records, says what to tell
// the user; throws FieldRefused when no control could take the value.
using EditRule = RuleOutcome (*)(FieldEditing& editing, std::string_view value);
struct FieldRefused {
    std::string why;
};

// What decides the editor's enabling: both records' control states.
struct ControlStates {
    CommControlStates comm;
    DataCollectionStates collection;
};
ControlStates controlStates(const PortCommParms& p, const DataCollectionParms& d);
using EnabledWhen = bool (*)(const ControlStates& states);

struct FieldRow {
    std::string_view name = {}; // the record member's name, and its packet key without "="
    std::int16_t section = NotCarried;
    FieldKind kind = FieldKind::Int16;
    bool dataCollection = false; // a field of DataCollectionParms rather than PortCommParms
    FieldSpec<PortCommParms> comm; // the wire key and member, for a PortCommParms field
    FieldSpec<DataCollectionParms> collection; // the same, for a DataCollectionParms field
    Control control = Control::None;
    std::int32_t lowest = 0, highest = 0; // the values a choice or a number may take
    std::span<const std::string_view> choices; // a list's or option group's captions, by code
    std::size_t longest = std::string::npos; // a text's most characters
    EditRule edit = nullptr; // none: the editor never changes the field
    EnabledWhen enabled = nullptr; // none: its control is always enabled
    std::string_view controlName = {}; // the editor's control ("BaudRates"), or option buttons' prefix ("Parity_")
    std::string_view caption = {}; // what the editor calls it
    std::string_view helpAnchor = {}; // the help page's section about it
    // What a fresh port holds, as the record stores it: a number for the numeric kinds (a flag's
    // -1 or 0 included), a text for the texts (a fixed-width one at its width, as it travels).
    std::int32_t defaultNumber = 0;
    std::string_view defaultText = {};

    bool enabledFor(const ControlStates& states) const { return enabled == nullptr || enabled(states); }
    bool isChoice() const { return control == Control::List || control == Control::Options; }
};

// Every row, in wire order, section by section; the fields no packet carries come last.
std::span<const FieldRow> fieldCatalogue();
const FieldRow* findField(std::string_view name);
// The rows of one section (1-6), in the order the packet carries them.
std::span<const FieldRow> sectionFields(std::int16_t section);
// The row whose control has this object name (an option button's "Parity_1" included).
const FieldRow* fieldOfControl(std::string_view objectName);

// Captions of the protocol codes 0-6.
inline constexpr std::array<std::string_view, 7> ProtocolCaptions
    = {"General", "Mazatrol CMT", "Heidenhain Blockwise", "Bridgeport DNC Link", "GE 2000", "Moog S-24", "K&T"};
// Captions of the key pad codes 0-2.
inline constexpr std::array<std::string_view, 3> KeyPadCaptions = {"None", "Burr-Brown", "QSI Terminal"};

} // namespace corvane
