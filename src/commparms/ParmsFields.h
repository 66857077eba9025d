#pragma once

#include "commparms/PortParms.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace corvane {

// A port's parameters travel in six sections, both ways: sections 1-5 fill the port's
// PortCommParms, section 6 its DataCollectionParms. Each field has its key, the name the whole
// program knows it by, and its encoding on the wire.
inline constexpr std::int16_t FirstParmsSection = 1;
inline constexpr std::int16_t LastParmsSection = 6;

enum class Encoding {
    Int16, // decimal text of a 16-bit integer
    Int32, // decimal text of a 32-bit integer
    Bool, // "True"/"False"; a number is accepted on receipt
    Text, // as it stands
    Fixed, // exactly `width` characters: padded with blanks or cut
};

// One key of a section, in wire order, and the record field it carries.
template <typename Record> struct FieldSpec {
    std::string_view key;
    Encoding encoding;
    std::int16_t Record::*int16 = nullptr; // Int16 and Bool
    std::int32_t Record::*int32 = nullptr; // Int32
    std::string Record::*text = nullptr; // Text and Fixed
    std::size_t width = 0; // Fixed
    bool sentOnly = false; // sent by the terminal, never taken from the host
};

// The keys of section 1-5 and of section 6, in the order they are sent.
std::span<const FieldSpec<PortCommParms>> commParmsSection(std::int16_t section);
std::span<const FieldSpec<DataCollectionParms>> dataCollectionSection();

} // namespace corvane
