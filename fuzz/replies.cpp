// A completed packet through the status and the machine-type extraction, as the dispatch hands
// it over (from PKT_TYPE= through EOT). A fault may be raised, as the dispatch's trap expects;
// nothing may crash, and a refused list leaves the table as it was.
#include "protocol/Replies.h"
#include "Input.h"
#include "runtime/RunTimeError.h"

#include <cstdlib>

using namespace corvane;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::scratchFolder();
    const std::string packet(fuzz::text(data, size));

    std::vector<PortStatusRecord> status(128);
    try {
        Extract_Status_Packet(packet, status, fuzz::packetFaults());
    } catch (const RunTimeError&) {
    }
    if (status.size() != 128)
        std::abort();

    std::vector<MachineTypeRecord> types(3);
    std::int16_t count = 3;
    try {
        Extract_Machine_Types(packet, types, count, fuzz::packetFaults());
    } catch (const RunTimeError& e) {
        // Refused before anything was allocated, or failed part way with the count set.
        if (e.number() == err::Overflow && types.size() == 3 && count == 3)
            return 0;
    }
    if (types.size() != static_cast<std::size_t>(count))
        std::abort();
    return 0;
}
