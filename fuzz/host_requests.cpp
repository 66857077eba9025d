// The simulated host's side: bytes from a terminal, in chunks, cut into requests and answered
// from the demo plant as the host answers them. Nothing may crash, the plant keeps its 128 ports,
// and every answer is a whole packet.
#include "Input.h"
#include "hostsim/Answers.h"
#include "hostsim/HostPackets.h"
#include "protocol/PacketTypes.h"

#include <cstdlib>

using namespace corvane;
using namespace corvane::hostsim;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    // Every input meets the demo plant as it starts; it is copied afresh only after an input
    // that may have changed it.
    static const Plant demo = Plant::demo();
    static Plant plant = demo;
    static bool touched = false;
    if (touched)
        plant = demo;
    touched = false;
    Faults faults;
    Conversation conversation;
    RequestSplitter splitter;
    for (const std::string_view chunk : fuzz::chunks(fuzz::text(data, size))) {
        for (const std::string& request : splitter.feed(chunk)) {
            const auto type = requestType(request);
            touched = touched || type == packet_type::StatusRequest || type == packet_type::PortParms
                || type == packet_type::PurgeReset;
            const Answer answer = answerRequest(plant, request, faults, conversation);
            if (answer.reply
                && (answer.reply->empty() || answer.reply->front() != '\x01' || answer.reply->back() != '\x04'))
                std::abort();
        }
    }
    if (plant.status.size() != 128 || plant.parms.PortCommParmsTable.size() != 128)
        std::abort();
    return 0;
}
