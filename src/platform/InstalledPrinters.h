#pragma once

#include <string>
#include <vector>

namespace corvane {

// The device names of the installed printers, in the system's order (empty when there are none).
std::vector<std::string> installedPrinterNames();

} // namespace corvane
