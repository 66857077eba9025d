#pragma once

#include "commparms/FieldCatalogue.h"

namespace corvane::field_rules {

// The rules the catalogue's rows name: what each kind of control does with a value the user
// gives it. Each reads the row for the member, the range and the captions it works on.

// Lists and option groups: a code in the row's range, stored, or through the control's own rule.
RuleOutcome storeChoice(FieldEditing& e, std::string_view value);
RuleOutcome chooseBaud(FieldEditing& e, std::string_view value);
RuleOutcome chooseProtocol(FieldEditing& e, std::string_view value);
RuleOutcome chooseEndOfBlock(FieldEditing& e, std::string_view value);
RuleOutcome chooseDataType(FieldEditing& e, std::string_view value);
RuleOutcome chooseHandshake(FieldEditing& e, std::string_view value);
RuleOutcome chooseKeyPad(FieldEditing& e, std::string_view value);
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
