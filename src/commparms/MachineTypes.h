#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace corvane {

// One of the host's machine types, as its type 150 reply lists them. A port's
// Machine_Unique_Id names one of them.
struct MachineTypeRecord {
    std::int32_t unique_id = 0;
    std::string machine_type;
    std::string DefaultDir; // where the host receives the programs of this type
    char TarnMachineCode = ' '; // one character, blank when the host sent none

    bool operator==(const MachineTypeRecord&) const = default;
};

// The host's normal receive folder for a port's programs, as a text ending in "\": the
// DefaultDir of the port's machine type; empty when the list has no such type.
std::string normalReceiveFolder(const std::vector<MachineTypeRecord>& types, std::int16_t machineUniqueId);

} // namespace corvane
