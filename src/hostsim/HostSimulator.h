#pragma once

#include "hostsim/Answers.h"
#include "hostsim/Flood.h"
#include "hostsim/HostPackets.h"
#include "hostsim/Plant.h"
#include "platform/ProgramTimer.h"

#include <QHostAddress>
#include <QObject>
#include <QPointer>
#include <QTcpSocket>
#include <QTimer>

#include <memory>

#include <deque>
#include <functional>
#include <string>

class QTcpServer;

namespace corvane::hostsim {

// A DNC host on a TCP port: answers the terminal's version, status, machine-type, parameter,
// update and purge requests from its Plant. One terminal at a time: while one is connected the
// host stops listening, so another cannot get a connection; a terminal that sends nothing for
// IdleDropMinutes, or reads nothing while MaxUnsent bytes wait for it, is dropped so that the
// next can connect.
class HostSimulator : public QObject {
    Q_OBJECT

public:
    static constexpr int IdleDropMinutes = 30;
    static constexpr qint64 MaxUnsent = 1 << 20; // about ninety full status replies
    // Packets sent back to back leave this far apart (the timer "tmrChunkGap"), so that each
    // arrives as a chunk of its own even at a terminal that is busy for a moment. Answers to
    // requests do not wait for it.
    static constexpr int GapBetweenChunksMs = 25;

    // The clock runs the gap between chunks, the dribble, the pushed status and the idle drop;
    // without one, the real clock.
    explicit HostSimulator(Plant plant = Plant::demo(), TimerSource* clock = nullptr, QObject* parent = nullptr);
    ~HostSimulator() override;

    // Port 0 picks a free one; port() tells which.
    bool listen(const QHostAddress& address = QHostAddress::LocalHost, quint16 port = 0);
    quint16 port() const { return port_; }
    QString errorString() const { return error_; }
    bool hasTerminal() const { return terminal_ != nullptr; }

    Faults faults;
    // Its machine-type list (type 150) goes out unasked once a connection, after the version
    // reply, as the terminal's editor never asks for it.
    bool announceMachineTypes = true;
    Plant& plant() { return plant_; }
    int updatesCompleted() const { return updatesCompleted_; }
    // Answers given to requests (a request left unanswered does not count).
    int answers() const { return answers_; }
    // Chunks written, and how many of them waited out the gap between packets.
    int chunksWritten() const { return chunksWritten_; }
    int chunksHeldBack() const { return chunksHeldBack_; }
    // Nothing waits to go out, and the last chunk left a gap ago.
    bool allSent() const { return chunks_.empty() && dribbling_.empty() && !gapTimer_->isActive(); }

    // Unsolicited status packets every `ms` while a terminal is connected (0 stops them).
    void setPushStatusInterval(int ms);
    // A terminal silent this long is dropped (0: never).
    void setIdleDropMinutes(int minutes);
    // One line for every packet received and sent, control characters spelt out.
    void setLog(std::function<void(const QString&)> log) { log_ = std::move(log); }

    // The cable pulled: the connection ends at once, whatever waits to go out.
    void pullCable();
    // In-process faults: send these bytes now as one packet of their own.
    void sendRaw(const std::string& bytes);
    void sendNoPacketText() { sendRaw(noPacketText()); }
    void sendPaddedPacket(std::size_t size) { sendRaw(paddedPacket(size)); }
    // Floods the terminal with `total` bytes of this kind, outside the queue of packets and
    // without its bound; false without a terminal. flooded() says when it has all left.
    bool flood(FloodKind kind, qint64 total);
    bool flooded() const { return flood_ && flood_->done(); }
    // Ends the sending side (a half close) once nothing waits to go out, a flood included: the
    // terminal reads that end only after the last byte, and then closes its own side, which shows
    // here as terminalDisconnected. How a test knows that a terminal in a process of its own has
    // read all it was sent.
    void endSending();

Q_SIGNALS:
    void terminalConnected();
    void terminalDisconnected();
    void packetReceived(const QByteArray& packet);

private:
    void acceptTerminal();
    void dropTerminal();
    void readRequests();
    void reply(std::string packet);
    void enqueue(std::string packet, bool isReply);
    void pump();
    void writeChunk();
    void dribble();
    void endSendingOnceSent();
    void log(const char* direction, std::string_view bytes);
    void note(const QString& line);

    Plant plant_;
    QTcpServer* server_;
    QPointer<QTcpSocket> terminal_;
    QHostAddress address_;
    quint16 port_ = 0;
    QString error_;
    RequestSplitter splitter_;
    struct Chunk {
        std::string bytes;
        bool reply = false; // part of an answer to a request
        bool first = false; // of its packet
        bool last = false;
    };
    std::deque<Chunk> chunks_;
    qint64 queued_ = 0; // bytes in chunks_
    std::string dribbling_; // the rest of a chunk going out a byte at a time
    bool holding_ = false; // the next chunk waits out the gap
    bool lastWasReply_ = false; // the last packet out answered a request
    bool askedSinceLastChunk_ = false;
    bool endSending_ = false;
    std::unique_ptr<TimerSource> ownClock_;
    std::unique_ptr<ProgramTimer> gapTimer_; // runs for the gap after each chunk
    std::unique_ptr<ProgramTimer> dribbleTimer_;
    std::unique_ptr<ProgramTimer> pushTimer_;
    std::unique_ptr<ProgramTimer> idleTimer_;
    int packetsSent_ = 0;
    int updatesCompleted_ = 0;
    int answers_ = 0;
    int chunksWritten_ = 0;
    int chunksHeldBack_ = 0;
    Conversation conversation_;
    bool typesAnnounced_ = false;
    std::function<void(const QString&)> log_;
    std::unique_ptr<Flood> flood_;
};

} // namespace corvane::hostsim
