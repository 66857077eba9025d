#include "session/HostSession.h"

#include "platform/Latin1.h"
#include "protocol/PacketErrorLog.h"
#include "protocol/Framing.h"
#include "protocol/Requests.h"
#include "runtime/RunTimeError.h"
#include "session/HostConfiguration.h"
#include "session/ResumeNext.h"
#include "shell/ConfigurationRules.h"
#include "shell/GridRules.h"
#include "shell/SessionMessages.h"

#include <QCoreApplication>
#include <QEventLoop>

#include <algorithm>

namespace corvane {
namespace {

// The exit code by which the session wakes its own waits to look again.
constexpr int LookAgain = 1;

} // namespace

struct HostSession::Wait {
    QEventLoop loop;
    bool cancelled = false;
};

HostSession::HostSession(
    HostConfiguration& config, SessionUi& ui, TimerSource& timers, Logs& logs, QObject* parent)
    : QObject(parent)
    , config_(config)
    , ui_(ui)
    , tmrConnectionTimeout(timers.make("tmrConnectionTimeout", 500))
    , tmrSocketStatus(timers.make("tmrSocketStatus", 3000))
    , tmrPacketTimeOut(timers.make("tmrPacketTimeOut", 3000))
    , tmrIdleLogoff(timers.make("tmrIdleLogoff", 60000))
    , tmrPacketWait(timers.make("tmrPacketWait", 2000))
    , tmrAckSettle(timers.make("tmrAckSettle", AckSettleMs))
    , logs_(logs)
    , faults_(packetLogOf(logs))
    , receiver_(faults_)
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

} // namespace corvane
