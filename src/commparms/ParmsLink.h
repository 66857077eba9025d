#pragma once

#include "commparms/MachineTypes.h"
#include "commparms/PortParms.h"
#include "commparms/RecordFields.h"

#include <cstdint>
#include <vector>

namespace corvane {

class Logs;

// A host running in single-port mode drives one DNC COM port only; the editor then shows it and
// keeps the COM port field locked.
struct SinglePortMode {
    bool on = false;
    std::int16_t commPort = 0;
};

// How far the last exchange of a port's parameters got. Only a port whose six sections all
// arrived in one fetch is shown, changed or sent; anything else waits for a fresh fetch.
struct FetchState {
    bool complete = false;
    // The last update got more acknowledgements than it sent sections: what the host holds is
    // not known.
    bool uncertain = false;
    std::vector<std::int16_t> missing; // the sections (1-6) the last fetch did not receive
};

// What the parameter editor asks of the host session: the records it edits, the exchanges
// that fetch and save them, and what the session knows of the host.
class ParmsLink {
public:
    virtual ~ParmsLink() = default;

    virtual PortParmsTables& parmsTables() = 0;
    // Where an update's trapped error is logged.
    virtual Logs& logs() = 0;
    virtual const std::vector<MachineTypeRecord>& machineTypes() const = 0;
    virtual SinglePortMode singlePortMode() const = 0;
    // The grid row the editor opens with.
    virtual std::int16_t selectedPortIndex() const = 0;
    // Editor activity counts as a command for the idle log-off.
    virtual void resetIdleCount() = 0;
    // The notice about moving to another port is shown once per run of the program.
    virtual bool portSpinNoticeShown() const = 0;
    virtual void setPortSpinNoticeShown() = 0;

    // The six sections of a port (type 200), each awaited until that very section of that port
    // arrives; false when one did not come in time (the user has been told) or could not be
    // asked for. Only a complete fetch is kept: after any other the port's records stand as
    // they were before it, and fetchState() says what is missing.
    virtual bool FetchCommParms(std::int16_t port) = 0;
    virtual FetchState fetchState(std::int16_t port) const = 0;
    // The values that the rules of showing a record changed in the port's last complete fetch:
    // the host's value (before) and the one the records now hold (after).
    virtual std::vector<ChangedField> showCorrections(std::int16_t port) const = 0;
    // The machine-type list (type 250), awaited; false when it did not come in time.
    virtual bool FetchMachineTypes(std::int16_t displayRow) = 0;
    // The six sections of a port sent back (type 100), each acknowledged in time, then the
    // trailer (type 301); false when an acknowledgement did not come or more came than sections
    // were sent (the user has been told, nothing more was sent), and when the port has no
    // complete fetch (nothing is sent at all). The trailer goes out untested: on a closed socket its failure is
    // raised to the caller.
    virtual bool UpdateCommParms(std::int16_t port) = 0;
    // The port states asked for again and awaited (while the editor shows "Waiting for Update
    // Packet ..."); silent when nothing comes.
    virtual void RefreshPortStates() = 0;
};

} // namespace corvane
