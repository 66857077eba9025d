#include "runtime/ErrorLog.h"
#include "support/ScratchProgramFolder.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace corvane {
namespace {

TEST(ErrorLog, EachTrappedErrorAppendsOneLine)
{
    test::ScratchProgramFolder folder;
    folder.write("error.log", "earlier line\r\n");

    EXPECT_FALSE(runTrapped(location::PacketDispatch, [] { raise(err::SubscriptOutOfRange); }));
    EXPECT_FALSE(runTrapped(7, [] { throw std::out_of_range("vector"); }));
    EXPECT_FALSE(runTrapped(location::SharedModule, [] { throw std::logic_error("unexpected"); }));
    EXPECT_TRUE(runTrapped(location::PacketDispatch, [] {}));

    const std::string when = test::ScratchProgramFolder::momentText();
    const std::vector<std::string> expected = {
        "earlier line",
        "Error Location 155 Err = 9 " + when,
        "Error Location 007 Err = 9 " + when,
        "Error Location 143 Err = 51 " + when,
    };
    EXPECT_EQ(folder.lines("error.log"), expected);
}

TEST(ErrorLog, AnUnwritableLogIsPassedOverSilently)
{
    test::ScratchProgramFolder folder;
    std::filesystem::create_directory(folder.file("error.log")); // a folder where the file should be
    EXPECT_NO_THROW(Log_Run_Time_Error(location::PacketDispatch, err::Overflow));
    EXPECT_EQ(appendLogLine(folder.file("error.log").string(), "x"), err::PathFileAccessError);
    EXPECT_EQ(appendLogLine(folder.file("missing/error.log").string(), "x"), err::PathNotFound);
    // A link where the log should be is not followed.
    folder.write("elsewhere", "kept");
    std::filesystem::create_symlink(folder.file("elsewhere"), folder.file("linked.log"));
    EXPECT_EQ(appendLogLine(folder.file("linked.log").string(), "x"), err::PathFileAccessError);
    EXPECT_EQ(folder.read("elsewhere"), "kept");
}

} // namespace
} // namespace corvane
