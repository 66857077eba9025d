#include "runtime/WholeFile.h"
#include "support/ScratchProgramFolder.h"

#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <functional>
#include <set>

#ifndef _WIN32
#include <sys/resource.h>
#endif

namespace corvane {
namespace {

namespace fs = std::filesystem;

std::set<std::string> namesIn(const fs::path& folder)
{
    std::set<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder))
        names.insert(entry.path().filename().string());
    return names;
}

// What stands at the target decides: a file is replaced whole with its mode kept, anything else
// is refused and left as it was; either way nothing is left beside it.
struct Case {
    const char* name;
    std::function<void(const test::ScratchProgramFolder&)> arrange;
    bool written;
    const char* says;
};

void expectWrittenOrRefused(const Case& c)
{
    test::ScratchProgramFolder folder;
    if (c.arrange)
        c.arrange(folder);
    const std::set<std::string> before = namesIn(folder.path());
    const auto mode = fs::symlink_status(folder.file("target")).permissions();
    const std::string target = folder.file("target").string();
    const std::string error = writeWholeFile(target, "new");
    EXPECT_EQ(wholeFileRefusal(target).empty(), c.written) << c.name;
    EXPECT_NE(error.find(c.says), std::string::npos) << c.name << ": " << error;
    EXPECT_EQ(error.empty(), c.written) << c.name;
    std::set<std::string> after = before;
    after.insert("target");
    EXPECT_EQ(namesIn(folder.path()), after) << c.name << ": nothing left beside it";
    if (c.written) {
        EXPECT_EQ(folder.read("target"), "new") << c.name;
        if (!before.empty()) {
            EXPECT_EQ(fs::status(folder.file("target")).permissions(), mode) << c.name;
        }
    } else if (fs::exists(folder.file("elsewhere"))) {
        EXPECT_EQ(folder.read("elsewhere"), "old") << c.name << ": never followed";
    }
}

TEST(WholeFile, ReplacesAFileAndRefusesWhatIsNone)
{
    const Case cases[] = {
        {"nothing there", {}, true, ""},
        {"an old file, mode 0640",
            [](const test::ScratchProgramFolder& f) {
                f.write("target", "old");
                fs::permissions(f.file("target"), fs::perms(0640));
            },
            true, ""},
        {"a folder", [](const test::ScratchProgramFolder& f) { fs::create_directory(f.file("target")); }, false,
            "not a regular file"},
    };
    for (const auto& c : cases)
        expectWrittenOrRefused(c);
}

TEST(WholeFile, RefusesALinkAndLeavesWhatItPointsTo)
{
    if (!test::symbolicLinksCanBeMade())
        GTEST_SKIP() << "this system lets the test make no symbolic link";
    const Case cases[] = {
        {"a link to a file",
            [](const test::ScratchProgramFolder& f) {
                f.write("elsewhere", "old");
                fs::create_symlink(f.file("elsewhere"), f.file("target"));
            },
            false, "symbolic link"},
        {"a dangling link",
            [](const test::ScratchProgramFolder& f) { fs::create_symlink(f.file("nowhere"), f.file("target")); }, false,
            "symbolic link"},
    };
    for (const auto& c : cases)
        expectWrittenOrRefused(c);
}

// A write the file system cuts short (here a file-size limit, which root too is held to): the
// old file as it was, and the system's reason.
TEST(WholeFile, AFailedWriteLeavesTheOldFileUntouched)
{
#ifdef _WIN32
    GTEST_SKIP() << "a file-size limit that cuts a write short is POSIX's (setrlimit); Windows has none";
#else
    test::ScratchProgramFolder folder;
    folder.write("target", "old");
    const std::string target = folder.file("target").string();

    rlimit saved{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &saved), 0);
    const auto previous = std::signal(SIGXFSZ, SIG_IGN);
    rlimit small = saved;
    small.rlim_cur = 4;
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
    const std::string error = writeWholeFile(target, "more than four bytes");
    setrlimit(RLIMIT_FSIZE, &saved);
    std::signal(SIGXFSZ, previous);

    EXPECT_EQ(error, "File too large");
    EXPECT_EQ(folder.read("target"), "old");
    EXPECT_EQ(namesIn(folder.path()), std::set<std::string>{"target"});
#endif
}

TEST(WholeFile, AFolderThatIsNotThereIsTheReason)
{
    test::ScratchProgramFolder folder;
    EXPECT_EQ(writeWholeFile(folder.file("missing/target").string(), "x"), "No such file or directory");
    EXPECT_TRUE(fs::is_empty(folder.path()));
}

} // namespace
} // namespace corvane
