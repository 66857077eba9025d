#pragma once

#include "protocol/PacketTypes.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace corvane {

// Control characters that frame every packet.
inline constexpr char SOH = '\x01'; // first character of a packet
inline constexpr char STX = '\x02'; // ends every field
inline constexpr char ETX = '\x03'; // follows the last field of a request
inline constexpr char EOT = '\x04'; // last character of a packet

// Where the codec tells of text it cannot read as a packet should be: the packet log (the
// programs'), a count (the fuzz targets'), a list (the tests'); none passes them over.
using PacketFaults = std::function<void(std::string_view message)>;
inline void tell(const PacketFaults& faults, std::string_view message)
{
    if (faults)
        faults(message);
}

// Gathers the socket's chunks into whole packets. Only the first and the last character of a
// chunk are looked at: a chunk that starts with SOH starts a new packet (dropping whatever was
// half gathered), a chunk that ends with EOT completes one. The host sends each packet so that
// it starts and ends a chunk; two packets joined in one chunk come out as one packet text.
class PacketReceiver {
public:
    // Gathered text beyond this is dropped (and logged once) so that a host that never sends
    // EOT cannot make the terminal grow without bound; the chunks after it are passed over until
    // one starts a packet, so the dropped packet's tail never comes out as a packet of its own.
    // The largest real packet, a 128-port status reply with long names, stays far below it.
    static constexpr std::size_t MaxGathered = 1u << 20;

    explicit PacketReceiver(PacketFaults faults)
        : faults_(std::move(faults))
    {
    }
    void accumulate(std::string_view chunk);
    bool packetComplete() const { return complete_; }
    // The last whole packet, from the character after SOH through its EOT.
    const std::string& completedPacket() const { return completed_; }
    void reset();

private:
    PacketFaults faults_;
    std::string buffer_;
    std::string completed_;
    bool complete_ = false;
    bool discarding_ = false; // the rest of a dropped packet is still coming
};

// The packet's type: the host's number, 999 for an acknowledgement ("ACK..."), -1 for text that
// is no packet. Every acknowledgement and every untyped text is written to the packet log; for
// an untyped text `noPacketString` is called first (the session shows "No Packet String"). A
// type that is not a 16-bit number, or a missing STX after it, raises a run-time error to the
// caller.
std::int16_t Get_Packet_Type(
    std::string_view packet, const PacketFaults& faults, const std::function<void()>& noPacketString = {});

// The value of the first field whose key (with its "=") occurs in the packet. A missing key is
// logged and the text from position length(key) up to the next STX is returned; a missing STX is
// logged and raises "Invalid procedure call"; positions past 32,767 raise "Overflow".
std::string Get_Packet_Field(std::string_view packet, std::string_view key, const PacketFaults& faults);

// Writing packets: SOH, "PKT_TYPE=" type STX, "SECTION=" section STX; then key, value, STX for
// each further field. A request then ends with ETX EOT.
std::string packetHeader(std::int16_t type, std::int16_t section);
void appendField(std::string& packet, std::string_view key, std::string_view value);
void endRequest(std::string& packet);

} // namespace corvane
