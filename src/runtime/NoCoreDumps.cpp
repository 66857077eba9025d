#include "runtime/NoCoreDumps.h"

#if defined(__linux__)
#include <sys/prctl.h>
#include <sys/resource.h>
#elif !defined(_WIN32)
#include <sys/resource.h>
#endif

namespace corvane {

bool keepSecretsOutOfCoreDumps()
{
#if defined(_WIN32)
    // Nothing to switch off: Windows has no core files, and what Windows Error Reporting keeps
    // of a crashed program is set for the machine, not by the program. Nor is attaching kept
    // from the user's other processes there: false says that nothing took.
    return false;
#else
    const rlimit none{0, 0};
    bool done = ::setrlimit(RLIMIT_CORE, &none) == 0;
#if defined(__linux__)
    done = ::prctl(PR_SET_DUMPABLE, 0, 0, 0, 0) == 0 && done;
#endif
    return done;
#endif
}

} // namespace corvane
