#pragma once

#include "commparms/MachineTypes.h"
#include "commparms/PortParms.h"

#include <cstdint>
#include <vector>

namespace corvane {

// A host running in single-port mode drives one DNC COM port only; the editor then shows it and
// keeps the COM port field locked.
struct SinglePortMode {
    bool on = false;
    std::int16_t commPort = 0;
};

// What the parameter editor asks of the host session: the records it edits, the exchanges
// that fetch and save them, and what the session knows of the host.
class ParmsLink {
public:
    virtual ~ParmsLink() = default;

    virtual PortParmsTables& parmsTables() = 0;
    virtual const std::vector<MachineTypeRecord>& machineTypes() const = 0;
    virtual SinglePortMode singlePortMode() const = 0;
    // The grid row the editor opens with.
    virtual std::int16_t selectedPortIndex() const = 0;
    // Editor activity counts as a command for the idle log-off.
    virtual void resetIdleCount() = 0;
    // The notice about moving to another port is shown once per run of the program.
    virtual bool portSpinNoticeShown() const = 0;
    virtual void setPortSpinNoticeShown() = 0;

    // The six sections of a port (type 200), each awaited; false when one did not come in time
    // (the user has been told). Nothing is asked while the socket is not connected.
    virtual bool FetchCommParms(std::int16_t port) = 0;
    // The machine-type list (type 250), awaited; false when it did not come in time.
    virtual bool FetchMachineTypes(std::int16_t displayRow) = 0;
    // The six sections of a port sent back (type 100), each acknowledged in time, then the
    // trailer (type 301); false when an acknowledgement did not come (the user has been told,
    // nothing more was sent). The trailer goes out untested: on a closed socket its failure is
    // raised to the caller.
    virtual bool UpdateCommParms(std::int16_t port) = 0;
    // The port states asked for again and awaited (while the editor shows "Waiting for Update
    // Packet ..."); silent when nothing comes.
    virtual void RefreshPortStates() = 0;
};

} // namespace corvane
