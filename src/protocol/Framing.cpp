#include "protocol/Framing.h"

#include "runtime/Convert.h"
#include "runtime/Text.h"

namespace corvane {

void PacketReceiver::accumulate(std::string_view chunk)
{
    complete_ = false;
    const bool startsPacket = !chunk.empty() && chunk.front() == SOH;
    if (discarding_ && !startsPacket)
        return;
    discarding_ = false;
    if (startsPacket)
        buffer_.assign(chunk.substr(1));
    else
        buffer_.append(chunk);

    if (buffer_.size() > MaxGathered) {
        tell(faults_,
            "Receive buffer over " + std::to_string(MaxGathered) + " characters without EOT; gathered text dropped.");
        std::string().swap(buffer_); // its memory too
        discarding_ = !(!chunk.empty() && chunk.back() == EOT);
        return;
    }
    if (!chunk.empty() && chunk.back() == EOT) {
        completed_.swap(buffer_);
        buffer_.clear();
        complete_ = true;
    }
}

void PacketReceiver::reset()
{
    discarding_ = false;
    buffer_.clear();
    completed_.clear();
    complete_ = false;
}

std::int16_t Get_Packet_Type(
    std::string_view packet, const PacketFaults& faults, const std::function<void()>& noPacketString)
{
    if (left(packet, 3) == "ACK") {
        tell(faults, packet);
        return packet_type::Ack;
    }
    if (left(packet, 9) != "PKT_TYPE=") {
        if (noPacketString)
            noPacketString();
        tell(faults, packet);
        return packet_type::NoPacket;
    }
    const std::int16_t end = toInt16(inStr(10, packet, std::string_view(&STX, 1)));
    return textToInt16(mid(packet, 10, end - 10));
}

std::string Get_Packet_Field(std::string_view packet, std::string_view key, const PacketFaults& faults)
{
    const std::int16_t start = toInt16(inStr(1, packet, key));
    if (start == 0)
        tell(faults, "Error finding start in packet.");
    const std::int16_t valueStart = toInt16(start + static_cast<std::int64_t>(key.size()));
    const std::int16_t end = toInt16(inStr(valueStart, packet, std::string_view(&STX, 1)));
    if (end < valueStart)
        tell(faults, "Error finding  delimeter in packet.");
    return std::string(mid(packet, valueStart, end - valueStart));
}

std::string packetHeader(std::int16_t type, std::int16_t section)
{
    std::string packet(1, SOH);
    appendField(packet, "PKT_TYPE=", numberText(type));
    appendField(packet, "SECTION=", numberText(section));
    return packet;
}

void appendField(std::string& packet, std::string_view key, std::string_view value)
{
    packet.append(key);
    packet.append(value);
    packet += STX;
}

void endRequest(std::string& packet)
{
    packet += ETX;
    packet += EOT;
}

} // namespace corvane
