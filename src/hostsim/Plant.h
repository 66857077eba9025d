#pragma once

#include "commparms/PortParms.h"
#include "protocol/Replies.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace corvane::hostsim {

// What the simulated host knows about its shop floor: one status row and one parameter set per
// port (indexed by the terminal's row number, from 0), and the machine types it offers.
class Plant {
public:
    // Status texts of ports that have no serial line.
    static constexpr const char* FtpModes[] = {"FTP", "Timer Folder", "DC + FTP", "DC + TMR FLDR"};

    // A believable plant: a few dozen configured machines among 128 ports, some sending, some
    // idle, one in each FTP-type mode, parameters that differ from port to port.
    static Plant demo();

    std::vector<PortStatusRecord> status;
    PortParmsTables parms;
    std::vector<MachineTypeRecord> machineTypes;

    // Sending ports move on between two status replies; a finished program leaves the port idle.
    void advance();
    // Purge and reset: the port drops what it was doing. Rows outside the plant are ignored.
    void purge(int row);
    // An update section from the terminal, stored whole or not at all: nothing is stored when a
    // value does not convert, the port is not one of the plant's, or a value is one no port can
    // hold. The reason, when there is one, goes to `refused`.
    bool storeUpdate(std::string_view packet, std::string& refused);
    bool isSending(int row) const;
};

} // namespace corvane::hostsim
