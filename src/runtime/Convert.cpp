#include "runtime/Convert.h"

#include "runtime/RunTimeError.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <optional>

namespace corvane {
namespace {

bool isBlank(char c)
{
    return c == ' ' || c == '\t';
}

std::string_view trimmed(std::string_view text)
{
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

bool equalsNoCase(std::string_view a, std::string_view b)
{
    if (a.size() != b.size())
        return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
        char x = a[i], y = b[i];
        if (x >= 'A' && x <= 'Z')
            x = static_cast<char>(x - 'A' + 'a');
        if (y >= 'A' && y <= 'Z')
            y = static_cast<char>(y - 'A' + 'a');
        if (x != y)
            return false;
    }
    return true;
}

// "&H1F" / "&O17": at most 16 bits of digits make an Integer (so &HFFFF is -1), at most 32 a Long.
std::optional<double> radixValue(std::string_view text)
{
    if (text.size() < 3 || text[0] != '&')
        return std::nullopt;
    const char kind = text[1];
    const int base = (kind == 'H' || kind == 'h') ? 16 : (kind == 'O' || kind == 'o') ? 8 : 0;
    if (base == 0)
        return std::nullopt;
    std::uint64_t value = 0;
    for (char c : text.substr(2)) {
        int digit = -1;
        if (c >= '0' && c <= '9')
            digit = c - '0';
        else if (base == 16 && c >= 'a' && c <= 'f')
            digit = c - 'a' + 10;
        else if (base == 16 && c >= 'A' && c <= 'F')
            digit = c - 'A' + 10;
        if (digit < 0 || digit >= base)
            raise(err::TypeMismatch);
        value = value * static_cast<std::uint64_t>(base) + static_cast<std::uint64_t>(digit);
        if (value > 0xFFFFFFFFull)
            raise(err::Overflow);
    }
    if (value <= 0xFFFF)
        return static_cast<double>(static_cast<std::int16_t>(static_cast<std::uint16_t>(value)));
    return static_cast<double>(static_cast<std::int32_t>(static_cast<std::uint32_t>(value)));
}

// Sign, digits, optional fraction, optional exponent (E or D); nothing else.
bool isDecimalNumber(std::string_view text)
{
    std::size_t i = 0;
    if (i < text.size() && (text[i] == '+' || text[i] == '-'))
        ++i;
    std::size_t digits = 0;
    while (i < text.size() && text[i] >= '0' && text[i] <= '9')
        ++i, ++digits;
    if (i < text.size() && text[i] == '.') {
        ++i;
        while (i < text.size() && text[i] >= '0' && text[i] <= '9')
            ++i, ++digits;
    }
    if (digits == 0)
        return false;
    if (i < text.size() && (text[i] == 'e' || text[i] == 'E' || text[i] == 'd' || text[i] == 'D')) {
        ++i;
        if (i < text.size() && (text[i] == '+' || text[i] == '-'))
            ++i;
        std::size_t expDigits = 0;
        while (i < text.size() && text[i] >= '0' && text[i] <= '9')
            ++i, ++expDigits;
        if (expDigits == 0)
            return false;
    }
    return i == text.size();
}

double numericValue(std::string_view text)
{
    text = trimmed(text);
    if (equalsNoCase(text, "True"))
        return -1.0;
    if (equalsNoCase(text, "False"))
        return 0.0;
    if (auto radix = radixValue(text))
        return *radix;
    if (!isDecimalNumber(text))
        raise(err::TypeMismatch);

    std::string normal(text.front() == '+' ? text.substr(1) : text);
    for (char& c : normal)
        if (c == 'd' || c == 'D')
            c = 'e';
    double value = 0.0;
    const auto result = std::from_chars(normal.data(), normal.data() + normal.size(), value);
    if (result.ec == std::errc::result_out_of_range) {
        // Too small to represent is zero; too large is an overflow.
        const auto e = normal.find_first_of("eE");
        if (e != std::string::npos && normal[e + 1] == '-')
            return 0.0;
        raise(err::Overflow);
    }
    if (result.ec != std::errc() || !std::isfinite(value))
        raise(err::Overflow);
    return value;
}

template <typename T> T roundedInto(double value)
{
    // Half-way values go to the even neighbour, as the runtime's integer conversions do.
    const double r = std::nearbyint(value);
    if (!(r >= static_cast<double>(std::numeric_limits<T>::min())
            && r <= static_cast<double>(std::numeric_limits<T>::max())))
        raise(err::Overflow); // NaN fails both comparisons and lands here too
    return static_cast<T>(r);
}

} // namespace

std::int16_t textToInt16(std::string_view text)
{
    return roundedInto<std::int16_t>(numericValue(text));
}

std::int32_t textToInt32(std::string_view text)
{
    return roundedInto<std::int32_t>(numericValue(text));
}

double textToDouble(std::string_view text)
{
    return numericValue(text);
}

Bool16 textToBool(std::string_view text)
{
    return toBool16(numericValue(text) != 0.0);
}

double textVal(std::string_view text)
{
    std::size_t i = 0;
    while (i < text.size() && isBlank(text[i]))
        ++i;
    std::size_t end = i;
    if (end < text.size() && (text[end] == '+' || text[end] == '-'))
        ++end;
    while (end < text.size() && ((text[end] >= '0' && text[end] <= '9') || text[end] == '.'))
        ++end;
    double value = 0.0;
    const auto begin = text.data() + i + (i < text.size() && text[i] == '+' ? 1 : 0);
    if (std::from_chars(begin, text.data() + end, value).ec != std::errc())
        return 0.0;
    return value;
}

std::int16_t toInt16(std::int64_t value)
{
    if (value < std::numeric_limits<std::int16_t>::min() || value > std::numeric_limits<std::int16_t>::max())
        raise(err::Overflow);
    return static_cast<std::int16_t>(value);
}

std::int32_t toInt32(std::int64_t value)
{
    if (value < std::numeric_limits<std::int32_t>::min() || value > std::numeric_limits<std::int32_t>::max())
        raise(err::Overflow);
    return static_cast<std::int32_t>(value);
}

std::int16_t roundToInt16(double value)
{
    return roundedInto<std::int16_t>(value);
}

std::int32_t roundToInt32(double value)
{
    return roundedInto<std::int32_t>(value);
}

std::int16_t valToInt16(std::string_view text)
{
    return roundToInt16(textVal(text));
}

std::string numberText(std::int64_t value)
{
    return std::to_string(value);
}

std::string boolText(Bool16 value)
{
    return value != 0 ? "True" : "False";
}

} // namespace corvane
