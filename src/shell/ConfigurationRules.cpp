#include "shell/ConfigurationRules.h"

#include "runtime/Convert.h"

namespace corvane {

FieldChange portFieldChanged(std::string_view text, const std::vector<std::string>& otherPortTexts)
{
    FieldChange change{std::string(text)};
    if (text.empty()) {
        change.text = "1";
        change.selectAll = true;
    } else {
        // Only digits reach the field; a run longer than any port is above 65535 all the same.
        const double value = text.size() > 9 ? 1e10 : textToDouble(text);
        if (value > 65535)
            change.text = "65535";
        else if (value < 1)
            change.text = "1";
    }
    for (const std::string& other : otherPortTexts)
        if (other == change.text)
            change.duplicate = true;
    return change;
}

FieldChange idleFieldChanged(std::string_view text)
{
    FieldChange change{std::string(text)};
    if (text.empty()) {
        change.text = "1";
        change.selectAll = true;
    } else if (text.size() > 2 || textToDouble(text) > 60) {
        change.text = "60";
    }
    return change;
}

} // namespace corvane
