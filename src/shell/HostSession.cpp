#include "shell/HostSession.h"

#include "commparms/PortParms.h"
#include "protocol/Framing.h"
#include "protocol/PacketErrorLog.h"
#include "protocol/PortParmsPacket.h"
#include "protocol/Requests.h"
#include "runtime/ErrorLog.h"
#include "shell/HostConfiguration.h"
#include "platform/Latin1.h"
#include "shell/ConfigurationRules.h"
#include "shell/GridRules.h"
#include "shell/SessionMessages.h"
#include "shell/VersionRules.h"

#include <QCoreApplication>
#include <QEventLoop>

namespace corvane {
namespace {

// The exit code by which the session ends its own waits; anything else ends them for good.
constexpr int Woken = 1;

const QString Connecting = QStringLiteral("Connecting...");
const QString Blank = QStringLiteral(" ");
const QString Idle = QStringLiteral("Idle");
const QString Connected = QStringLiteral("Connected");

} // namespace

HostSession::HostSession(HostConfiguration& config, SessionUi& ui, SessionTimings timings, QObject* parent)
    : QObject(parent)
    , config_(config)
    , ui_(ui)
    , timings_(timings)
{
    clearPortStatus();
    tmrConnectionTimeout.setInterval(timings.connectTickMs);
    tmrSocketStatus.setInterval(timings.socketStatusMs);
    tmrPacketTimeOut.setInterval(timings.packetTimeoutMs);
    tmrIdleLogoff.setInterval(timings.idleTickMs);
    connect(&tmrConnectionTimeout, &QTimer::timeout, this, &HostSession::connectionTick);
    connect(&tmrSocketStatus, &QTimer::timeout, this, &HostSession::socketStatusTick);
    connect(&tmrPacketTimeOut, &QTimer::timeout, this, [this] {
        PacketTimedOut = TrueValue;
        tmrPacketTimeOut.stop();
        wake();
    });
    connect(&tmrIdleLogoff, &QTimer::timeout, this, &HostSession::idleTick);
    tmrIdleLogoff.start();

    connect(&Winsock1, &QTcpSocket::readyRead, this, [this] {
        const QByteArray bytes = Winsock1.readAll();
        Process_Received_Socket_Packet(toBytes(bytes));
    });
    connect(&Winsock1, &QAbstractSocket::errorOccurred, this, [this] {
        socketError_ = true;
        wake();
    });
    connect(&Winsock1, &QAbstractSocket::stateChanged, this, [this] { wake(); });
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
        return socketError_ ? StateError : StateClosed;
    case QAbstractSocket::BoundState:
        return StateOpen;
    case QAbstractSocket::ListeningState:
        return 2;
    case QAbstractSocket::HostLookupState:
        return 4;
    case QAbstractSocket::ConnectingState:
        return 6;
    case QAbstractSocket::ConnectedState:
        return StateConnected;
    case QAbstractSocket::ClosingState:
        return 8;
    }
    return StateClosed;
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

void HostSession::send(const std::string& packet)
{
    if (!connected())
        return;
    Winsock1.write(toByteArray(packet));
    Winsock1.flush();
}

void HostSession::yield()
{
    QCoreApplication::processEvents();
}

bool HostSession::waitUntil(const std::function<bool()>& done)
{
    while (!done()) {
        if (cancelled_)
            return false;
        QEventLoop loop;
        waits_.push_back(&loop);
        const int code = loop.exec();
        waits_.pop_back();
        if (code != Woken) {
            cancelled_ = true;
            return false;
        }
    }
    return true;
}

void HostSession::wake()
{
    for (QEventLoop* loop : waits_)
        loop->exit(Woken);
}

void HostSession::cancelWaits()
{
    cancelled_ = true;
    for (QEventLoop* loop : waits_)
        loop->exit(0);
}

void HostSession::Command1_Click(const QString& txtIP)
{
    if (connected()) {
        ui_.showMessage(message::alreadyConnected());
        return;
    }
    if (txtIP.isEmpty()) {
        ui_.showMessage(message::noAddress());
        return;
    }
    if (HostIndex < 0 || HostIndex > 6)
        return; // a host the tables have no room for: nothing to connect to
    const auto host = static_cast<std::size_t>(HostIndex);
    if (config_.HostIPs[host] == QStringLiteral("Undefined")) {
        ui_.showMessage(message::undefinedHost());
        return;
    }

    IdleMinuteCount = 0;
    if (socketState() == StateOpen)
        closeSocket();
    socketError_ = false;
    Winsock1.connectToHost(config_.HostIPs[host], static_cast<quint16>(config_.SocketPorts[host]));

    ConnectionTimedOut = FalseValue;
    tmrConnectionTimeout.start();
    setStatus(Connecting, ConnectingColour);
    yield();
    ConnectTickCount = 0;

    if (!waitUntil([this] { return connected() || ConnectionTimedOut; }))
        return;
    if (!connected()) {
        setStatus(Idle, IdleColour);
        ui_.showMessage(message::connectionTimeOut());
        closeSocket();
        return;
    }

    tmrConnectionTimeout.start(); // its next tick sees the connection and starts the status polling
    send(Build_Version_Request());
    PacketTimedOut = FalseValue;
    tmrPacketTimeOut.stop();
    tmrPacketTimeOut.start();
    VersionReceived = FalseValue;

    if (!waitUntil([this] { return VersionReceived || PacketTimedOut; }))
        return;
    if (!VersionReceived) {
        ui_.showMessage(message::fetchVersionTimeout());
        failConnect();
        return;
    }
    if (!hostVersionAccepted(HostVersion)) {
        ui_.showMessage(message::hostTooOld(HostVersion));
        failConnect();
        return;
    }
    if (upgradeAdvised(MinimumRemoteVersion))
        ui_.showMessage(message::upgradeAdvisory(HostVersion, MinimumRemoteVersion));

    tmrPacketTimeOut.stop();
    cmdRefresh_Click();
    ui_.rememberGridPosition();
}

void HostSession::failConnect()
{
    closeSocket();
    tmrConnectionTimeout.stop();
    yield();
    clearPortStatus();
    ui_.portTableChanged();
    setStatus(Idle, IdleColour);
}

void HostSession::connectionTick()
{
    if (connected()) {
        tmrConnectionTimeout.stop();
        tmrSocketStatus.setInterval(1);
        tmrSocketStatus.start();
    }
    if (ConnectTickCount > 12) {
        ConnectionTimedOut = TrueValue;
        tmrConnectionTimeout.stop();
    }
    ++ConnectTickCount;
    setStatus(caption_ != Connecting ? Connecting : Blank, colour_);
    wake();
    yield();
}

void HostSession::socketStatusTick()
{
    tmrSocketStatus.stop();
    tmrSocketStatus.setInterval(timings_.socketStatusMs);
    if (!connected()) {
        closeSocket();
        setStatus(Idle, IdleColour);
    } else {
        setStatus(Connected, ConnectedColour);
    }
    tmrSocketStatus.start();
}

void HostSession::cmdDisconnect_Click()
{
    closeSocket();
    yield();
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
    constexpr std::int16_t No = 7;
    if (ui_.askYesNo(message::purgeQuestion()) != No && connected())
        send(Build_Purge_Reset_Request(SelectedPortRow));
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

void HostSession::idleTick()
{
    ++IdleMinuteCount;
    if (config_.IdleMinutes != 0 && connected() && IdleMinuteCount > config_.IdleMinutes) {
        ui_.showMessage(message::idleLogOff(config_.IdleMinutes));
        closeSocket();
        setStatus(Idle, IdleColour);
        ui_.idleLoggedOff();
    }
}

void HostSession::Process_Received_Socket_Packet(const std::string& chunk)
{
    runTrapped(location::PacketDispatch, [&] { dispatch(chunk); });
    wake();
}

void HostSession::dispatch(const std::string& chunk)
{
    Accumulate_Socket_Data(chunk);
    if (!receiveState().packetComplete())
        return;
    const std::string packet = receiveState().completedPacket();
    ParmsPacketReceived = TrueValue;

    const std::int16_t type = Get_Packet_Type(packet);
    if (type == packet_type::Ack) {
        UpdateAckReceived = TrueValue;
        return;
    }
    if (type == packet_type::NoPacket)
        return;
    // Read from every typed packet, though nothing routes by it; one without it still goes on.
    [[maybe_unused]] const std::int16_t section = valToInt16(Get_Packet_Field(packet, "SECTION="));

    switch (type) {
    case packet_type::PortParms:
        Extract_Port_Parms_Packet(packet);
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
    case 130:
    case 160:
    case packet_type::PortParmsRequest:
    case packet_type::StatusRequest:
    case 230:
    case packet_type::MachineTypeRequest:
    case packet_type::VersionRequest:
    case packet_type::UpdateComplete:
    case packet_type::PurgeReset:
        break;
    default:
        Log_Packet_Error("Unknown packet.");
        break;
    }
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
