#include "hostsim/HostSimulator.h"

#include "protocol/PortParmsPacket.h"
#include "protocol/Requests.h"
#include "runtime/RunTimeError.h"

#include <QTcpServer>
#include <QTcpSocket>

namespace corvane::hostsim {
namespace {

// Packets leave this far apart, so that each arrives at the terminal as a chunk of its own.
constexpr int GapBetweenChunksMs = 5;

std::int16_t fieldAsInt16(std::string_view packet, std::string_view key)
{
    try {
        if (const auto value = requestField(packet, key))
            return textToInt16(*value);
    } catch (const RunTimeError&) {
    }
    return -1;
}

} // namespace

HostSimulator::HostSimulator(Plant plant, QObject* parent)
    : QObject(parent)
    , plant_(std::move(plant))
    , server_(new QTcpServer(this))
{
    chunkTimer_.setSingleShot(true);
    connect(&chunkTimer_, &QTimer::timeout, this, &HostSimulator::writeNextChunk);
    connect(&pushTimer_, &QTimer::timeout, this, [this] {
        if (terminal_ && !faults.silent) {
            plant_.advance();
            enqueue(statusReply(plant_.status));
        }
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
    if (ms > 0)
        pushTimer_.start(ms);
    else
        pushTimer_.stop();
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
    bigPacketSent_ = false;
    connect(socket, &QTcpSocket::readyRead, this, &HostSimulator::readRequests);
    connect(socket, &QTcpSocket::disconnected, this, &HostSimulator::dropTerminal);
    if (log_)
        log_(QStringLiteral("terminal connected from %1").arg(socket->peerAddress().toString()));
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
    chunkTimer_.stop();
    if (log_)
        log_(QStringLiteral("terminal disconnected"));
    if (!server_->isListening() && !server_->listen(address_, port_))
        error_ = server_->errorString();
    Q_EMIT terminalDisconnected();
}

void HostSimulator::readRequests()
{
    if (!terminal_)
        return;
    const QByteArray bytes = terminal_->readAll();
    for (const std::string& packet :
        splitter_.feed(std::string_view(bytes.constData(), static_cast<std::size_t>(bytes.size())))) {
        log("recv", packet);
        Q_EMIT packetReceived(QByteArray(packet.data(), static_cast<qsizetype>(packet.size())));
        if (!faults.silent)
            answer(packet);
    }
}

void HostSimulator::answer(const std::string& packet)
{
    const auto type = requestType(packet);
    if (!type)
        return;
    switch (*type) {
    case packet_type::VersionRequest:
        reply(versionReply(faults.version, faults.minimumRemoteVersion));
        break;
    case packet_type::StatusRequest:
        if (faults.bigPacketSize > 0 && !bigPacketSent_) {
            bigPacketSent_ = true;
            reply(paddedPacket(faults.bigPacketSize));
            break;
        }
        plant_.advance();
        reply(statusReply(plant_.status));
        break;
    case packet_type::MachineTypeRequest:
        reply(machineTypesReply(plant_.machineTypes));
        break;
    case packet_type::PortParmsRequest:
        if (auto parms = portParmsReply(fieldAsInt16(packet, "SECTION="), fieldAsInt16(packet, "Port="), plant_.parms))
            reply(std::move(*parms));
        break;
    case packet_type::PortParms: {
        // An update section: stored at once, acknowledged unless told otherwise.
        const std::int16_t section = fieldAsInt16(packet, "SECTION=");
        try {
            Extract_Port_Parms_Packet(packet, plant_.parms);
        } catch (const RunTimeError& e) {
            if (log_)
                log_(QStringLiteral("section %1 not stored: run-time error %2").arg(section).arg(e.number()));
        }
        if (section <= faults.ackSectionsUpTo)
            reply(ackPacket());
        break;
    }
    case packet_type::UpdateComplete:
        ++updatesCompleted_;
        break;
    case packet_type::PurgeReset:
        plant_.purge(fieldAsInt16(packet, "DisplayRow="));
        break;
    default:
        break;
    }
}

void HostSimulator::reply(std::string packet)
{
    if (faults.joinWithStatus)
        packet += statusReply(plant_.status);
    if (faults.replyDelayMs > 0) {
        QTimer::singleShot(
            faults.replyDelayMs, this, [this, packet = std::move(packet)]() mutable { enqueue(std::move(packet)); });
        return;
    }
    enqueue(std::move(packet));
}

void HostSimulator::sendRaw(const std::string& bytes)
{
    enqueue(bytes);
}

void HostSimulator::enqueue(std::string packet)
{
    if (!terminal_)
        return;
    const auto pieces = static_cast<std::size_t>(std::max(1, faults.splitInto));
    const std::size_t size = (packet.size() + pieces - 1) / pieces;
    for (std::size_t from = 0; from < packet.size(); from += size)
        chunks_.push_back({packet.substr(from, size), from + size >= packet.size()});
    if (!chunkTimer_.isActive())
        writeNextChunk();
}

void HostSimulator::writeNextChunk()
{
    if (!terminal_ || chunks_.empty())
        return;
    const Chunk chunk = std::move(chunks_.front());
    chunks_.pop_front();
    log("sent", chunk.bytes);
    terminal_->write(chunk.bytes.data(), static_cast<qint64>(chunk.bytes.size()));
    terminal_->flush();
    if (chunk.endsPacket && faults.closeAfterPackets > 0 && ++packetsSent_ >= faults.closeAfterPackets) {
        if (log_)
            log_(QStringLiteral("closing the connection after %1 packets").arg(packetsSent_));
        terminal_->disconnectFromHost();
        return;
    }
    // The gap runs after every chunk, so that the next one, of this packet or another, stays apart.
    chunkTimer_.start(GapBetweenChunksMs);
}

void HostSimulator::log(const char* direction, std::string_view bytes)
{
    if (log_)
        log_(QStringLiteral("%1 %2").arg(QLatin1String(direction), QString::fromLatin1(visible(bytes).c_str())));
}

} // namespace corvane::hostsim
