#pragma once

#include "commparms/FieldCatalogue.h"
#include "commparms/ParmsLink.h"
#include "commparms/PortParms.h"
#include "platform/ProgramTimer.h"
#include "protocol/Framing.h"
#include "protocol/Replies.h"
#include "runtime/Convert.h"
#include "runtime/Logs.h"
#include "session/ChangeRecord.h"
#include "session/SessionUi.h"

#include <QTcpSocket>

#include <bitset>

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

class QEventLoop;

namespace corvane {

class HostConfiguration;

// Winsock1's state numbers; anything but Connected counts as not connected.
enum SocketState : int {
    SocketClosed = 0,
    SocketOpen = 1,
    SocketListening = 2,
    SocketResolvingHost = 4,
    SocketConnecting = 6,
    SocketConnected = 7,
    SocketClosing = 8,
    SocketError = 9,
};

// Where the connect command stands: Idle until Command1 is pressed, Connecting until the socket
// connects or the connect wait runs out, AwaitingVersion until the version reply or its timeout,
// then Connected (which the disconnect, the idle log-off or a lost socket end).
enum class ConnectState { Idle, Connecting, AwaitingVersion, Connected };
// Why the last connect ended in Idle, for callers that act on it rather than read the message.
enum class ConnectFailure { None, Refused, TimedOut, VersionTimedOut, VersionRefused };

// The one connection to the selected host: connect with the version check, the dispatch of
// everything the host sends, the port table, the commands that talk to the host and the idle
// log-off. It never opens a window; it speaks through SessionUi. Each session has its own
// receive state and parameter tables, so a program (or a test) may hold several.
class HostSession : public QObject, public ParmsLink {
    Q_OBJECT

public:
    // How long after an update's sixth acknowledgement further ones are looked for before the
    // trailer goes out: a host that acknowledges twice shows itself within it.
    static constexpr int AckSettleMs = 100;

    HostSession(HostConfiguration& config, SessionUi& ui, TimerSource& timers, Logs& logs, QObject* parent = nullptr);
    ~HostSession() override;

    // The main window's commands.
    void cboHostName_Click(int host); // picks host 1-5
    void Command1_Click(const QString& txtIP); // starts the connect to HostIndex
    void cmdDisconnect_Click();
    void cmdRefresh_Click();
    void cmdPurgeAndReset_Click();
    // Up to the access check: whether the parameter editor may open for the selected row.
    bool cmdCommParms_Click(const std::function<bool()>& checkAccess);
    // The grid's current row changed.
    void rowChanged(int row);
    // Who makes the changes the record names: the program and the account running it, the
    // logged-in user, and a temporary user who authorised what is under way (empty: the logged-in
    // user's own rights did).
    void setOrigin(std::string via, std::string osUser)
    {
        actor_.via = std::move(via);
        actor_.osUser = std::move(osUser);
    }
    void setUserName(std::string name) { actor_.user = std::move(name); }
    void setAuthorisedBy(std::string name) { actor_.authorisedBy = std::move(name); }
    const ChangeActor& changeActor() const { return actor_; }
    // What the updates are written down as: "update", unless a command that sends them says
    // what they are ("copy", "revert").
    void setUpdateKind(std::string_view kind) { updateKind_ = kind; }

    // ParmsLink: what the parameter editor asks of the session.
    PortParmsTables& parmsTables() override { return parms_; }
    // Where its errors, packet faults and changes are written.
    Logs& logs() override { return logs_; }
    const std::vector<MachineTypeRecord>& machineTypes() const override { return MachineTypes; }
    SinglePortMode singlePortMode() const override;
    std::int16_t selectedPortIndex() const override { return SelectedPortIndex; }
    void resetIdleCount() override { IdleMinuteCount = 0; }
    // Whether the port's records hold changes made since its fetch that were not sent (the
    // rules' own corrections on showing it are none).
    bool hasUnsentEdit(std::int16_t port) const;
    // Before the idle log-off: each port's unsent changes written to a file of the program
    // folder as an export of that port; the files' paths.
    std::vector<std::string> keepUnsentEdits();
    bool portSpinNoticeShown() const override { return PortSpinNoticeShown; }
    void setPortSpinNoticeShown() override { PortSpinNoticeShown = true; }
    bool FetchCommParms(std::int16_t port) override;
    FetchState fetchState(std::int16_t port) const override;
    std::vector<ChangedField> showCorrections(std::int16_t port) const override;
    // The port's records as the host sent them in its last complete fetch; null without one.
    const PortRecords* received(std::int16_t port) const;
    bool FetchMachineTypes(std::int16_t displayRow) override;
    bool UpdateCommParms(std::int16_t port) override;
    void RefreshPortStates() override;

    // Everything the socket delivers comes through here, one arrival at a time (error trap,
    // location 155).
    void Process_Received_Socket_Packet(const std::string& chunk);

    // Winsock1's state number.
    int socketState() const;
    bool connected() const { return socketState() == SocketConnected; }
    ConnectState connectState() const { return connect_; }
    ConnectFailure connectFailure() const { return failure_; }
    // The system's word for why the socket failed (refused, no route, ...); empty while it has not.
    QString socketFailure() const { return socketError_ ? Winsock1.errorString() : QString(); }
    // A connect under way (the socket's or the version's wait) is given up without a word: the
    // caller says why. A connect that is over is left alone.
    void abandonConnect();
    // The longest wait for a reply: the version's, and each fetch section's and acknowledgement's
    // (the desktop's own waits unless a script asks for others).
    void setReplyLimit(int ms);
    // Whatever was sent has left for the host.
    bool allSent() const { return Winsock1.bytesToWrite() == 0; }
    void closeSocket();

    // Waits in a nested event loop until `done` holds; every flag the session sets, every timer
    // tick and every socket event looks again. False when the wait was called off (the program
    // is ending); later waits are not affected.
    bool waitUntil(const std::function<bool()>& done);
    void cancelWaits();

    // Read-only views for the windows.
    int hostIndex() const { return HostIndex; }
    std::int16_t idleMinuteCount() const { return IdleMinuteCount; }
    std::int16_t selectedPortRow() const { return SelectedPortRow; }
    const std::vector<PortStatusRecord>& portStatus() const { return PortStatus; }
    // The status of a grid row, empty for a row the table does not have.
    std::string statusOfRow(int row) const;
    const QString& socketCaption() const { return caption_; }

Q_SIGNALS:
    void connectStateChanged(ConnectState state);

private:
    void Accumulate_Socket_Data(const std::string& chunk);
    void dispatch(const std::string& chunk);
    void noPacketString();
    void clearPortStatus();
    void setStatus(const QString& caption, std::uint32_t colour);
    void setConnectState(ConnectState state);
    // Hands a packet to the socket; one that is not connected raises the socket's own error.
    void send(const std::string& packet);
    void wake();
    // The editor's waits: the request goes out, tmrPacketWait starts over, and the wait lasts
    // until `arrived` is set by the dispatch or the timer ticks.
    enum class Reply { Arrived, Expired, CalledOff };
    Reply awaitReply(const std::string& request, Bool16& arrived, const std::function<bool()>& offScript = {});
    // The host has acknowledged more sections of the update under way than were sent to it.
    bool ackSurplus() const { return updating_ && updateAcks_ > updateSectionsSent_; }
    // After the sixth acknowledgement: a moment for acknowledgements the host still owes nobody.
    bool settleAcks();
    void takeParmsSection(const std::string& packet);
    void takeAck();
    ChangeRecordEntry changeEntry(std::string_view kind, int port) const;
    void record(const ChangeRecordEntry& entry);

    // The connect sequence, one step per event.
    void socketConnected();
    void versionArrived();
    void versionTimedOut();
    void connectTimedOut();
    void failConnect();
    void tmrConnectionTimeout_Timer();
    void tmrSocketStatus_Timer();
    void tmrPacketTimeOut_Timer();
    void tmrIdleLogoff_Timer();

    HostConfiguration& config_;
    SessionUi& ui_;

    QTcpSocket Winsock1;
    std::unique_ptr<ProgramTimer> tmrConnectionTimeout;
    std::unique_ptr<ProgramTimer> tmrSocketStatus;
    std::unique_ptr<ProgramTimer> tmrPacketTimeOut;
    std::unique_ptr<ProgramTimer> tmrIdleLogoff;
    std::unique_ptr<ProgramTimer> tmrPacketWait; // the parameter editor's 2000 ms
    std::unique_ptr<ProgramTimer> tmrAckSettle; // after an update's last acknowledgement

    std::int16_t HostIndex = 1;
    std::int16_t ConnectTickCount = 0;
    Bool16 ConnectionTimedOut = FalseValue;
    Bool16 PacketTimedOut = FalseValue;
    Bool16 VersionReceived = FalseValue;
    Bool16 ParmsPacketReceived = FalseValue;
    Bool16 UpdateAckReceived = FalseValue;
    Bool16 PacketWaitExpired = FalseValue;
    std::string HostVersion;
    std::string MinimumRemoteVersion;
    std::int16_t IdleMinuteCount = 0;
    std::int16_t SelectedPortRow = 0;
    std::int16_t SelectedPortIndex = 0;
    std::vector<PortStatusRecord> PortStatus;
    std::vector<MachineTypeRecord> MachineTypes;
    std::int16_t MachineTypeCount = 0;
    bool PortSpinNoticeShown = false;

    Logs& logs_;
    PacketFaults faults_; // to the packet log
    PacketReceiver receiver_;
    PortParmsTables parms_;
    // Each port's last fetch: the sections that arrived and, when all did, the records as the
    // host sent them (or as the last update left them): what an update changes.
    struct PortFetch {
        std::bitset<LastParmsSection + 1> arrived;
        bool complete = false;
        bool uncertain = false;
        PortRecords host;
        std::vector<ChangedField> corrections;
    };
    std::map<std::int16_t, PortFetch> fetches_;
    // The section of the fetch under way (0: none) and its port; only that reply is taken in.
    std::int16_t awaitedSection_ = 0;
    std::int16_t awaitedPort_ = -1;
    Bool16 SectionReceived = FalseValue;
    // The update under way: an acknowledgement ends the wait only while one is awaited; every
    // one is counted, so that more than were sent sections shows.
    bool ackAwaited_ = false;
    bool updating_ = false;
    int updateSectionsSent_ = 0;
    int updateAcks_ = 0;
    Bool16 AckSettled = FalseValue;
    ChangeActor actor_;
    ConnectState connect_ = ConnectState::Idle;
    ConnectFailure failure_ = ConnectFailure::None;
    std::string_view updateKind_ = change_kind::Update;
    bool socketError_ = false;
    bool noPacketNoticeUp_ = false;
    struct Wait;
    std::vector<Wait*> waits_;
    QString caption_;
    std::uint32_t colour_ = StartColour;
};

} // namespace corvane
