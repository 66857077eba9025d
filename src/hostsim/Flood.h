#pragma once

#include <QObject>
#include <QPointer>
#include <QTcpSocket>
#include <QTimer>

#include <optional>
#include <string>
#include <string_view>

namespace corvane::hostsim {

// Traffic far beyond anything a real host sends, for checking that the terminal stays bounded.
enum class FloodKind {
    EndlessPacket, // one packet that starts and never ends
    MachineTypeLists, // machine-type lists of a million empty records each
    LongStatusReplies, // 128-port status replies with long names (over 32,767 characters), and
                       // now and then a text that is no packet
};
std::optional<FloodKind> floodKindNamed(std::string_view name); // "endless", "machine-types", "status"

// Piece `index` of a flood; for the kinds made of packets, one whole packet.
std::string floodPiece(FloodKind kind, std::size_t index);

// Writes a flood of `total` bytes to the terminal as fast as it takes them in: never more than
// a little ahead of what it has read, and for packets one at a time, each written when the one
// before has left, so that each reaches the terminal as a chunk of its own.
class Flood : public QObject {
    Q_OBJECT

public:
    Flood(QTcpSocket& terminal, FloodKind kind, qint64 total, QObject* parent = nullptr);
    qint64 written() const { return written_; }
    bool done() const { return done_; }

Q_SIGNALS:
    void finished();

private:
    void next();

    QPointer<QTcpSocket> terminal_;
    FloodKind kind_;
    qint64 total_;
    qint64 written_ = 0;
    std::size_t index_ = 0;
    bool done_ = false;
    bool paused_ = false; // the pause after the last packet is over
    QTimer pause_;
};

} // namespace corvane::hostsim
