#include "hostsim/Flood.h"

#include "hostsim/HostPackets.h"
#include "protocol/Framing.h"

namespace corvane::hostsim {
namespace {

constexpr qint64 Ahead = 256 * 1024; // what may wait in the socket for the terminal
constexpr std::size_t EndlessPiece = 64 * 1024;
constexpr std::size_t MillionRecords = 1'000'000;
constexpr int NoPacketTextEvery = 25; // status replies between two texts that are no packet

std::string longNamedStatus(std::size_t index)
{
    std::vector<PortStatusRecord> rows(128);
    for (std::size_t r = 0; r < rows.size(); ++r) {
        rows[r].WorkstationName = "MACHINING CENTRE " + std::to_string(r + 1) + " OF THE LONG NAMES CELL "
            + std::string(160, static_cast<char>('A' + r % 26));
        rows[r].FileName = "O" + std::to_string(1000 + r) + ".NC";
        rows[r].Status = "Sending";
        rows[r].ByteCount = std::to_string(index * 512 + r);
        rows[r].DNC_ID = std::to_string(r + 1);
    }
    return statusReply(rows);
}

} // namespace

std::optional<FloodKind> floodKindNamed(std::string_view name)
{
    if (name == "endless")
        return FloodKind::EndlessPacket;
    if (name == "machine-types")
        return FloodKind::MachineTypeLists;
    if (name == "status")
        return FloodKind::LongStatusReplies;
    return std::nullopt;
}

std::string floodPiece(FloodKind kind, std::size_t index)
{
    switch (kind) {
    case FloodKind::EndlessPacket:
        if (index == 0)
            return packetHeader(packet_type::PortStatusReply, 0) + "WorkstationName=";
        return std::string(EndlessPiece, 'x');
    case FloodKind::MachineTypeLists:
        return packetHeader(packet_type::MachineTypesReply, 0) + std::string(MillionRecords, ETX) + EOT;
    case FloodKind::LongStatusReplies:
        if (index % NoPacketTextEvery == NoPacketTextEvery - 1)
            return noPacketText();
        return longNamedStatus(index);
    }
    return {};
}

Flood::Flood(QTcpSocket& terminal, FloodKind kind, qint64 total, QObject* parent)
    : QObject(parent)
    , terminal_(&terminal)
    , kind_(kind)
    , total_(total)
{
    pause_.setSingleShot(true);
    pause_.setInterval(1);
    connect(&pause_, &QTimer::timeout, this, &Flood::next);
    connect(&terminal, &QTcpSocket::bytesWritten, this, &Flood::next);
    connect(&terminal, &QTcpSocket::disconnected, this, [this] {
        done_ = true;
        Q_EMIT finished();
    });
    QTimer::singleShot(0, this, &Flood::next);
}

void Flood::next()
{
    if (done_ || !terminal_)
        return;
    if (written_ >= total_) {
        if (terminal_->bytesToWrite() == 0) {
            done_ = true;
            Q_EMIT finished();
        }
        return;
    }
    if (kind_ == FloodKind::EndlessPacket) {
        if (terminal_->bytesToWrite() > Ahead)
            return;
    } else {
        if (terminal_->bytesToWrite() > 0 || pause_.isActive())
            return;
        if (index_ > 0 && !paused_) {
            // The packet before has left: a moment's pause lets it end a chunk of its own.
            paused_ = true;
            pause_.start();
            return;
        }
        paused_ = false;
    }
    const std::string piece = floodPiece(kind_, index_++);
    written_ += terminal_->write(piece.data(), static_cast<qint64>(piece.size()));
}

} // namespace corvane::hostsim
