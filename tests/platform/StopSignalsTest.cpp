#include "platform/StopSignals.h"

#include "support/Wait.h"

#include <gtest/gtest.h>

#include <csignal>

namespace corvane {
namespace {

#ifndef _WIN32
// A stopping signal is heard in the event loop, not in the handler, so whatever is under way
// can finish its books; the first one is the one the program exits with, and once the watch
// ends the signals have their usual actions again.
TEST(StopSignals, AreHeardInTheEventLoopAndTheFirstOneCounts)
{
    struct sigaction before { };
    ::sigaction(SIGHUP, nullptr, &before);
    {
        int heard = 0;
        StopSignals stops([&heard] { ++heard; });
        EXPECT_EQ(stops.caught(), 0);
        std::raise(SIGTERM);
        EXPECT_EQ(heard, 0) << "not in the handler";
        EXPECT_EQ(stops.caught(), SIGTERM);
        std::raise(SIGHUP);
        EXPECT_TRUE(test::waitFor([&heard] { return heard > 0; }));
        EXPECT_EQ(stops.caught(), SIGTERM);
    }
    struct sigaction after { };
    ::sigaction(SIGHUP, nullptr, &after);
    EXPECT_EQ(after.sa_handler, before.sa_handler);
}
#endif

} // namespace
} // namespace corvane
