#include "commparms/RecordFields.h"

#include "runtime/Text.h"

#include <limits>
#include <vector>

namespace corvane {
namespace {

template <typename R> FieldValue valueOf(const FieldSpec<R>& wire, const R& record)
{
    if (wire.int16)
        return std::int64_t{record.*wire.int16};
    if (wire.int32)
        return std::int64_t{record.*wire.int32};
    return record.*wire.text;
}

template <typename R> bool store(const FieldSpec<R>& wire, R& record, const FieldValue& value)
{
    if (wire.text) {
        if (const auto* text = std::get_if<std::string>(&value); text && travelsIntact(*text)) {
            record.*wire.text = *text;
            return true;
        }
        return false;
    }
    const auto* number = std::get_if<std::int64_t>(&value);
    if (!number)
        return false;
    if (wire.int32) {
        if (*number < std::numeric_limits<std::int32_t>::min() || *number > std::numeric_limits<std::int32_t>::max())
            return false;
        record.*wire.int32 = static_cast<std::int32_t>(*number);
        return true;
    }
    if (*number < std::numeric_limits<std::int16_t>::min() || *number > std::numeric_limits<std::int16_t>::max())
        return false;
    record.*wire.int16 = static_cast<std::int16_t>(*number);
    return true;
}

} // namespace

bool travelsIntact(std::string_view text)
{
    return text.find_first_of("\x01\x02\x03\x04") == std::string_view::npos;
}

std::span<const RecordField> recordFields()
{
    return fieldCatalogue();
}

const RecordField* findRecordField(std::string_view name)
{
    return findField(name);
}

FieldValue fieldValue(const PortCommParms& p, const DataCollectionParms& d, const RecordField& field)
{
    return field.dataCollection ? valueOf(field.collection, d) : valueOf(field.comm, p);
}

bool setFieldValue(PortCommParms& p, DataCollectionParms& d, const RecordField& field, const FieldValue& value)
{
    return field.dataCollection ? store(field.collection, d, value) : store(field.comm, p, value);
}

FieldValue defaultValue(const RecordField& field)
{
    if (field.kind == FieldKind::Text)
        return std::string(field.defaultText);
    return std::int64_t{field.defaultNumber};
}

PortRecords freshPort()
{
    PortRecords fresh;
    for (const RecordField& field : fieldCatalogue())
        setFieldValue(fresh.comm, fresh.collection, field, defaultValue(field));
    return fresh;
}

std::vector<ChangedField> changedFields(
    const PortCommParms& p0, const DataCollectionParms& d0, const PortCommParms& p1, const DataCollectionParms& d1)
{
    std::vector<ChangedField> changes;
    for (const RecordField& field : fieldCatalogue()) {
        FieldValue before = fieldValue(p0, d0, field);
        FieldValue after = fieldValue(p1, d1, field);
        if (before != after)
            changes.push_back({field.name, std::move(before), std::move(after)});
    }
    return changes;
}

bool keptByTerminalOnly(std::string_view name)
{
    const FieldRow* row = findField(name);
    return row != nullptr && row->section == NotCarried;
}

std::string fieldValueText(std::string_view name, const FieldValue& value)
{
    if (const auto* number = std::get_if<std::int64_t>(&value)) {
        const RecordField* field = findRecordField(name);
        if (field && field->kind == FieldKind::Bool)
            return *number != 0 ? "True" : "False";
        return std::to_string(*number);
    }
    std::string quoted;
    for (const char c : std::get<std::string>(value)) {
        if (c == '"' || c == '\\')
            quoted += '\\';
        quoted += c;
    }
    return "\"" + escapedControls(quoted) + "\"";
}

void markCorrections(std::vector<ChangedField>& changes, const std::vector<ChangedField>& corrections)
{
    for (ChangedField& change : changes)
        for (const ChangedField& correction : corrections)
            if (correction.name == change.name && correction.after == change.after)
                change.by = "rule";
}

} // namespace corvane
