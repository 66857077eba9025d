#include "commparms/MachineTypes.h"

namespace corvane {

std::string normalReceiveFolder(const std::vector<MachineTypeRecord>& types, std::int16_t machineUniqueId)
{
    for (const MachineTypeRecord& type : types) {
        if (type.unique_id != machineUniqueId)
            continue;
        if (type.DefaultDir.empty())
            return {};
        return type.DefaultDir.back() == '\\' ? type.DefaultDir : type.DefaultDir + '\\';
    }
    return {};
}

} // namespace corvane
