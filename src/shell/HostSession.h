#pragma once

#include "protocol/Replies.h"
#include "runtime/Convert.h"
#include "shell/SessionUi.h"

#include <QTcpSocket>
#include <QTimer>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

class QEventLoop;

namespace corvane {

class HostConfiguration;

// Timer intervals; tests shorten them, the program keeps these.
struct SessionTimings {
    int connectTickMs = 500; // tmrConnectionTimeout
    int socketStatusMs = 3000; // tmrSocketStatus
    int packetTimeoutMs = 3000; // tmrPacketTimeOut
    int idleTickMs = 60000; // tmrIdleLogoff: one idle minute
};

// The one connection to the selected host: connect with the version check, the dispatch of
// everything the host sends, the port table, the commands that talk to the host and the idle
// log-off. It never opens a window; it speaks through SessionUi.
class HostSession : public QObject {
    Q_OBJECT

public:
    // The socket states the session tells apart.
    static constexpr int StateClosed = 0;
    static constexpr int StateOpen = 1;
    static constexpr int StateConnected = 7;
    static constexpr int StateError = 9;

    HostSession(HostConfiguration& config, SessionUi& ui, SessionTimings timings = {}, QObject* parent = nullptr);
    ~HostSession() override;

    // Winsock1's state number: 1 open, 7 connected; anything else is not connected.
    int socketState() const;
    bool connected() const { return socketState() == StateConnected; }
    void closeSocket();

    // The main window's commands.
    void Command1_Click(const QString& txtIP); // connect to HostIndex
    void cmdDisconnect_Click();
    void cmdRefresh_Click();
    void cmdPurgeAndReset_Click();
    // Up to the access check: whether the parameter editor may open for the selected row.
    bool cmdCommParms_Click(const std::function<bool()>& checkAccess);

    // Everything the socket delivers comes through here (error trap, location 155).
    void Process_Received_Socket_Packet(const std::string& chunk);

    // Clears the port table to 128 empty records.
    void clearPortStatus();
    // The status of a grid row, empty for a row the table does not have.
    std::string statusOfRow(int row) const;

    // Waits in a nested event loop until `done` holds; false when the wait was called off
    // (the program is ending).
    bool waitUntil(const std::function<bool()>& done);
    void cancelWaits();

    std::int16_t HostIndex = 1;
    std::int16_t ConnectTickCount = 0;
    Bool16 ConnectionTimedOut = FalseValue;
    Bool16 PacketTimedOut = FalseValue;
    Bool16 VersionReceived = FalseValue;
    Bool16 ParmsPacketReceived = FalseValue;
    Bool16 UpdateAckReceived = FalseValue;
    std::string HostVersion;
    std::string MinimumRemoteVersion;
    std::int16_t IdleMinuteCount = 0;
    std::int16_t SelectedPortRow = 0;
    std::int16_t SelectedPortIndex = 0;
    std::vector<PortStatusRecord> PortStatus;
    std::vector<MachineTypeRecord> MachineTypes;
    std::int16_t MachineTypeCount = 0;

    QTcpSocket Winsock1;
    QTimer tmrConnectionTimeout;
    QTimer tmrSocketStatus;
    QTimer tmrPacketTimeOut;
    QTimer tmrIdleLogoff;

    const QString& socketCaption() const { return caption_; }
    std::uint32_t socketColour() const { return colour_; }

private:
    void setStatus(const QString& caption, std::uint32_t colour);
    void send(const std::string& packet);
    void yield();
    void wake();
    void failConnect();
    void connectionTick();
    void socketStatusTick();
    void idleTick();
    void dispatch(const std::string& chunk);

    HostConfiguration& config_;
    SessionUi& ui_;
    SessionTimings timings_;
    bool socketError_ = false;
    bool cancelled_ = false;
    std::vector<QEventLoop*> waits_;
    QString caption_;
    std::uint32_t colour_ = StartColour;
};

} // namespace corvane
