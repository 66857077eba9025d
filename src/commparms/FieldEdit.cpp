#include "commparms/FieldEdit.h"

#include "commparms/DataCollectionRules.h"
#include "commparms/RecordFields.h"
#include "runtime/Convert.h"
#include "runtime/RunTimeError.h"

#include <algorithm>
#include <array>
#include <functional>
#include <optional>

namespace corvane {
namespace {

// What the user does to a control: the form is up, no record is being shown.
constexpr EditorFlags ByTheUser{true, false, false};

struct Refused {
    std::string why;
};

std::string quoted(std::string_view name, std::string_view value)
{
    return std::string(name) + " does not take \"" + std::string(value) + "\"";
}

std::int16_t choice(std::string_view name, std::string_view value, int last)
{
    try {
        const std::int16_t index = textToInt16(value);
        if (index >= 0 && index <= last)
            return index;
    } catch (const RunTimeError&) {
    }
    throw Refused{quoted(name, value) + ": it takes 0 to " + std::to_string(last)};
}

bool ticked(std::string_view name, std::string_view value)
{
    try {
        return textToBool(value) != 0;
    } catch (const RunTimeError&) {
        throw Refused{quoted(name, value) + ": it takes -1, 1 or True to tick, 0 or False to clear"};
    }
}

std::string digits(std::string_view name, std::string_view value)
{
    if (!std::all_of(value.begin(), value.end(), [](char c) { return c >= '0' && c <= '9'; }))
        throw Refused{quoted(name, value) + ": its field takes digits only"};
    return std::string(value);
}

std::string text(std::string_view name, std::string_view value, std::size_t longest = std::string::npos)
{
    if (value.size() > longest)
        throw Refused{quoted(name, value) + ": its field holds " + std::to_string(longest) + " characters at most"};
    return std::string(value);
}

void enabled(bool on, std::string_view name)
{
    if (!on)
        throw Refused{std::string(name) + " cannot be changed now: its control is disabled for this port's settings"};
}

bool isAsciiField(std::string_view name)
{
    static constexpr std::array<std::string_view, 25> names = {"OutHdrVal1", "OutHdrVal2", "OutHdrVal3", "OutHdrVal4",
        "OutHdrVal5", "OutHdrVal6", "StStr", "EndStr", "VarStrtStr1", "VarStrtStr2", "VarStrtStr3", "VarStrtStr4",
        "VarStrtStr5", "VarStrtStr6", "VarStrtStr7", "VarStrtStr8", "VarEndStr1", "VarEndStr2", "VarEndStr3",
        "VarEndStr4", "VarEndStr5", "VarEndStr6", "VarEndStr7", "VarEndStr8", "CharToCompress"};
    return std::find(names.begin(), names.end(), name) != names.end();
}

RuleOutcome apply(PortCommParms& p, DataCollectionParms& d, std::string_view name, std::string_view value,
    const std::vector<MachineTypeRecord>& types)
{
    const CommControlStates comm = commControlStates(p);
    const DataCollectionStates collect = dataCollectionStates(d);
    const auto is = [name](std::string_view n) { return name == n; };

    // Lists and option groups: the rule of their click.
    if (is("Baud"))
        return BaudRates_Click(p, choice(name, value, 14), ByTheUser);
    if (is("SpecificProtocol"))
        return SpecificProtocols_Click(p, choice(name, value, 6), ByTheUser);
    if (is("EobConversion"))
        return EndofBlock_Click(p, choice(name, value, 6), ByTheUser);
    if (is("DataType"))
        return DataType_Click(p, choice(name, value, 3), ByTheUser);
    if (is("Handshaking")) {
        enabled(comm.handshakeFrame, name);
        return Handshake_Click(p, choice(name, value, 2), ByTheUser);
    }
    if (is("Remote_Req"))
        return KeyPad_Click(p, choice(name, value, 2), ByTheUser);
    const struct {
        std::string_view name;
        std::int16_t PortCommParms::*field;
        int last;
    } plainChoices[] = {{"Parity", &PortCommParms::Parity, 2}, {"DataBits", &PortCommParms::DataBits, 1},
        {"StopBits", &PortCommParms::StopBits, 1}};
    for (const auto& c : plainChoices)
        if (is(c.name)) {
            p.*c.field = choice(name, value, c.last);
            return {};
        }
    if (is("Machine_Unique_Id")) {
        const std::int16_t id = choice(name, value, INT16_MAX);
        if (std::none_of(types.begin(), types.end(), [id](const MachineTypeRecord& t) { return t.unique_id == id; }))
            throw Refused{quoted(name, value) + ": the host lists no machine type with that identifier"};
        p.Machine_Unique_Id = id;
        return {};
    }

    // Fields checked when left, or on each change.
    if (is("iPurgeIfInactiveSeconds")) {
        enabled(comm.purgeSeconds, name);
        return purgeSecondsLeft(p, digits(name, value), ByTheUser);
    }
    if (is("EobNullNumber"))
        return eobNullsChanged(p, digits(name, value), ByTheUser);
    if (is("MaxDataSegment")) {
        enabled(collect.maxSegment, name);
        return segmentLengthLeft(d, digits(name, value), ByTheUser);
    }
    if (isAsciiField(name)) {
        if (name.starts_with("OutHdr"))
            enabled(comm.outgoingHeader, name);
        if (const AsciiCheck check = ValidateAsciiValue(value); check.message)
            throw Refused{quoted(name, value) + ": " + check.message->text};
        const RecordField* field = findRecordField(name);
        auto stored = static_cast<std::int16_t>(std::get<std::int64_t>(fieldValue(p, d, *field)));
        RuleOutcome outcome = asciiFieldLeft(stored, value, ByTheUser);
        setFieldValue(p, d, *field, std::int64_t{stored});
        return outcome;
    }
    if (is("RedirectCode")) {
        const std::int16_t code = choice(name, value, 255);
        RedirectCode_Change(p, code == 0 ? std::string() : std::string(1, static_cast<char>(code)));
        return {};
    }
    for (const auto& [n, field] : {std::pair{"Port_No", &PortCommParms::Port_No},
             std::pair{"StAmt", &PortCommParms::StAmt}, std::pair{"EndAmt", &PortCommParms::EndAmt}})
        if (is(n)) {
            p.*field = numberFieldValue(digits(name, value));
            return {};
        }

    // Check boxes.
    if (is("bPurgeIfInactive")) {
        enabled(comm.purgeOption, name);
        ckPurgeIfInactive_Click(p, ticked(name, value));
        return {};
    }
    if (is("bEnableNoWaitRead")) {
        RuleOutcome outcome;
        if (ckEnableNoWaitRead_Click(p, ticked(name, value), ByTheUser))
            outcome.messages.push_back({std::string(NoWaitReadNotice)});
        return outcome;
    }
    if (is("StripOutgoingHeader")) {
        StripOutgoingHeader_Click(p, ticked(name, value));
        return {};
    }
    if (is("Aux"))
        enabled(comm.ignoreIncomingData, name);
    if (is("OutHdrEobVal"))
        enabled(comm.outgoingHeader, name);
    for (const char* n : {"ExtractData", "AppendDateAndTime", "UseAdvancedFileOptions", "UseAdvancedPrintOptions"})
        if (is(n)) {
            if (!is("ExtractData"))
                enabled(is("AppendDateAndTime")        ? collect.fileNameString
                        : is("UseAdvancedFileOptions") ? collect.useAdvancedFileOptions
                                                       : collect.useAdvancedPrintOptions,
                    name);
            setFieldValue(p, d, *findRecordField(name), std::int64_t{ticked(name, value) ? 1 : 0});
            return {};
        }
    const struct {
        std::string_view name;
        std::int16_t DataCollectionParms::*field;
        int last;
        bool on;
    } collectChoices[] = {{"DataStreamOption", &DataCollectionParms::DataStreamOption, 1, collect.streamOptions},
        {"FileNameOption", &DataCollectionParms::FileNameOption, 1, collect.fileNameFrame},
        {"PrintOption", &DataCollectionParms::PrintOption, 2, collect.printFrame}};
    for (const auto& c : collectChoices)
        if (is(c.name)) {
            enabled(c.on, name);
            d.*c.field = choice(name, value, c.last);
            return {};
        }
    if (is("SaveToFolder")) {
        enabled(collect.saveFolder, name);
        const FolderChoice chosen = saveFolderChosen(d, value, normalReceiveFolder(types, p.Machine_Unique_Id));
        if (!chosen.taken)
            throw Refused{quoted(name, value) + ": " + chosen.message->text};
        return {};
    }

    const RecordField* field = findRecordField(name);
    if (!field || is("Machine_Category_Id"))
        throw Refused{std::string(name) + " is no field the editor changes"};
    if (field->kind == FieldKind::Bool || field->kind == FieldKind::Int16) {
        setFieldValue(p, d, *field, std::int64_t{flagOf(ticked(name, value))});
        return {};
    }
    const std::size_t longest = is("ProgQualifier") ? 10 : is("RequestCode") ? 1 : std::string::npos;
    setFieldValue(p, d, *field, text(name, value, longest));
    return {};
}

} // namespace

FieldEdit editField(PortCommParms& p, DataCollectionParms& d, std::string_view name, std::string_view value,
    const std::vector<MachineTypeRecord>& machineTypes)
{
    PortCommParms commAfter = p;
    DataCollectionParms collectAfter = d;
    if (!travelsIntact(value))
        return {false,
            std::string(name) + " does not take that value: no value may hold the packet's control characters", {}};
    try {
        RuleOutcome outcome = apply(commAfter, collectAfter, name, value, machineTypes);
        p = std::move(commAfter);
        d = std::move(collectAfter);
        return {true, {}, std::move(outcome)};
    } catch (const Refused& refused) {
        return {false, refused.why, {}};
    } catch (const RunTimeError& e) {
        return {false, quoted(name, value) + ": " + errorDescription(e.number()), {}};
    }
}

} // namespace corvane
