#include "commparms/FieldEdit.h"

#include "commparms/FieldRules.h"
#include "commparms/RecordFields.h"
#include "runtime/Convert.h"
#include "runtime/RunTimeError.h"

#include <algorithm>

namespace corvane {
namespace {

std::string quoted(std::string_view name, std::string_view value)
{
    return std::string(name) + " does not take \"" + std::string(value) + "\"";
}

[[noreturn]] void refuse(const FieldEditing& e, std::string_view value, std::string_view why)
{
    throw FieldRefused{quoted(e.row.name, value) + ": " + std::string(why)};
}

bool ticked(const FieldEditing& e, std::string_view value)
{
    try {
        return textToBool(value) != 0;
    } catch (const RunTimeError&) {
        refuse(e, value, "it takes -1, 1 or True to tick, 0 or False to clear");
    }
}

std::string digits(const FieldEditing& e, std::string_view value)
{
    if (!std::all_of(value.begin(), value.end(), [](char c) { return c >= '0' && c <= '9'; }))
        refuse(e, value, "its field takes digits only");
    return std::string(value);
}

void store(FieldEditing& e, const FieldValue& value)
{
    setFieldValue(e.p, e.d, e.row, value);
}

} // namespace

namespace field_rules {

std::int16_t choiceCode(const FieldEditing& e, std::string_view value)
{
    try {
        const std::int16_t code = textToInt16(value);
        if (code >= e.row.lowest && code <= e.row.highest)
            return code;
    } catch (const RunTimeError&) {
    }
    refuse(e, value, "it takes " + std::to_string(e.row.lowest) + " to " + std::to_string(e.row.highest));
}

RuleOutcome storeChoice(FieldEditing& e, std::string_view value)
{
    store(e, std::int64_t{choiceCode(e, value)});
    return {};
}

RuleOutcome chooseMachineType(FieldEditing& e, std::string_view value)
{
    const std::int16_t id = choiceCode(e, value);
    if (std::none_of(e.machineTypes.begin(), e.machineTypes.end(),
            [id](const MachineTypeRecord& t) { return t.unique_id == id; }))
        refuse(e, value, "the host lists no machine type with that identifier");
    e.p.Machine_Unique_Id = id;
    return {};
}

RuleOutcome changeRedirectCode(FieldEditing& e, std::string_view value)
{
    const std::int16_t code = choiceCode(e, value);
    RedirectCode_Change(e.p, code == 0 ? std::string() : std::string(1, static_cast<char>(code)));
    return {};
}

RuleOutcome storeDigits(FieldEditing& e, std::string_view value)
{
    store(e, std::int64_t{numberFieldValue(digits(e, value))});
    return {};
}

RuleOutcome leavePurgeSeconds(FieldEditing& e, std::string_view value)
{
    return purgeSecondsLeft(e.p, digits(e, value), ByTheUser);
}

RuleOutcome changeEobNulls(FieldEditing& e, std::string_view value)
{
    return eobNullsChanged(e.p, digits(e, value), ByTheUser);
}

RuleOutcome leaveSegmentLength(FieldEditing& e, std::string_view value)
{
    return segmentLengthLeft(e.d, digits(e, value), ByTheUser);
}

RuleOutcome leaveAsciiValue(FieldEditing& e, std::string_view value)
{
    if (const AsciiCheck check = ValidateAsciiValue(value); check.message)
        refuse(e, value, check.message->text);
    auto stored = static_cast<std::int16_t>(std::get<std::int64_t>(fieldValue(e.p, e.d, e.row)));
    RuleOutcome outcome = asciiFieldLeft(stored, value, ByTheUser);
    store(e, std::int64_t{stored});
    return outcome;
}

RuleOutcome storeText(FieldEditing& e, std::string_view value)
{
    if (value.size() > e.row.longest)
        refuse(e, value, "its field holds " + std::to_string(e.row.longest) + " characters at most");
    store(e, std::string(value));
    return {};
}

RuleOutcome chooseSaveFolder(FieldEditing& e, std::string_view value)
{
    const FolderChoice chosen
        = saveFolderChosen(e.d, value, normalReceiveFolder(e.machineTypes, e.p.Machine_Unique_Id));
    if (!chosen.taken)
        refuse(e, value, chosen.message->text);
    return {};
}

RuleOutcome tick(FieldEditing& e, std::string_view value)
{
    const bool on = ticked(e, value);
    store(e, std::int64_t{e.row.dataCollection ? (on ? 1 : 0) : flagOf(on)});
    return {};
}

RuleOutcome tickPurgeIfInactive(FieldEditing& e, std::string_view value)
{
    ckPurgeIfInactive_Click(e.p, ticked(e, value));
    return {};
}

RuleOutcome tickNoWaitRead(FieldEditing& e, std::string_view value)
{
    RuleOutcome outcome;
    if (ckEnableNoWaitRead_Click(e.p, ticked(e, value), ByTheUser))
        outcome.messages.push_back({std::string(NoWaitReadNotice)});
    return outcome;
}

RuleOutcome tickStripOutgoingHeader(FieldEditing& e, std::string_view value)
{
    StripOutgoingHeader_Click(e.p, ticked(e, value));
    return {};
}

} // namespace field_rules

FieldEdit editField(PortCommParms& p, DataCollectionParms& d, std::string_view name, std::string_view value,
    const std::vector<MachineTypeRecord>& machineTypes)
{
    const FieldRow* row = findField(name);
    if (row == nullptr || row->edit == nullptr)
        return {false, std::string(name) + " is no field the editor changes", {}};
    if (!travelsIntact(value))
        return {false,
            std::string(name) + " does not take that value: no value may hold the packet's control characters", {}};
    if (!row->enabledFor(controlStates(p, d)))
        return {
            false, std::string(name) + " cannot be changed now: its control is disabled for this port's settings", {}};
    PortCommParms commAfter = p;
    DataCollectionParms collectAfter = d;
    FieldEditing editing{commAfter, collectAfter, machineTypes, *row};
    try {
        RuleOutcome outcome = row->edit(editing, value);
        p = std::move(commAfter);
        d = std::move(collectAfter);
        return {true, {}, std::move(outcome)};
    } catch (const FieldRefused& refused) {
        return {false, refused.why, {}};
    } catch (const RunTimeError& e) {
        return {false, quoted(name, value) + ": " + errorDescription(e.number()), {}};
    }
}

} // namespace corvane
