#include "hostsim/Answers.h"

#include "hostsim/HostPackets.h"
#include "protocol/PacketTypes.h"
#include "runtime/Convert.h"
#include "runtime/RunTimeError.h"

namespace corvane::hostsim {
namespace {

std::int16_t fieldAsInt16(std::string_view packet, std::string_view key)
{
    try {
        if (const auto value = requestField(packet, key))
            return textToInt16(*value);
    } catch (const RunTimeError&) {
    }
    return -1;
}

} // namespace

Answer answerRequest(Plant& plant, std::string_view packet, const Faults& faults, Conversation& conversation)
{
    Answer answer;
    const auto type = requestType(packet);
    if (!type)
        return answer;
    switch (*type) {
    case packet_type::VersionRequest:
        answer.reply = versionReply(faults.version, faults.minimumRemoteVersion);
        answer.versionAnswered = true;
        break;
    case packet_type::StatusRequest:
        if (faults.bigPacketSize > 0 && !conversation.bigPacketSent) {
            conversation.bigPacketSent = true;
            answer.reply = paddedPacket(faults.bigPacketSize);
            break;
        }
        plant.advance();
        answer.reply = statusReply(plant.status);
        break;
    case packet_type::MachineTypeRequest:
        answer.reply = machineTypesReply(plant.machineTypes);
        break;
    case packet_type::PortParmsRequest:
        answer.reply = portParmsReply(fieldAsInt16(packet, "SECTION="), fieldAsInt16(packet, "Port="), plant.parms);
        break;
    case packet_type::PortParms: {
        // An update section: stored at once and acknowledged (unless told otherwise); a section
        // that cannot be stored gets no acknowledgement.
        const std::int16_t section = fieldAsInt16(packet, "SECTION=");
        std::string refused;
        if (!plant.storeUpdate(packet, refused)) {
            answer.refused = "section " + std::to_string(section) + " not stored: " + refused;
            break;
        }
        if (section <= faults.ackSectionsUpTo)
            answer.reply = ackPacket();
        break;
    }
    case packet_type::UpdateComplete:
        answer.updateCompleted = true;
        break;
    case packet_type::PurgeReset:
        plant.purge(fieldAsInt16(packet, "DisplayRow="));
        break;
    default:
        break;
    }
    return answer;
}

} // namespace corvane::hostsim
