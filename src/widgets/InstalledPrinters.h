#pragma once

#include <string>
#include <vector>

namespace corvane {

// The installed printers, in the system's order (empty when there are none): each one's
// device name and its port (where the system says where it is; empty where it does not).
struct InstalledPrinter {
    std::string name;
    std::string port;
};
std::vector<InstalledPrinter> installedPrinters();
std::vector<std::string> installedPrinterNames();

} // namespace corvane
