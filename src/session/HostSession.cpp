#include "session/HostSession.h"

#include "platform/Latin1.h"
#include "protocol/Framing.h"
#include "protocol/PacketErrorLog.h"
#include "protocol/PortParmsPacket.h"
#include "protocol/Requests.h"
#include "runtime/ErrorLog.h"
#include "runtime/RunTimeError.h"
#include "shell/ConfigurationRules.h"
#include "shell/GridRules.h"
#include "session/HostConfiguration.h"
#include "shell/SessionMessages.h"
#include "shell/VersionRules.h"

#include <QCoreApplication>
#include <QEventLoop>

#include <algorithm>

namespace corvane {
namespace {

const QString Connecting = QStringLiteral("Connecting...");
const QString Blank = QStringLiteral(" ");
const QString Idle = QStringLiteral("Idle");
const QString Connected = QStringLiteral("Connected");

// The connect gives up on the fourteenth tick of its 500 ms timer.
constexpr std::int16_t LastConnectTick = 12;

// The exit code by which the session wakes its own waits to look again.
constexpr int LookAgain = 1;

// The connect sequence ignores run-time errors and goes on with its next step.
template <typename Step> void resumeNext(Step&& step) noexcept
{
    try {
        step();
    } catch (const std::exception&) {
    }
}

} // namespace

struct HostSession::Wait {
    QEventLoop loop;
    bool cancelled = false;
};

HostSession::HostSession(HostConfiguration& config, SessionUi& ui, TimerSource& timers, QObject* parent)
    : QObject(parent)
    , config_(config)
    , ui_(ui)
    , tmrConnectionTimeout(timers.make("tmrConnectionTimeout", 500))
    , tmrSocketStatus(timers.make("tmrSocketStatus", 3000))
    , tmrPacketTimeOut(timers.make("tmrPacketTimeOut", 3000))
    , tmrIdleLogoff(timers.make("tmrIdleLogoff", 60000))
    , tmrPacketWait(timers.make("tmrPacketWait", 2000))
    , tmrAckSettle(timers.make("tmrAckSettle", AckSettleMs))
{
    clearPortStatus();
    parms_.resize();
    const auto onTick = [this](ProgramTimer& timer, void (HostSession::*tick)()) {
        connect(&timer, &ProgramTimer::timeout, this, [this, tick] {
            resumeNext([this, tick] { (this->*tick)(); });
            wake();
        });
    };
    onTick(*tmrConnectionTimeout, &HostSession::tmrConnectionTimeout_Timer);
    onTick(*tmrSocketStatus, &HostSession::tmrSocketStatus_Timer);
    onTick(*tmrPacketTimeOut, &HostSession::tmrPacketTimeOut_Timer);
    onTick(*tmrIdleLogoff, &HostSession::tmrIdleLogoff_Timer);
    // It only says the wait is over; it goes on ticking, and every wait starts it over.
    connect(tmrPacketWait.get(), &ProgramTimer::timeout, this, [this] {
        PacketWaitExpired = TrueValue;
        wake();
    });
    connect(tmrAckSettle.get(), &ProgramTimer::timeout, this, [this] {
        tmrAckSettle->stop();
        AckSettled = TrueValue;
        wake();
    });
    tmrIdleLogoff->start();

    // Each arrival is read at once and handed on as an event of its own, so that a box opened
    // while one arrival is dispatched never holds up the next: it is read, and dispatched, inside
    // the box's own event loop, in the order it came.
    connect(&Winsock1, &QTcpSocket::readyRead, this, [this] {
        const QByteArray bytes = Winsock1.readAll();
        if (bytes.isEmpty())
            return;
        QMetaObject::invokeMethod(
            this, [this, chunk = toBytes(bytes)] { Process_Received_Socket_Packet(chunk); }, Qt::QueuedConnection);
    });
    connect(&Winsock1, &QAbstractSocket::connected, this, [this] {
        resumeNext([this] { socketConnected(); });
        wake();
    });
    connect(&Winsock1, &QAbstractSocket::errorOccurred, this, [this] {
        socketError_ = true;
        wake();
    });
    connect(&Winsock1, &QAbstractSocket::stateChanged, this, &HostSession::wake);
    connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, this, &HostSession::cancelWaits);
}

HostSession::~HostSession()
{
    cancelWaits();
}

int HostSession::socketState() const
{
    switch (Winsock1.state()) {
    case QAbstractSocket::UnconnectedState:
        return socketError_ ? SocketError : SocketClosed;
    case QAbstractSocket::BoundState:
        return SocketOpen;
    case QAbstractSocket::ListeningState:
        return SocketListening;
    case QAbstractSocket::HostLookupState:
        return SocketResolvingHost;
    case QAbstractSocket::ConnectingState:
        return SocketConnecting;
    case QAbstractSocket::ConnectedState:
        return SocketConnected;
    case QAbstractSocket::ClosingState:
        return SocketClosing;
    }
    return SocketClosed;
}

void HostSession::closeSocket()
{
    Winsock1.abort();
    socketError_ = false;
}

void HostSession::setStatus(const QString& caption, std::uint32_t colour)
{
    caption_ = caption;
    colour_ = colour;
    ui_.showSocketStatus(caption, colour);
}

void HostSession::setConnectState(ConnectState state)
{
    if (connect_ == state)
        return;
    connect_ = state;
    Q_EMIT connectStateChanged(state);
    wake();
}

void HostSession::send(const std::string& packet)
{
    if (!connected() || Winsock1.write(toByteArray(packet)) < 0)
        raise(err::SocketBadState);
    Winsock1.flush();
}

bool HostSession::waitUntil(const std::function<bool()>& done)
{
    Wait wait;
    waits_.push_back(&wait);
    while (!done() && !wait.cancelled) {
        // Anything but our own wake-up (the program's exit ends every loop) calls the wait off.
        if (wait.loop.exec() != LookAgain)
            wait.cancelled = true;
    }
    waits_.erase(std::find(waits_.begin(), waits_.end(), &wait));
    return !wait.cancelled || done();
}

void HostSession::wake()
{
    for (Wait* wait : waits_)
        wait->loop.exit(LookAgain);
}

void HostSession::cancelWaits()
{
    for (Wait* wait : waits_) {
        wait->cancelled = true;
        wait->loop.exit(0);
    }
}

void HostSession::cboHostName_Click(int host)
{
    HostIndex = toInt16(host);
}

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
        ui_.showMessage(message::idleLogOff(config_.IdleMinutes));
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

void HostSession::cmdRefresh_Click()
{
    IdleMinuteCount = 0;
    if (connected())
        send(Build_Status_Request());
    else
        ui_.showMessage(message::noSocketConnection());
}

void HostSession::cmdPurgeAndReset_Click()
{
    IdleMinuteCount = 0;
    if (isFtpTypeMode(statusOfRow(SelectedPortRow))) {
        ui_.notFtpRefused();
        return;
    }
    if (!connected()) {
        ui_.showMessage(message::noSocketConnection());
        return;
    }
    // Only a Yes purges: a box that ended without an answer purges nothing.
    constexpr std::int16_t Yes = 6;
    if (ui_.askYesNo(message::purgeQuestion()) == Yes && connected()) {
        send(Build_Purge_Reset_Request(SelectedPortRow));
        ChangeRecordEntry entry = changeEntry(change_kind::Purge, SelectedPortRow + 1);
        entry.outcome = change_outcome::Sent; // the host answers a purge with nothing
        record(entry);
    }
}

bool HostSession::cmdCommParms_Click(const std::function<bool()>& checkAccess)
{
    if (isFtpTypeMode(statusOfRow(SelectedPortRow))) {
        ui_.notFtpRefused();
        return false;
    }
    config_.Save_LastHostIPIndex(HostIndex);
    IdleMinuteCount = 0;
    if (!connected()) {
        ui_.showMessage(message::noSocketConnection());
        return false;
    }
    if (!checkAccess())
        return false;
    SelectedPortIndex = SelectedPortRow;
    return true;
}

void HostSession::rowChanged(int row)
{
    SelectedPortRow = toInt16(row);
}

SinglePortMode HostSession::singlePortMode() const
{
    const auto host = static_cast<std::size_t>(HostIndex);
    if (host >= config_.SinglePortModes.size())
        return {};
    return {config_.SinglePortModes[host], config_.SingleDNCCommPorts[host]};
}

void HostSession::Accumulate_Socket_Data(const std::string& chunk)
{
    receiver_.accumulate(chunk);
}

void HostSession::Process_Received_Socket_Packet(const std::string& chunk)
{
    runTrapped(location::PacketDispatch, [&] { dispatch(chunk); });
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

    const std::int16_t type = Get_Packet_Type(packet, [this] { noPacketString(); });
    if (type == packet_type::Ack) {
        takeAck();
        return;
    }
    // Read from every packet but an acknowledgement, though nothing routes by it; a packet
    // without it still goes on, a value beyond 16 bits drops the packet into the trap.
    [[maybe_unused]] const std::int16_t section = valToInt16(Get_Packet_Field(packet, "SECTION="));

    switch (type) {
    case packet_type::NoPacket:
        break;
    case packet_type::PortParms:
        takeParmsSection(packet);
        break;
    case packet_type::PortStatusReply:
        try {
            Extract_Status_Packet(packet, PortStatus);
        } catch (...) {
            // The rows stored before the fault are shown; the fault itself goes to the trap.
            ui_.portTableChanged();
            throw;
        }
        ui_.portTableChanged();
        break;
    case packet_type::MachineTypesReply:
        Extract_Machine_Types(packet, MachineTypes, MachineTypeCount);
        break;
    case packet_type::VersionReply:
        VersionReceived = TrueValue;
        HostVersion = Get_Host_Version(packet);
        MinimumRemoteVersion = Get_Minimum_Remote_Version(packet);
        break;
    default:
        if (std::ranges::find(packet_type::AcceptedWithoutAction, type) == std::end(packet_type::AcceptedWithoutAction))
            Log_Packet_Error("Unknown packet.");
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
