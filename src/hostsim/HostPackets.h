#pragma once

#include "commparms/PortParms.h"
#include "protocol/Replies.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane::hostsim {

// The host's side of the wire, built with the terminal's own codec. Every packet the host sends
// starts with SOH and ends with EOT; list replies split their records with ETX.

std::string versionReply(std::string_view hostVersion, std::string_view minimumRemoteVersion); // 170
std::string statusReply(const std::vector<PortStatusRecord>& rows); // 120
std::string machineTypesReply(const std::vector<MachineTypeRecord>& types); // 150
// 100 for one section of one port; a port the host does not have gets no reply (nullopt).
std::optional<std::string> portParmsReply(std::int16_t section, std::int16_t port, PortParmsTables& tables);
std::string ackPacket();
std::string noPacketText();
// A well-framed status packet of one record whose machine name pads it to exactly `size`
// characters, SOH and EOT included: past 32,767 the name's end lies where no 16-bit position
// reaches.
std::string paddedPacket(std::size_t size);

// Reading what the terminal sent. Unlike the terminal's own reading, a missing field is simply
// absent here: the host has no business writing into the terminal's packet log.
std::optional<std::int16_t> requestType(std::string_view packet);
std::optional<std::string> requestField(std::string_view packet, std::string_view key);

// Cuts the terminal's byte stream into packets (SOH through EOT), however TCP delivered it.
// A packet that grows past MaxRequest without its EOT is dropped, and so is what follows it up
// to the next SOH; `dropped` counts them.
class RequestSplitter {
public:
    static constexpr std::size_t MaxRequest = 64 * 1024; // the largest request is under 1 KiB
    std::vector<std::string> feed(std::string_view bytes);
    int dropped = 0;

private:
    std::string pending_;
};

// Control characters spelt out, for the host's log: <SOH>PKT_TYPE=220<STX>..., a NUL as <NUL>.
std::string visible(std::string_view packet);

} // namespace corvane::hostsim
