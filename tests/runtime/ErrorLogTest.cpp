#include "runtime/ErrorLog.h"
#include "support/ScratchProgramFolder.h"

#include <gtest/gtest.h>

#include <stdexcept>

#ifndef _WIN32
#include <sys/stat.h>
#endif

namespace corvane {
namespace {

TEST(ErrorLog, EachTrappedErrorAppendsOneLine)
{
    test::ScratchProgramFolder folder;
    folder.write("error.log", "earlier line\r\n");

    EXPECT_FALSE(runTrapped(folder.logs(), location::PacketDispatch, [] { raise(err::SubscriptOutOfRange); }));
    EXPECT_FALSE(runTrapped(folder.logs(), 7, [] { throw std::out_of_range("vector"); }));
    EXPECT_FALSE(runTrapped(folder.logs(), location::SharedModule, [] { throw std::logic_error("unexpected"); }));
    EXPECT_TRUE(runTrapped(folder.logs(), location::PacketDispatch, [] {}));

    const std::string when = test::ScratchProgramFolder::momentText();
    const std::vector<std::string> expected = {
        "earlier line",
        "Error Location 155 Err = 9 " + when,
        "Error Location 007 Err = 9 " + when,
        "Error Location 143 Err = 51 " + when,
    };
    EXPECT_EQ(folder.lines("error.log"), expected);
}

// An error a host provokes with every packet is written once and then counted, so that it cannot
// fill the disk; a full log keeps one older generation.
TEST(ErrorLog, RepeatsAreCountedAndAFullLogRotates)
{
    test::ScratchProgramFolder folder;
    for (int i = 0; i < 2 * ErrorLogRepeatsCounted + 5; ++i)
        Log_Run_Time_Error(folder.logs(), location::PacketDispatch, err::SubscriptOutOfRange);
    Log_Run_Time_Error(folder.logs(), location::SharedModule, err::Overflow);
    const std::string when = test::ScratchProgramFolder::momentText();
    const std::string repeated = "Error Location 155 Err = 9 repeated ";
    EXPECT_EQ(folder.lines("error.log"),
        (std::vector<std::string>{"Error Location 155 Err = 9 " + when, repeated + "1000 more times " + when,
            repeated + "1000 more times " + when, repeated + "4 more times " + when,
            "Error Location 143 Err = 6 " + when}));

    // A log that somebody else wrote to, or took away, since starts afresh.
    std::filesystem::remove(folder.file("error.log"));
    Log_Run_Time_Error(folder.logs(), location::SharedModule, err::Overflow);
    EXPECT_EQ(folder.lines("error.log").size(), 1u);

    folder.write("error.log", std::string(ErrorLogRotateAbove + 1, 'x'));
    Log_Run_Time_Error(folder.logs(), location::PacketDispatch, err::Overflow);
    EXPECT_EQ(folder.lines("error.log"), std::vector<std::string>{"Error Location 155 Err = 6 " + when});
    EXPECT_EQ(folder.read("error-Previous.log").size(), static_cast<std::size_t>(ErrorLogRotateAbove + 1));
}

TEST(ErrorLog, AnUnwritableLogIsPassedOverSilently)
{
    test::ScratchProgramFolder folder;
    std::filesystem::create_directory(folder.file("error.log")); // a folder where the file should be
    EXPECT_NO_THROW(Log_Run_Time_Error(folder.logs(), location::PacketDispatch, err::Overflow));
    EXPECT_EQ(appendLogLine(folder.file("error.log").string(), "x"), err::PathFileAccessError);
    EXPECT_EQ(appendLogLine(folder.file("missing/error.log").string(), "x"), err::PathNotFound);
}

// A log made in the machine's shared log folder (set-group-ID, the group's) is the group's to
// append to as well, whatever the maker's umask; elsewhere it is as the umask leaves it.
TEST(ErrorLog, ALogMadeInASharedFolderIsTheGroups)
{
#ifdef _WIN32
    GTEST_SKIP() << "no set-group-ID folders on Windows";
#else
    test::ScratchProgramFolder folder;
    std::filesystem::create_directories(folder.file("shared"));
    ::chmod(folder.file("shared").c_str(), 02770);
    const mode_t before = ::umask(022);
    EXPECT_EQ(appendLogLine(folder.file("shared/parameter-changes.jsonl").string(), "x"), 0);
    EXPECT_EQ(appendLogLine(folder.file("own.log").string(), "x"), 0);
    ::umask(before);
    struct stat shared {}, own {};
    ASSERT_EQ(::stat(folder.file("shared/parameter-changes.jsonl").c_str(), &shared), 0);
    ASSERT_EQ(::stat(folder.file("own.log").c_str(), &own), 0);
    EXPECT_EQ(shared.st_mode & 0777, 0664u);
    EXPECT_EQ(own.st_mode & 0777, 0644u);
#endif
}

TEST(ErrorLog, ALinkWhereTheLogShouldBeIsNotFollowed)
{
    if (!test::symbolicLinksCanBeMade())
        GTEST_SKIP() << "this system lets the test make no symbolic link";
    test::ScratchProgramFolder folder;
    folder.write("elsewhere", "kept");
    std::filesystem::create_symlink(folder.file("elsewhere"), folder.file("linked.log"));
    EXPECT_EQ(appendLogLine(folder.file("linked.log").string(), "x"), err::PathFileAccessError);
    EXPECT_EQ(folder.read("elsewhere"), "kept");
}

} // namespace
} // namespace corvane
