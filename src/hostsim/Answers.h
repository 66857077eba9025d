#pragma once

#include "hostsim/Plant.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace corvane::hostsim {

// Ways the host can misbehave, for the demo's curious and for the tests.
struct Faults {
    bool silent = false; // never answer anything
    std::string version = "4.12"; // VersionMajor.VersionMinor of the 170 reply
    std::string minimumRemoteVersion = "1.02"; // what the host asks of the terminal
    int ackSectionsUpTo = 6; // sections above this are not acknowledged
    int replyDelayMs = 0; // wait before every reply
    int splitInto = 1; // chunks per packet
    bool joinWithStatus = false; // every reply shares its chunk with a status packet
    int closeAfterPackets = 0; // close the connection after sending this many (0: never)
    bool noPacketTextOnConnect = false; // greet a terminal with text that is no packet
    std::size_t bigPacketSize = 0; // answer the first status request with a packet this long
    int dribbleMs = 0; // send one byte every this many ms (0: as fast as the line goes)
    bool duplicateAck = false; // every update section acknowledged twice, the second a gap later
    // Acknowledges ahead: an "ACK" before each reply to a fetch section (nothing awaits it), and
    // one more on an update's first section, as if for the second before it came.
    bool earlyAck = false;
};

// What the host remembers of one terminal's connection.
struct Conversation {
    bool bigPacketSent = false;
};

// What the host does with one request of the terminal, the socket aside.
struct Answer {
    std::optional<std::string> reply; // the packet that answers it, if any
    bool versionAnswered = false; // the machine types may follow unasked
    bool updateCompleted = false; // the trailer of an update came in
    std::string refused; // why an update section was not stored
};
Answer answerRequest(Plant& plant, std::string_view packet, const Faults& faults, Conversation& conversation);

} // namespace corvane::hostsim
