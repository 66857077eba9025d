#pragma once

#include "commparms/ParmsLink.h"

#include <cstdint>
#include <string>
#include <vector>

namespace corvane {

// What is said of a port that was not fetched whole or whose last update is uncertain. Ports as
// the grid numbers them, 1-128.
std::string missingSectionsText(const std::vector<std::int16_t>& missing); // "sections 4, 5 and 6"
std::string notFetchedWhole(int port, const FetchState& state); // an update refused
std::string updateUncertain(int port);
// The editor's note in place of a port it does not show.
std::string fetchStateText(const FetchState& state);

} // namespace corvane
