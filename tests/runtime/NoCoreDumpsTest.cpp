#include "runtime/NoCoreDumps.h"

#include <gtest/gtest.h>

#if defined(__linux__)
#include <sys/prctl.h>
#include <sys/resource.h>
#endif

namespace corvane {
namespace {

#if defined(__linux__)
// Once the programs hold the store, no core dump of them is written and no other process of the
// same user may attach to read their memory.
TEST(NoCoreDumps, TheProcessWritesNoCoreAndCannotBeReadByItsPeers)
{
    EXPECT_TRUE(keepSecretsOutOfCoreDumps());
    EXPECT_EQ(::prctl(PR_GET_DUMPABLE, 0, 0, 0, 0), 0);
    rlimit core{};
    ASSERT_EQ(::getrlimit(RLIMIT_CORE, &core), 0);
    EXPECT_EQ(core.rlim_cur, 0u);
}
#endif

} // namespace
} // namespace corvane
