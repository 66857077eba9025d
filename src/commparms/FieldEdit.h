#pragma once

#include "commparms/FieldCatalogue.h"

#include <string>
#include <string_view>
#include <vector>

namespace corvane {

// A change to one field of a port's records by the field's name ("Baud", "SaveToFolder"), with
// the value as the records store it, made through the very rule the editor's control for that
// field applies: its corrections happen, its warnings are in the outcome. A change no control
// could make (an unknown name, a value that is no number, a choice the list does not have, a
// control the port's settings disable, a value the rule refuses with a message) is refused,
// with why, and changes nothing.
struct FieldEdit {
    bool accepted = false;
    std::string refusal;
    RuleOutcome outcome;
};
FieldEdit editField(PortCommParms& p, DataCollectionParms& d, std::string_view name, std::string_view value,
    const std::vector<MachineTypeRecord>& machineTypes);

} // namespace corvane
