// What arrives from the host: chunks joined into packets, each packet handed to what awaits it.
#include "session/HostSession.h"

#include "protocol/Framing.h"
#include "protocol/PacketErrorLog.h"
#include "protocol/Requests.h"
#include "runtime/ErrorLog.h"
#include "session/ResumeNext.h"
#include "shell/GridRules.h"
#include "shell/SessionMessages.h"
#include "shell/VersionRules.h"

namespace corvane {

void HostSession::Accumulate_Socket_Data(const std::string& chunk)
{
    receiver_.accumulate(chunk);
}

void HostSession::Process_Received_Socket_Packet(const std::string& chunk)
{
    runTrapped(logs_, location::PacketDispatch, [&] { dispatch(chunk); });
    wake();
    // A version reply moves the connect on, outside the dispatch's trap.
    resumeNext([this] { versionArrived(); });
}

void HostSession::dispatch(const std::string& chunk)
{
    Accumulate_Socket_Data(chunk);
    if (!receiver_.packetComplete())
        return;
    const std::string packet = receiver_.completedPacket();
    ParmsPacketReceived = TrueValue;

    const std::int16_t type = Get_Packet_Type(packet, faults_, [this] { noPacketString(); });
    if (type == packet_type::Ack) {
        takeAck();
        return;
    }
    // Read from every packet but an acknowledgement, though nothing routes by it; a packet
    // without it still goes on, a value beyond 16 bits drops the packet into the trap.
    [[maybe_unused]] const std::int16_t section = valToInt16(Get_Packet_Field(packet, "SECTION=", faults_));

    switch (type) {
    case packet_type::NoPacket:
        break;
    case packet_type::PortParms:
        takeParmsSection(packet);
        break;
    case packet_type::PortStatusReply:
        try {
            Extract_Status_Packet(packet, PortStatus, faults_);
        } catch (...) {
            // The rows stored before the fault are shown; the fault itself goes to the trap.
            ui_.portTableChanged();
            throw;
        }
        ui_.portTableChanged();
        break;
    case packet_type::MachineTypesReply:
        Extract_Machine_Types(packet, MachineTypes, MachineTypeCount, faults_);
        break;
    case packet_type::VersionReply:
        VersionReceived = TrueValue;
        HostVersion = Get_Host_Version(packet, faults_);
        MinimumRemoteVersion = Get_Minimum_Remote_Version(packet, faults_);
        break;
    default:
        if (std::ranges::find(packet_type::AcceptedWithoutAction, type) == std::end(packet_type::AcceptedWithoutAction))
            Log_Packet_Error(logs_, "Unknown packet.");
        break;
    }
}

// One "No Packet String" box at a time: while it is up, arrivals go on being taken in, and a
// further text that is no packet is logged without a box of its own on top, so that a host
// sending nothing but such text cannot pile boxes up without end.
void HostSession::noPacketString()
{
    if (noPacketNoticeUp_)
        return;
    noPacketNoticeUp_ = true;
    struct Down {
        bool& up;
        ~Down() { up = false; }
    } down{noPacketNoticeUp_};
    ui_.showMessage(std::string(message::NoPacketString));
}

void HostSession::clearPortStatus()
{
    PortStatus.assign(GridRows, PortStatusRecord{});
}

std::string HostSession::statusOfRow(int row) const
{
    if (row < 0 || static_cast<std::size_t>(row) >= PortStatus.size())
        return {};
    return PortStatus[static_cast<std::size_t>(row)].Status;
}

} // namespace corvane
