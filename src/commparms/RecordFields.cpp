#include "commparms/RecordFields.h"

#include "runtime/Text.h"

#include "commparms/ParmsFields.h"

#include <functional>
#include <limits>
#include <vector>

namespace corvane {
namespace {

// Where a field lives: its packet field spec, or for the three that no packet carries, one of
// its own.
struct Entry {
    RecordField field;
    const FieldSpec<PortCommParms>* comm = nullptr;
    const FieldSpec<DataCollectionParms>* collection = nullptr;
};

FieldKind kindOf(Encoding encoding)
{
    switch (encoding) {
    case Encoding::Int16:
        return FieldKind::Int16;
    case Encoding::Int32:
        return FieldKind::Int32;
    case Encoding::Bool:
        return FieldKind::Bool;
    case Encoding::Text:
    case Encoding::Fixed:
        break;
    }
    return FieldKind::Text;
}

std::string_view nameOf(std::string_view key)
{
    return key.substr(0, key.size() - 1); // without its "="
}

constexpr FieldSpec<DataCollectionParms> NotCarried[] = {
    {.key = "AppendDateAndTime=", .encoding = Encoding::Int16, .int16 = &DataCollectionParms::AppendDateAndTime},
    {.key = "UseAdvancedFileOptions=",
        .encoding = Encoding::Int16,
        .int16 = &DataCollectionParms::UseAdvancedFileOptions},
    {.key = "UseAdvancedPrintOptions=",
        .encoding = Encoding::Int16,
        .int16 = &DataCollectionParms::UseAdvancedPrintOptions},
};

const std::vector<Entry>& entries()
{
    static const std::vector<Entry> all = [] {
        std::vector<Entry> out;
        for (std::int16_t section = 1; section <= 5; ++section)
            for (const auto& spec : commParmsSection(section))
                out.push_back({{nameOf(spec.key), kindOf(spec.encoding), false}, &spec, nullptr});
        for (const auto& spec : dataCollectionSection())
            out.push_back({{nameOf(spec.key), kindOf(spec.encoding), true}, nullptr, &spec});
        for (const auto& spec : NotCarried)
            out.push_back({{nameOf(spec.key), kindOf(spec.encoding), true}, nullptr, &spec});
        return out;
    }();
    return all;
}

const std::vector<RecordField>& fields()
{
    static const std::vector<RecordField> all = [] {
        std::vector<RecordField> out;
        for (const Entry& e : entries())
            out.push_back(e.field);
        return out;
    }();
    return all;
}

const Entry& entryOf(const RecordField& field)
{
    // A field from the table is found by its place in it; a copy, by its name.
    const std::vector<RecordField>& all = fields();
    const std::less<const RecordField*> before;
    if (!before(&field, all.data()) && before(&field, all.data() + all.size()))
        return entries()[static_cast<std::size_t>(&field - all.data())];
    for (const Entry& e : entries())
        if (e.field.name == field.name)
            return e;
    return entries().front(); // every RecordField comes from this table
}

template <typename R> FieldValue valueOf(const FieldSpec<R>& spec, const R& record)
{
    if (spec.int16)
        return std::int64_t{record.*spec.int16};
    if (spec.int32)
        return std::int64_t{record.*spec.int32};
    return record.*spec.text;
}

template <typename R> bool store(const FieldSpec<R>& spec, R& record, const FieldValue& value)
{
    if (spec.text) {
        if (const auto* text = std::get_if<std::string>(&value); text && travelsIntact(*text)) {
            record.*spec.text = *text;
            return true;
        }
        return false;
    }
    const auto* number = std::get_if<std::int64_t>(&value);
    if (!number)
        return false;
    if (spec.int32) {
        if (*number < std::numeric_limits<std::int32_t>::min() || *number > std::numeric_limits<std::int32_t>::max())
            return false;
        record.*spec.int32 = static_cast<std::int32_t>(*number);
        return true;
    }
    if (*number < std::numeric_limits<std::int16_t>::min() || *number > std::numeric_limits<std::int16_t>::max())
        return false;
    record.*spec.int16 = static_cast<std::int16_t>(*number);
    return true;
}

} // namespace

bool travelsIntact(std::string_view text)
{
    return text.find_first_of("\x01\x02\x03\x04") == std::string_view::npos;
}

std::span<const RecordField> recordFields()
{
    return fields();
}

const RecordField* findRecordField(std::string_view name)
{
    for (const RecordField& field : fields())
        if (field.name == name)
            return &field;
    return nullptr;
}

FieldValue fieldValue(const PortCommParms& p, const DataCollectionParms& d, const RecordField& field)
{
    const Entry& e = entryOf(field);
    return e.comm ? valueOf(*e.comm, p) : valueOf(*e.collection, d);
}

bool setFieldValue(PortCommParms& p, DataCollectionParms& d, const RecordField& field, const FieldValue& value)
{
    const Entry& e = entryOf(field);
    return e.comm ? store(*e.comm, p, value) : store(*e.collection, d, value);
}

std::vector<ChangedField> changedFields(
    const PortCommParms& p0, const DataCollectionParms& d0, const PortCommParms& p1, const DataCollectionParms& d1)
{
    std::vector<ChangedField> changes;
    for (const RecordField& field : fields()) {
        FieldValue before = fieldValue(p0, d0, field);
        FieldValue after = fieldValue(p1, d1, field);
        if (before != after)
            changes.push_back({field.name, std::move(before), std::move(after)});
    }
    return changes;
}

bool keptByTerminalOnly(std::string_view name)
{
    for (const auto& kept : NotCarried)
        if (nameOf(kept.key) == name)
            return true;
    return false;
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

} // namespace corvane
