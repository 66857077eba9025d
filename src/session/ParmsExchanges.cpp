// The session's exchanges of port parameters with the host: the fetch of a port's six sections,
// the update that sends them back, and what each came to.
#include "session/HostSession.h"

#include "commparms/ExchangeTexts.h"
#include "commparms/ParmsRules.h"
#include "protocol/PacketErrorLog.h"
#include "protocol/PortParmsPacket.h"
#include "protocol/Requests.h"
#include "runtime/ErrorLog.h"
#include "runtime/RunTimeError.h"
#include "session/HostConfiguration.h"
#include "shell/SessionMessages.h"

namespace corvane {

HostSession::Reply HostSession::awaitReply(
    const std::string& request, Bool16& arrived, const std::function<bool()>& offScript)
{
    send(request);
    PacketWaitExpired = FalseValue;
    tmrPacketWait->stop();
    tmrPacketWait->start();
    arrived = FalseValue;
    if (!waitUntil([&] { return arrived || PacketWaitExpired || (offScript && offScript()); }))
        return Reply::CalledOff;
    return arrived ? Reply::Arrived : Reply::Expired;
}

// Only the section asked for, of the port asked for, is taken in and ends the wait: a status
// reply or a stray section in between is no answer, and a section nobody awaits changes no
// record.
void HostSession::takeParmsSection(const std::string& packet)
{
    const std::int16_t section = valToInt16(Get_Packet_Field(packet, "SECTION=", faults_));
    const std::int16_t port = valToInt16(Get_Packet_Field(packet, "Port=", faults_));
    if (awaitedSection_ == 0 || section != awaitedSection_ || port != awaitedPort_) {
        Log_Packet_Error(logs_, "Port parameter section not asked for; not taken in.");
        return;
    }
    Extract_Port_Parms_Packet(packet, parms_, faults_);
    awaitedSection_ = 0;
    SectionReceived = TrueValue;
}

// An acknowledgement names no section: it answers the section awaited, if any; otherwise it is
// passed over. During an update every one is counted.
void HostSession::takeAck()
{
    if (updating_)
        ++updateAcks_;
    if (ackAwaited_) {
        ackAwaited_ = false;
        UpdateAckReceived = TrueValue;
        return;
    }
    Log_Packet_Error(logs_, "Acknowledgement with no section awaited; passed over.");
}

bool HostSession::FetchCommParms(std::int16_t port)
{
    const PortRecords before = parms_.records(port);
    PortFetch& fetch = fetches_[port];
    fetch = PortFetch{};
    Reply reply = Reply::Arrived;
    for (std::int16_t section = FirstParmsSection; section <= LastParmsSection; ++section) {
        if (!connected())
            continue;
        awaitedSection_ = section;
        awaitedPort_ = port;
        reply = awaitReply(Build_Port_Parms_Request(section, port), SectionReceived);
        awaitedSection_ = 0;
        if (reply != Reply::Arrived)
            break;
        fetch.arrived.set(static_cast<std::size_t>(section));
    }
    if (reply == Reply::Expired)
        ui_.showMessage(std::string(message::FetchCommParmsTimeout));
    if (fetch.arrived.count() != LastParmsSection) {
        // Nothing of a fetch cut short is kept: the sections it did get may not belong with the
        // ones the records held.
        parms_.setRecords(port, before);
        return false;
    }
    fetch.complete = true;
    fetch.host = parms_.records(port);
    PortRecords shown = fetch.host;
    applyShowRules(shown.comm);
    fetch.corrections = changedFields(fetch.host.comm, fetch.host.collection, shown.comm, shown.collection);
    for (ChangedField& correction : fetch.corrections)
        correction.by = "rule";
    parms_.setRecords(port, shown);
    return true;
}

FetchState HostSession::fetchState(std::int16_t port) const
{
    FetchState state;
    const auto found = fetches_.find(port);
    if (found != fetches_.end()) {
        state.complete = found->second.complete;
        state.uncertain = found->second.uncertain;
    }
    if (!state.complete)
        for (std::int16_t section = FirstParmsSection; section <= LastParmsSection; ++section)
            if (found == fetches_.end() || !found->second.arrived.test(static_cast<std::size_t>(section)))
                state.missing.push_back(section);
    return state;
}

std::vector<ChangedField> HostSession::showCorrections(std::int16_t port) const
{
    const auto found = fetches_.find(port);
    return found != fetches_.end() && found->second.complete ? found->second.corrections : std::vector<ChangedField>{};
}

const PortRecords* HostSession::received(std::int16_t port) const
{
    const auto found = fetches_.find(port);
    return found != fetches_.end() && found->second.complete ? &found->second.host : nullptr;
}

bool HostSession::FetchMachineTypes(std::int16_t displayRow)
{
    if (!connected())
        return true;
    const Reply reply = awaitReply(Build_Machine_Type_Request(displayRow), ParmsPacketReceived);
    if (reply == Reply::Expired)
        ui_.showMessage(std::string(message::FetchMachineTypeTimeout));
    return reply == Reply::Arrived;
}

bool HostSession::settleAcks()
{
    AckSettled = FalseValue;
    tmrAckSettle->stop();
    tmrAckSettle->start();
    const bool settled = waitUntil([this] { return AckSettled || ackSurplus(); });
    tmrAckSettle->stop();
    return settled;
}

// Each section is built as it goes out, so a change made while an earlier one was awaited goes
// out with its own section when that is still to come. Every update is written down, whatever
// becomes of it.
bool HostSession::UpdateCommParms(std::int16_t port)
{
    const auto found = fetches_.find(port);
    if (found == fetches_.end() || !found->second.complete) {
        ui_.showMessage(notFetchedWhole(port + 1, fetchState(port)));
        return false;
    }
    // A host that has gone is said in the words every command uses for it, before anything is
    // built; the edit stays as it is, to be sent once connected again.
    if (!connected()) {
        ui_.showMessage(message::noSocketConnection());
        return false;
    }
    PortFetch& fetch = found->second;
    std::vector<ChangedField> changes
        = changedFields(fetch.host.comm, fetch.host.collection, parms_.commParms(port), parms_.dataCollection(port));
    markCorrections(changes, fetch.corrections);
    ChangeRecordEntry entry = changeEntry(updateKind_, port + 1);
    entry.fields = recordedFields(changes);

    updating_ = true;
    updateAcks_ = 0;
    updateSectionsSent_ = 0;
    struct Done {
        HostSession& s;
        ~Done()
        {
            s.updating_ = false;
            s.ackAwaited_ = false;
        }
    } done{*this};
    Reply reply = Reply::Arrived;
    int stopped = 0;
    for (std::int16_t section = FirstParmsSection; section <= LastParmsSection; ++section) {
        if (!connected())
            continue;
        ++updateSectionsSent_;
        ackAwaited_ = true;
        reply = awaitReply(
            Build_Port_Parms_Packet(section, port, parms_) + EOT, UpdateAckReceived, [this] { return ackSurplus(); });
        ackAwaited_ = false;
        if (reply != Reply::Arrived || ackSurplus()) {
            stopped = section;
            break;
        }
    }
    if (stopped == 0 && updateSectionsSent_ == LastParmsSection && !settleAcks())
        reply = Reply::CalledOff;
    entry.sectionsSent = updateSectionsSent_;

    if (ackSurplus()) {
        // The host answered sections it was never sent: whatever it holds now is not known.
        entry.outcome = change_outcome::Uncertain;
        if (stopped != 0)
            entry.section = stopped;
        record(entry);
        fetch.complete = false;
        fetch.uncertain = true;
        ui_.showMessage(updateUncertain(port + 1));
        return false;
    }
    if (reply == Reply::Expired)
        ui_.showMessage(std::string(message::UpdateNoAck));
    if (stopped != 0 || reply == Reply::CalledOff || updateSectionsSent_ < LastParmsSection) {
        // Where it stopped: the section not acknowledged, the one awaited when the wait was
        // called off, or the first one the loop passed over once the connection had gone.
        entry.section = stopped > 0 ? stopped : updateSectionsSent_ + 1;
        // A wait called off is the program ending, whatever became of the socket on the way out.
        entry.outcome = reply == Reply::CalledOff ? change_outcome::Interrupted
            : connected()                         ? change_outcome::NoAck
                                                  : change_outcome::ConnectionLost;
        record(entry);
        if (stopped != 0 || reply == Reply::CalledOff)
            return false;
    }
    try {
        send(Build_Update_Complete_Packet()); // untested: a closed socket raises here
    } catch (...) {
        if (entry.outcome.empty()) {
            entry.outcome = change_outcome::ConnectionLost; // six acknowledged, the trailer never went
            record(entry);
        }
        throw;
    }
    entry.outcome = change_outcome::Sent;
    record(entry);
    fetch.host = parms_.records(port); // what the host now holds
    fetch.corrections.clear();
    return true;
}

ChangeRecordEntry HostSession::changeEntry(std::string_view kind, int port) const
{
    const auto host = static_cast<std::size_t>(HostIndex);
    return {kind, actor_, config_.HostIPs[host], config_.SocketPorts[host], port, {}, {}, {}, 0};
}

// A change that could not be written down still went out; the failure is said where the
// program's other faults are.
void HostSession::record(const ChangeRecordEntry& entry)
{
    recordChange(logs_, entry);
}

void HostSession::RefreshPortStates()
{
    IdleMinuteCount = 0;
    if (connected())
        awaitReply(Build_Status_Request(), ParmsPacketReceived);
}

} // namespace corvane
