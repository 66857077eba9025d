#pragma once

#include <string>
#include <string_view>

namespace corvane::test {

// Packets in tests are written with their control characters spelt out, "<SOH>PKT_TYPE=220<STX>",
// which reads better than escapes and cannot swallow a following hex letter as "\x02D" would.
inline std::string wire(std::string_view text)
{
    static constexpr std::pair<std::string_view, char> names[]
        = {{"<SOH>", '\x01'}, {"<STX>", '\x02'}, {"<ETX>", '\x03'}, {"<EOT>", '\x04'}};
    std::string out;
    for (std::size_t i = 0; i < text.size();) {
        bool named = false;
        for (const auto& [name, code] : names)
            if (text.substr(i, name.size()) == name) {
                out += code;
                i += name.size();
                named = true;
                break;
            }
        if (!named)
            out += text[i++];
    }
    return out;
}

inline std::string operator""_w(const char* text, std::size_t size)
{
    return wire({text, size});
}

} // namespace corvane::test
