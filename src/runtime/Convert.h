#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace corvane {

// Booleans are 16-bit: True has all bits set, both in memory and in the port records.
using Bool16 = std::int16_t;
inline constexpr Bool16 TrueValue = -1;
inline constexpr Bool16 FalseValue = 0;

constexpr Bool16 toBool16(bool b)
{
    return b ? TrueValue : FalseValue;
}

// Strict conversions from text, as the runtime makes them: blanks around the number are
// allowed, as are a sign, a fraction (rounded half to even), an exponent, "&H"/"&O" forms and
// the words True/False. Anything else raises "Type mismatch" (13); a value out of the target's
// range raises "Overflow" (6).
std::int16_t textToInt16(std::string_view text);
std::int32_t textToInt32(std::string_view text);
double textToDouble(std::string_view text);
// "True"/"False" in any case, or a number (0 is False, anything else True).
Bool16 textToBool(std::string_view text);

// The runtime's lenient reading: the number at the start of the text (blanks skipped), 0 when
// there is none. Never fails.
double textVal(std::string_view text);

// Narrowing of computed values into the 16- and 32-bit world; out of range is "Overflow".
std::int16_t toInt16(std::int64_t value);
std::int32_t toInt32(std::int64_t value);
// A floating value into the 16- and 32-bit world as the runtime assigns it: half-way values go
// to the even neighbour; out of range, infinite or not a number is "Overflow". Every floating
// value that becomes an integer goes through here, never through a bare cast.
std::int16_t roundToInt16(double value);
std::int32_t roundToInt32(double value);
// The runtime's Val of the text, assigned to a 16-bit integer: lenient reading, strict range.
std::int16_t valToInt16(std::string_view text);

// The text a number or boolean converts to: plain decimal, "-" when negative; "True"/"False".
std::string numberText(std::int64_t value);
std::string boolText(Bool16 value);

} // namespace corvane
