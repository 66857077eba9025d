#pragma once

#include "hostsim/HostSimulator.h"
#include "runtime/Places.h"

#include <QString>
#include <QTemporaryDir>

#include <memory>

namespace corvane {

// The demo: a simulated host in this process and a throw-away user store, registry and program
// folder, so that nothing of the user's own settings is read or touched. Host 1 is the simulator.
class Demo {
public:
    // False, with the reason, when the demo cannot be set up. Its own folders take the place of
    // the store, the registry and the program folder of `places` (its locale stays).
    bool start(Places& places, QString& error);
    quint16 hostPort() const { return host_ ? host_->port() : 0; }

private:
    QTemporaryDir folder_;
    std::unique_ptr<hostsim::HostSimulator> host_;
};

} // namespace corvane
