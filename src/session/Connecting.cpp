// The connection: the connect sequence as a small state machine driven by the socket's signals
// and the timers, the status the rest of the program polls, and the disconnect.
#include "session/HostSession.h"

#include "protocol/Requests.h"
#include "runtime/RunTimeError.h"
#include "session/HostConfiguration.h"
#include "session/ResumeNext.h"
#include "shell/ConfigurationRules.h"
#include "shell/SessionMessages.h"
#include "shell/VersionRules.h"

namespace corvane {
namespace {

const QString Connecting = QStringLiteral("Connecting...");
const QString Blank = QStringLiteral(" ");
const QString Idle = QStringLiteral("Idle");
const QString Connected = QStringLiteral("Connected");

// The connect gives up on the fourteenth tick of its 500 ms timer.
constexpr std::int16_t LastConnectTick = 12;

} // namespace

// The connect command only starts the sequence; the socket's signals, the dispatch and the
// timers carry it on, and the window stays live throughout.
void HostSession::Command1_Click(const QString& txtIP)
{
    failure_ = ConnectFailure::Refused; // until the connect gets under way
    if (connected()) {
        ui_.showMessage(message::alreadyConnected());
        return;
    }
    if (connect_ == ConnectState::Connecting)
        return; // the socket is already on its way; its wait is running
    if (txtIP.isEmpty()) {
        ui_.showMessage(message::noAddress());
        return;
    }
    if (HostIndex < 0 || static_cast<std::size_t>(HostIndex) >= config_.HostIPs.size())
        raise(err::SubscriptOutOfRange);
    const auto host = static_cast<std::size_t>(HostIndex);
    if (config_.HostIPs[host] == QStringLiteral("Undefined")) {
        ui_.showMessage(message::undefinedHost());
        return;
    }

    IdleMinuteCount = 0;
    resumeNext([&] {
        if (socketState() == SocketOpen)
            closeSocket();
        socketError_ = false;
        Winsock1.connectToHost(config_.HostIPs[host], static_cast<quint16>(config_.SocketPorts[host]));
        ConnectionTimedOut = FalseValue;
        tmrConnectionTimeout->start();
        setStatus(Connecting, ConnectingColour);
        ConnectTickCount = 0;
        failure_ = ConnectFailure::None;
        setConnectState(ConnectState::Connecting);
    });
}

void HostSession::socketConnected()
{
    // Requests are small and each waits for its answer: none may sit waiting for the last one's
    // acknowledgement (a trailer followed at once by the next update's first section would).
    Winsock1.setSocketOption(QAbstractSocket::LowDelayOption, 1);
    if (connect_ != ConnectState::Connecting)
        return;
    if (!tmrConnectionTimeout->isActive())
        tmrConnectionTimeout->start(); // its next tick sees the connection and starts the status polling
    send(Build_Version_Request());
    PacketTimedOut = FalseValue;
    tmrPacketTimeOut->stop();
    tmrPacketTimeOut->start();
    VersionReceived = FalseValue;
    setConnectState(ConnectState::AwaitingVersion);
}

void HostSession::connectTimedOut()
{
    failure_ = ConnectFailure::TimedOut;
    setConnectState(ConnectState::Idle);
    setStatus(Idle, IdleColour);
    ui_.showMessage(message::connectionTimeOut());
    closeSocket();
}

// The version decides; the state moves on before any box opens, so that what arrives while the
// box is up cannot run this step twice.
void HostSession::versionArrived()
{
    if (connect_ != ConnectState::AwaitingVersion || !VersionReceived)
        return;
    if (!hostVersionAccepted(HostVersion)) {
        failure_ = ConnectFailure::VersionRefused;
        setConnectState(ConnectState::Idle);
        ui_.showMessage(message::hostTooOld(HostVersion));
        failConnect();
        return;
    }
    setConnectState(ConnectState::Connected);
    if (upgradeAdvised(MinimumRemoteVersion))
        ui_.showMessage(message::upgradeAdvisory(HostVersion, MinimumRemoteVersion));
    tmrPacketTimeOut->stop();
    cmdRefresh_Click();
    ui_.rememberGridPosition();
}

void HostSession::versionTimedOut()
{
    if (connect_ != ConnectState::AwaitingVersion || VersionReceived)
        return;
    failure_ = ConnectFailure::VersionTimedOut;
    setConnectState(ConnectState::Idle);
    ui_.showMessage(message::fetchVersionTimeout());
    failConnect();
}

void HostSession::abandonConnect()
{
    if (connect_ != ConnectState::Connecting && connect_ != ConnectState::AwaitingVersion)
        return;
    failure_ = connect_ == ConnectState::AwaitingVersion ? ConnectFailure::VersionTimedOut
        : socketError_                                   ? ConnectFailure::Refused
                                                         : ConnectFailure::TimedOut;
    tmrPacketTimeOut->stop();
    failConnect();
}

void HostSession::setReplyLimit(int ms)
{
    tmrPacketTimeOut->setInterval(ms);
    tmrPacketWait->setInterval(ms);
}

void HostSession::failConnect()
{
    setConnectState(ConnectState::Idle);
    closeSocket();
    tmrConnectionTimeout->stop();
    clearPortStatus();
    ui_.portTableChanged();
    setStatus(Idle, IdleColour);
}

void HostSession::tmrConnectionTimeout_Timer()
{
    if (connected()) {
        tmrConnectionTimeout->stop();
        tmrSocketStatus->setInterval(1); // the label turns green at once
        tmrSocketStatus->start();
    }
    if (ConnectTickCount > LastConnectTick) {
        ConnectionTimedOut = TrueValue;
        tmrConnectionTimeout->stop();
    }
    ConnectTickCount = toInt16(ConnectTickCount + 1);
    setStatus(caption_ != Connecting ? Connecting : Blank, colour_);
    if (connect_ == ConnectState::Connecting && ConnectionTimedOut && !connected())
        connectTimedOut();
}

// Polls for the rest of the program, also after a disconnect.
void HostSession::tmrSocketStatus_Timer()
{
    tmrSocketStatus->stop();
    tmrSocketStatus->setInterval(3000);
    resumeNext([this] {
        if (!connected()) {
            closeSocket();
            setStatus(Idle, IdleColour);
            if (connect_ == ConnectState::Connected)
                setConnectState(ConnectState::Idle);
        } else {
            setStatus(Connected, ConnectedColour);
        }
    });
    tmrSocketStatus->start();
}

void HostSession::tmrPacketTimeOut_Timer()
{
    PacketTimedOut = TrueValue;
    tmrPacketTimeOut->stop();
    versionTimedOut();
}

void HostSession::tmrIdleLogoff_Timer()
{
    IdleMinuteCount = toInt16(IdleMinuteCount + 1);
    if (config_.IdleMinutes != 0 && connected() && IdleMinuteCount > config_.IdleMinutes) {
        // The log-off goes ahead (nobody is there), but an edit that was not sent is kept, and
        // said where.
        std::string text = message::idleLogOff(config_.IdleMinutes);
        for (const std::string& kept : keepUnsentEdits())
            text += "\r\n" + message::unsentEditKept(kept);
        ui_.showMessage(text);
        closeSocket();
        setStatus(Idle, IdleColour);
        setConnectState(ConnectState::Idle);
        ui_.idleLoggedOff();
    }
}

// Also calls off a connect under way: whoever presses Disconnect while it waits wants it stopped,
// not told seconds later that it timed out.
void HostSession::cmdDisconnect_Click()
{
    closeSocket();
    tmrConnectionTimeout->stop();
    tmrPacketTimeOut->stop();
    setConnectState(ConnectState::Idle);
    clearPortStatus();
    ui_.portTableChanged();
    setStatus(Idle, IdleColour);
    ui_.afterDisconnect();
}

} // namespace corvane
