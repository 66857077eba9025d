#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace corvane {

// The terminal knows hosts 1 to 5.
inline constexpr int HostCount = 5;

// The configuration form's typing rules.
struct FieldChange {
    std::string text;
    bool selectAll = false; // the field was emptied and now reads "1"
    bool duplicate = false; // another host has this port: the message, then the stored value
};
// A port field after a change, against the other four port fields (compared as text).
FieldChange portFieldChanged(std::string_view text, const std::vector<std::string>& otherPortTexts);
// The idle field after a change: empty reads "1", above 60 reads "60".
FieldChange idleFieldChanged(std::string_view text);

} // namespace corvane
