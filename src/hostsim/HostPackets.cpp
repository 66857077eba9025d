#include "hostsim/HostPackets.h"

#include "protocol/Framing.h"
#include "protocol/PortParmsPacket.h"
#include "protocol/Requests.h"
#include "runtime/Convert.h"
#include "runtime/RunTimeError.h"

namespace corvane::hostsim {
namespace {

std::string finished(std::string packet)
{
    endRequest(packet); // ETX EOT, as the host ends its packets too
    return packet;
}

} // namespace

std::string versionReply(std::string_view hostVersion, std::string_view minimumRemoteVersion)
{
    const auto dot = hostVersion.find('.');
    std::string packet = packetHeader(packet_type::VersionReply, 0);
    appendField(packet, "VersionMajor=", hostVersion.substr(0, dot));
    appendField(
        packet, "VersionMinor=", dot == std::string_view::npos ? std::string_view("0") : hostVersion.substr(dot + 1));
    appendField(packet, "MinimumRemoteVersion=", minimumRemoteVersion);
    return finished(std::move(packet));
}

std::string statusReply(const std::vector<PortStatusRecord>& rows)
{
    std::string packet = packetHeader(packet_type::PortStatusReply, 0);
    for (const PortStatusRecord& row : rows) {
        appendField(packet, "WorkstationName=", row.WorkstationName);
        appendField(packet, "FileName=", row.FileName);
        appendField(packet, "Status=", row.Status);
        appendField(packet, "ByteCount=", row.ByteCount);
        appendField(packet, "DNC_ID=", row.DNC_ID);
        packet += ETX;
    }
    packet += EOT;
    return packet;
}

std::string machineTypesReply(const std::vector<MachineTypeRecord>& types)
{
    std::string packet = packetHeader(packet_type::MachineTypesReply, 0);
    for (const MachineTypeRecord& type : types) {
        appendField(packet, "unique_id=", numberText(type.unique_id));
        appendField(packet, "machine_type=", type.machine_type);
        appendField(packet, "DefaultDir=", type.DefaultDir);
        appendField(packet, "TarnMachineCode=", std::string_view(&type.TarnMachineCode, 1));
        packet += ETX;
    }
    packet += EOT;
    return packet;
}

std::optional<std::string> portParmsReply(std::int16_t section, std::int16_t port, PortParmsTables& tables)
{
    try {
        return finished(Build_Port_Parms_Packet(section, port, tables, PacketSide::Host));
    } catch (const RunTimeError&) {
        return std::nullopt;
    }
}

std::string ackPacket()
{
    return std::string{SOH} + "ACK" + EOT;
}

std::string noPacketText()
{
    return std::string{SOH} + "CORVANE HOST READY" + EOT;
}

std::string paddedPacket(std::size_t size)
{
    std::string packet = packetHeader(packet_type::PortStatusReply, 0) + "WorkstationName=";
    const std::size_t tail = 3; // STX ETX EOT
    if (packet.size() + tail < size)
        packet.append(size - packet.size() - tail, 'x');
    return finished(packet + STX);
}

std::optional<std::int16_t> requestType(std::string_view packet)
{
    const auto value = requestField(packet, "PKT_TYPE=");
    if (!packet.starts_with("PKT_TYPE=") || !value)
        return std::nullopt;
    try {
        return textToInt16(*value);
    } catch (const RunTimeError&) {
        return std::nullopt;
    }
}

std::optional<std::string> requestField(std::string_view packet, std::string_view key)
{
    const auto at = packet.find(key);
    if (at == std::string_view::npos)
        return std::nullopt;
    const auto from = at + key.size();
    const auto end = packet.find(STX, from);
    if (end == std::string_view::npos)
        return std::nullopt;
    return std::string(packet.substr(from, end - from));
}

std::vector<std::string> RequestSplitter::feed(std::string_view bytes)
{
    pending_.append(bytes);
    std::vector<std::string> packets;
    for (;;) {
        const auto start = pending_.find(SOH);
        if (start == std::string::npos) {
            pending_.clear(); // nothing before a packet is worth keeping
            break;
        }
        const auto end = pending_.find(EOT, start);
        if (end == std::string::npos) {
            pending_.erase(0, start);
            if (pending_.size() > MaxRequest) {
                pending_.clear(); // its tail has no SOH, so it goes as well when it comes
                ++dropped;
            }
            break;
        }
        packets.push_back(pending_.substr(start + 1, end - start));
        pending_.erase(0, end + 1);
    }
    return packets;
}

std::string visible(std::string_view packet)
{
    std::string out;
    for (char c : packet) {
        switch (c) {
        case '\0':
            out += "<NUL>";
            break;
        case SOH:
            out += "<SOH>";
            break;
        case STX:
            out += "<STX>";
            break;
        case ETX:
            out += "<ETX>";
            break;
        case EOT:
            out += "<EOT>";
            break;
        default:
            out += c;
        }
    }
    return out;
}

} // namespace corvane::hostsim
