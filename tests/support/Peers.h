#pragma once

#include "hostsim/HostSimulator.h"

#include <functional>
#include <vector>

namespace corvane::test {

// The hosts every fetch and update is tried against: a polite one, one that pushes its status
// between the replies (which goes unnoticed), and two whose acknowledgements make an update
// uncertain (the client ends with 1 and sends no trailer).
struct Peer {
    const char* name;
    std::function<void(hostsim::HostSimulator&)> fault;
    int updateStatus;
};
inline const std::vector<Peer>& peers()
{
    static const std::vector<Peer> all = {
        {"polite", {}, 0},
        {"status pushed every 40 ms", [](hostsim::HostSimulator& h) { h.setPushStatusInterval(40); }, 0},
        {"every section acknowledged twice", [](hostsim::HostSimulator& h) { h.faults.duplicateAck = true; }, 1},
        {"acknowledging ahead", [](hostsim::HostSimulator& h) { h.faults.earlyAck = true; }, 1},
    };
    return all;
}

} // namespace corvane::test
