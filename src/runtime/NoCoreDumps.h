#pragma once

namespace corvane {

// The programs hold the user store, and passwords typed or read, in memory: no core dump of
// them is written, and other processes of the same user may not attach to read it (Linux:
// not dumpable; elsewhere, a core size of nothing where the system has such a limit). True
// when it took.
bool keepSecretsOutOfCoreDumps();

} // namespace corvane
