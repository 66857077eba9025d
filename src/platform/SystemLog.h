#pragma once

#include "runtime/Logs.h"

namespace corvane {

// The system's log (syslog, identifier "corvane"), for the lines of the record of changes; none
// where the system has none the programs write to (Windows).
SystemLog systemLog();

} // namespace corvane
