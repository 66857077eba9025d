#pragma once

#include "commparms/FieldCatalogue.h"

namespace corvane::field_rules {

// The rules the catalogue's rows name: what each kind of control does with a value the user
// gives it. Each reads the row for the member, the range and the captions it works on.

// Lists and option groups: a code in the row's range, stored, or through the control's own rule.
RuleOutcome storeChoice(FieldEditing& e, std::string_view value);
// A code in the row's range; any other value is refused.
std::int16_t choiceCode(const FieldEditing& e, std::string_view value);
// What the user does to a control: the form is up, no record is being shown.
inline constexpr EditorFlags ByTheUser{true, false, false};
// A list or option group whose click has a rule of its own (the baud rate, the protocol, ...):
// the code through that rule, as the user's click runs it.
template <RuleOutcome (*Click)(PortCommParms&, std::int16_t, const EditorFlags&)>
RuleOutcome choose(FieldEditing& e, std::string_view value)
{
    return Click(e.p, choiceCode(e, value), ByTheUser);
}
RuleOutcome chooseMachineType(FieldEditing& e, std::string_view value);
RuleOutcome changeRedirectCode(FieldEditing& e, std::string_view value);

// Fields checked when left, or on each change.
RuleOutcome storeDigits(FieldEditing& e, std::string_view value);
RuleOutcome leavePurgeSeconds(FieldEditing& e, std::string_view value);
RuleOutcome changeEobNulls(FieldEditing& e, std::string_view value);
RuleOutcome leaveSegmentLength(FieldEditing& e, std::string_view value);
RuleOutcome leaveAsciiValue(FieldEditing& e, std::string_view value);
RuleOutcome storeText(FieldEditing& e, std::string_view value);
RuleOutcome chooseSaveFolder(FieldEditing& e, std::string_view value);

// Check boxes: a plain one stores -1 (0 off) in a port's communication record and 1 in its data
// collection record; three have rules of their own.
RuleOutcome tick(FieldEditing& e, std::string_view value);
RuleOutcome tickPurgeIfInactive(FieldEditing& e, std::string_view value);
RuleOutcome tickNoWaitRead(FieldEditing& e, std::string_view value);
RuleOutcome tickStripOutgoingHeader(FieldEditing& e, std::string_view value);

} // namespace corvane::field_rules
