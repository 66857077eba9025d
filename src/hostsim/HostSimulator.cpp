#include "hostsim/HostSimulator.h"

#include "protocol/PortParmsPacket.h"
#include "protocol/Requests.h"
#include "runtime/RunTimeError.h"

#include <QTcpServer>
#include <QTcpSocket>

#ifdef Q_OS_WIN
#include <winsock2.h>
#else
#include <sys/socket.h>
#endif

namespace corvane::hostsim {

HostSimulator::HostSimulator(Plant plant, TimerSource* clock, QObject* parent)
    : QObject(parent)
    , plant_(std::move(plant))
    , server_(new QTcpServer(this))
{
    if (!clock) {
        ownClock_ = std::make_unique<QtTimers>();
        clock = ownClock_.get();
    }
    gapTimer_ = clock->make("tmrChunkGap", GapBetweenChunksMs);
    dribbleTimer_ = clock->make("tmrDribble", 100);
    pushTimer_ = clock->make("tmrPushStatus", 2000);
    idleTimer_ = clock->make("tmrIdleDrop", IdleDropMinutes * 60000);
    connect(gapTimer_.get(), &ProgramTimer::timeout, this, [this] {
        gapTimer_->stop();
        pump();
    });
    connect(dribbleTimer_.get(), &ProgramTimer::timeout, this, &HostSimulator::dribble);
    connect(pushTimer_.get(), &ProgramTimer::timeout, this, [this] {
        if (terminal_ && !faults.silent) {
            plant_.advance();
            enqueue(statusReply(plant_.status), false);
        }
    });
    connect(idleTimer_.get(), &ProgramTimer::timeout, this, [this] {
        idleTimer_->stop();
        if (!terminal_)
            return;
        note(QStringLiteral("dropping a terminal silent for %1 ms").arg(idleTimer_->interval()));
        terminal_->abort();
        dropTerminal();
    });
    connect(server_, &QTcpServer::newConnection, this, &HostSimulator::acceptTerminal);
}

HostSimulator::~HostSimulator() = default;

bool HostSimulator::listen(const QHostAddress& address, quint16 port)
{
    address_ = address;
    if (!server_->listen(address, port)) {
        error_ = server_->errorString();
        return false;
    }
    port_ = server_->serverPort();
    return true;
}

void HostSimulator::setPushStatusInterval(int ms)
{
    pushTimer_->stop();
    if (ms > 0) {
        pushTimer_->setInterval(ms);
        pushTimer_->start();
    }
}

void HostSimulator::setIdleDropMinutes(int minutes)
{
    idleTimer_->setInterval(minutes * 60000);
    if (minutes <= 0)
        idleTimer_->stop();
    else if (terminal_)
        idleTimer_->start();
}

void HostSimulator::note(const QString& line)
{
    if (log_)
        log_(line);
}

void HostSimulator::acceptTerminal()
{
    QTcpSocket* socket = server_->nextPendingConnection();
    if (!socket)
        return;
    // The one terminal: stop listening until it leaves, so that a second is refused outright.
    while (QTcpSocket* other = server_->nextPendingConnection())
        other->abort();
    server_->close();

    terminal_ = socket;
    socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    splitter_ = RequestSplitter();
    packetsSent_ = 0;
    conversation_ = {};
    typesAnnounced_ = false;
    gapTimer_->stop();
    holding_ = false;
    lastWasReply_ = false;
    askedSinceLastChunk_ = false;
    endSending_ = false;
    if (idleTimer_->interval() > 0)
        idleTimer_->start();
    connect(socket, &QTcpSocket::readyRead, this, &HostSimulator::readRequests);
    connect(socket, &QTcpSocket::bytesWritten, this, &HostSimulator::endSendingOnceSent);
    connect(socket, &QTcpSocket::disconnected, this, &HostSimulator::dropTerminal);
    note(QStringLiteral("terminal connected from %1").arg(socket->peerAddress().toString()));
    Q_EMIT terminalConnected();
    if (faults.noPacketTextOnConnect)
        sendNoPacketText();
}

void HostSimulator::dropTerminal()
{
    if (!terminal_)
        return;
    terminal_->deleteLater();
    terminal_ = nullptr;
    chunks_.clear();
    queued_ = 0;
    gapTimer_->stop();
    holding_ = false;
    dribbleTimer_->stop();
    dribbling_.clear();
    idleTimer_->stop();
    note(QStringLiteral("terminal disconnected"));
    if (!server_->isListening() && !server_->listen(address_, port_))
        error_ = server_->errorString();
    Q_EMIT terminalDisconnected();
}

void HostSimulator::pullCable()
{
    if (!terminal_)
        return;
    terminal_->abort();
    dropTerminal();
}

void HostSimulator::readRequests()
{
    if (!terminal_)
        return;
    const QByteArray bytes = terminal_->readAll();
    if (idleTimer_->interval() > 0)
        idleTimer_->start();
    const int droppedBefore = splitter_.dropped;
    const auto packets = splitter_.feed(std::string_view(bytes.constData(), static_cast<std::size_t>(bytes.size())));
    if (splitter_.dropped != droppedBefore)
        note(QStringLiteral("dropped a request of over %1 bytes without its EOT").arg(RequestSplitter::MaxRequest));
    for (const std::string& packet : packets) {
        askedSinceLastChunk_ = true;
        log("recv", packet);
        Q_EMIT packetReceived(QByteArray(packet.data(), static_cast<qsizetype>(packet.size())));
        if (faults.silent)
            continue;
        Answer answer = answerRequest(plant_, packet, faults, conversation_);
        if (!answer.refused.empty())
            note(QString::fromStdString(answer.refused));
        if (answer.updateCompleted)
            ++updatesCompleted_;
        const auto type = requestType(packet);
        if (faults.earlyAck && type == packet_type::PortParmsRequest && answer.reply)
            enqueue(ackPacket(), true);
        const bool acknowledged = type == packet_type::PortParms && answer.reply;
        if (answer.reply)
            reply(std::move(*answer.reply));
        if (acknowledged
            && (faults.duplicateAck || (faults.earlyAck && requestField(packet, "SECTION=") == std::string("1"))))
            enqueue(ackPacket(), false);
        if (answer.versionAnswered && announceMachineTypes && !typesAnnounced_) {
            typesAnnounced_ = true;
            enqueue(machineTypesReply(plant_.machineTypes), false);
        }
    }
}

void HostSimulator::reply(std::string packet)
{
    ++answers_;
    if (faults.joinWithStatus)
        packet += statusReply(plant_.status);
    if (faults.replyDelayMs > 0) {
        QTimer::singleShot(faults.replyDelayMs, this,
            [this, packet = std::move(packet)]() mutable { enqueue(std::move(packet), true); });
        return;
    }
    enqueue(std::move(packet), true);
}

bool HostSimulator::flood(FloodKind kind, qint64 total)
{
    if (!terminal_)
        return false;
    flood_ = std::make_unique<Flood>(*terminal_, kind, total);
    note(QStringLiteral("flooding the terminal with %1 bytes").arg(total));
    connect(flood_.get(), &Flood::finished, this, [this] {
        note(QStringLiteral("flood sent"));
        endSendingOnceSent();
    });
    return true;
}

void HostSimulator::endSending()
{
    endSending_ = true;
    endSendingOnceSent();
}

void HostSimulator::endSendingOnceSent()
{
    if (!endSending_ || !terminal_ || !chunks_.empty() || !dribbling_.empty() || terminal_->bytesToWrite() > 0
        || (flood_ && !flood_->done()))
        return;
    endSending_ = false;
    note(QStringLiteral("ending the sending side"));
#ifdef Q_OS_WIN
    ::shutdown(static_cast<SOCKET>(terminal_->socketDescriptor()), SD_SEND);
#else
    ::shutdown(static_cast<int>(terminal_->socketDescriptor()), SHUT_WR);
#endif
}

void HostSimulator::sendRaw(const std::string& bytes)
{
    enqueue(bytes, false);
}

void HostSimulator::enqueue(std::string packet, bool isReply)
{
    if (!terminal_)
        return;
    if (terminal_->bytesToWrite() + queued_ + static_cast<qint64>(packet.size()) > MaxUnsent) {
        note(QStringLiteral("dropping a terminal that reads nothing: %1 bytes wait for it")
                 .arg(terminal_->bytesToWrite() + queued_));
        terminal_->abort();
        dropTerminal();
        return;
    }
    const auto pieces = static_cast<std::size_t>(std::max(1, faults.splitInto));
    const std::size_t size = (packet.size() + pieces - 1) / pieces;
    for (std::size_t from = 0; from < packet.size(); from += size) {
        chunks_.push_back({packet.substr(from, size), isReply, from == 0, from + size >= packet.size()});
        queued_ += static_cast<qint64>(chunks_.back().bytes.size());
    }
    pump();
}

// A chunk goes at once when the last one left a gap ago, or when it starts the answer to a
// request that came after the last packet out, itself an answer: the terminal has read that
// one. Anything else (pushed status, a greeting, the chunks of a split packet, the second of
// two answers) waits out the gap, so that no two packets reach the terminal as one chunk.
void HostSimulator::pump()
{
    if (chunks_.empty() || !dribbling_.empty())
        return;
    const Chunk& next = chunks_.front();
    const bool answersARead = next.reply && next.first && askedSinceLastChunk_ && lastWasReply_;
    if (!gapTimer_->isActive() || answersARead) {
        writeChunk();
    } else if (!holding_) {
        holding_ = true;
        ++chunksHeldBack_;
    }
}

void HostSimulator::writeChunk()
{
    if (!terminal_ || chunks_.empty())
        return;
    const Chunk chunk = std::move(chunks_.front());
    chunks_.pop_front();
    queued_ -= static_cast<qint64>(chunk.bytes.size());
    log("sent", chunk.bytes);
    if (faults.dribbleMs > 0 && chunk.bytes.size() > 1) {
        terminal_->write(chunk.bytes.data(), 1);
        dribbling_ = chunk.bytes.substr(1);
        dribbleTimer_->setInterval(faults.dribbleMs);
        dribbleTimer_->start();
    } else {
        terminal_->write(chunk.bytes.data(), static_cast<qint64>(chunk.bytes.size()));
    }
    terminal_->flush();
    ++chunksWritten_;
    holding_ = false;
    gapTimer_->start();
    askedSinceLastChunk_ = false;
    lastWasReply_ = chunk.reply && chunk.last;
    if (chunk.last && faults.closeAfterPackets > 0 && ++packetsSent_ >= faults.closeAfterPackets) {
        note(QStringLiteral("closing the connection after %1 packets").arg(packetsSent_));
        terminal_->disconnectFromHost();
        return;
    }
    pump();
    endSendingOnceSent();
}

void HostSimulator::dribble()
{
    if (!terminal_ || dribbling_.empty()) {
        dribbleTimer_->stop();
        dribbling_.clear();
        return;
    }
    terminal_->write(dribbling_.data(), 1);
    terminal_->flush();
    dribbling_.erase(0, 1);
    if (dribbling_.empty()) {
        dribbleTimer_->stop();
        pump();
        endSendingOnceSent();
    }
}

void HostSimulator::log(const char* direction, std::string_view bytes)
{
    if (!log_)
        return;
    const std::string shown = visible(bytes);
    log_(QLatin1String(direction) + QLatin1Char(' ')
        + QString::fromLatin1(shown.data(), static_cast<qsizetype>(shown.size())));
}

} // namespace corvane::hostsim
