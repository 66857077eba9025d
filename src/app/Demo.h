#pragma once

#include "hostsim/HostSimulator.h"
#include "runtime/ProgramSetting.h"

#include <QString>
#include <QTemporaryDir>

#include <memory>

namespace corvane {

// The demo: a simulated host in this process and a throw-away user store, registry and program
// folder, so that nothing of the user's own settings is read or touched. Host 1 is the simulator.
class Demo {
public:
    // False, with the reason, when the demo cannot be set up. Its places are in force from then on,
    // in the place of `places` (which the demo keeps its clock and locale of).
    bool start(const Places& places, QString& error);
    quint16 hostPort() const { return host_ ? host_->port() : 0; }

private:
    QTemporaryDir folder_;
    std::unique_ptr<ProgramSetting> setting_;
    std::unique_ptr<hostsim::HostSimulator> host_;
};

} // namespace corvane
