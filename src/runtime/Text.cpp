#include "runtime/Text.h"

#include "runtime/RunTimeError.h"

#include <algorithm>

namespace corvane {

std::int64_t inStr(std::int64_t start, std::string_view text, std::string_view find)
{
    if (start < 1)
        raise(err::InvalidProcedureCall);
    const auto from = static_cast<std::uint64_t>(start - 1);
    if (from >= text.size())
        return 0;
    if (find.empty())
        return start;
    const auto at = text.find(find, from);
    return at == std::string_view::npos ? 0 : static_cast<std::int64_t>(at) + 1;
}

std::string_view mid(std::string_view text, std::int64_t start, std::int64_t length)
{
    if (start < 1 || length < 0)
        raise(err::InvalidProcedureCall);
    const auto from = static_cast<std::uint64_t>(start - 1);
    if (from >= text.size())
        return {};
    return text.substr(from,
        static_cast<std::size_t>(std::min<std::uint64_t>(static_cast<std::uint64_t>(length), text.size() - from)));
}

std::string_view left(std::string_view text, std::int64_t length)
{
    if (length < 0)
        raise(err::InvalidProcedureCall);
    return text.substr(
        0, static_cast<std::size_t>(std::min<std::uint64_t>(static_cast<std::uint64_t>(length), text.size())));
}

std::string_view right(std::string_view text, std::int64_t length)
{
    if (length < 0)
        raise(err::InvalidProcedureCall);
    const auto n = static_cast<std::size_t>(std::min<std::uint64_t>(static_cast<std::uint64_t>(length), text.size()));
    return text.substr(text.size() - n);
}

std::string upperCase(std::string_view text)
{
    std::string out(text);
    for (char& c : out) {
        const auto b = static_cast<unsigned char>(c);
        if ((b >= 'a' && b <= 'z') || (b >= 0xE0 && b <= 0xFE && b != 0xF7))
            c = static_cast<char>(b - 0x20);
    }
    return out;
}

std::string_view trimBlanks(std::string_view text)
{
    const auto first = text.find_first_not_of(' ');
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::string fixedWidth(std::string_view text, std::size_t width)
{
    std::string out(text.substr(0, width));
    out.resize(width, ' ');
    return out;
}

std::string joinLines(std::initializer_list<std::string_view> lines)
{
    std::string text;
    bool first = true;
    for (std::string_view line : lines) {
        if (!first)
            text += "\r\n";
        text += line;
        first = false;
    }
    return text;
}

std::string escapedControls(std::string_view text)
{
    static constexpr char Hex[] = "0123456789abcdef";
    std::string out;
    out.reserve(text.size());
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x20 || (byte >= 0x7f && byte < 0xa0)) {
            out += "\\x";
            out += Hex[byte >> 4];
            out += Hex[byte & 15];
        } else {
            out += c;
        }
    }
    return out;
}

} // namespace corvane
