#pragma once

#include "commparms/FieldCatalogue.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>

namespace corvane {

// Every field of a port's two records, as the catalogue lists them (packet order, the data
// collection record's three fields that no packet carries last), found by the name its packet key
// gives it ("Baud", "SaveToFolder").
using RecordField = FieldRow;
std::span<const RecordField> recordFields();
const RecordField* findRecordField(std::string_view name);

// A field's stored value: a number for the numeric kinds, a text for texts.
using FieldValue = std::variant<std::int64_t, std::string>;
FieldValue fieldValue(const PortCommParms& p, const DataCollectionParms& d, const RecordField& field);
// A value as a person reads it: a flag as True or False, a number as digits, a text quoted with
// its control characters spelt out.
std::string fieldValueText(std::string_view name, const FieldValue& value);
// What a fresh port holds in a field (its row's default), and both records of a fresh port.
FieldValue defaultValue(const RecordField& field);
PortRecords freshPort();

// Whether a field is one that no packet carries: kept by this terminal only, never sent.
bool keptByTerminalOnly(std::string_view name);
// Whether a text can travel in a field: the packet's control characters (SOH, STX, ETX, EOT)
// would end or split its packet.
bool travelsIntact(std::string_view text);
// Stores a value as it stands (no rule runs); false when it does not fit the field's kind or
// could not travel.
bool setFieldValue(PortCommParms& p, DataCollectionParms& d, const RecordField& field, const FieldValue& value);

// The fields whose values differ between two states of a port's records, with both values, and
// who made the change: "user" (an edit), or "rule" (a correction the editor made on its own).
struct ChangedField {
    std::string_view name;
    FieldValue before;
    FieldValue after;
    std::string_view by = "user"; // "rule" when a rule of showing the record made the change
};
std::vector<ChangedField> changedFields(
    const PortCommParms& p0, const DataCollectionParms& d0, const PortCommParms& p1, const DataCollectionParms& d1);
// Marks as the rules' ("rule") each change that is one of `corrections`: the same field made the
// same value by the rules of showing the record.
void markCorrections(std::vector<ChangedField>& changes, const std::vector<ChangedField>& corrections);

} // namespace corvane
