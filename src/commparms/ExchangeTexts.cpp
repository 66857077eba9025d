#include "commparms/ExchangeTexts.h"

namespace corvane {

std::string missingSectionsText(const std::vector<std::int16_t>& missing)
{
    std::string text = missing.size() == 1 ? "section " : "sections ";
    for (std::size_t i = 0; i < missing.size(); ++i) {
        if (i > 0)
            text += i + 1 == missing.size() ? " and " : ", ";
        text += std::to_string(missing[i]);
    }
    return text;
}

std::string notFetchedWhole(int port, const FetchState& state)
{
    if (state.uncertain)
        return "Nothing was sent: the last update of port " + std::to_string(port)
            + " is uncertain. Fetch the port again to see what the host holds.";
    return "Nothing was sent: port " + std::to_string(port) + " was not fetched whole ("
        + missingSectionsText(state.missing) + " did not arrive). Fetch the port again first.";
}

std::string updateUncertain(int port)
{
    return "The host acknowledged more sections of port " + std::to_string(port)
        + " than were sent to it, so whether it holds the new parameters is uncertain; nothing more was sent. "
          "Fetch the port again to see what the host holds.";
}

std::string fetchStateText(const FetchState& state)
{
    if (state.uncertain)
        return "The last update of this port is uncertain: the host acknowledged more sections than were sent "
               "to it. Its parameters are not shown and cannot be sent until they are fetched again.";
    return "Not all of this port's parameters arrived (" + missingSectionsText(state.missing)
        + " missing), so none of them are shown and they cannot be sent. Fetch Again asks the host once more.";
}

} // namespace corvane
