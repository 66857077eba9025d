#pragma once

#include "support/SimulatedPlant.h"

#include <functional>
#include <vector>

namespace corvane::test {

// The hosts every fetch and update is tried against: a polite one, one that pushes its status as
// each request comes in (which goes unnoticed), and two whose acknowledgements make an update
// uncertain (the client ends with 1 and sends no trailer).
struct Peer {
    const char* name;
    std::function<void(SimulatedPlant&)> fault;
    int updateStatus;
};
inline const std::vector<Peer>& peers()
{
    static const std::vector<Peer> all = {
        {"polite", {}, 0},
        {"status pushed as each request comes in",
            [](SimulatedPlant& p) {
                p.host.setPushStatusInterval(40);
                QObject::connect(&p.host, &hostsim::HostSimulator::packetReceived, &p.host,
                    [&p] { p.hostClock.fire("tmrPushStatus"); });
            },
            0},
        {"every section acknowledged twice", [](SimulatedPlant& p) { p.host.faults.duplicateAck = true; }, 1},
        {"acknowledging ahead", [](SimulatedPlant& p) { p.host.faults.earlyAck = true; }, 1},
    };
    return all;
}

} // namespace corvane::test
