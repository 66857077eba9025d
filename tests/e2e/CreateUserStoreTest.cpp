#include "security/UserStore.h"
#include "support/Program.h"
#include "support/ScratchProgramFolder.h"

#include <gtest/gtest.h>

namespace corvane {
namespace {

test::ProgramRun createUserStore(const test::ScratchProgramFolder& folder)
{
    return test::runProgram(QStringLiteral(CORVANE_REMOTE_EXE), {QStringLiteral("--create-user-store")},
        [&folder](QProcessEnvironment& env) {
            env.insert(QStringLiteral("CORVANE_ROOT"), QString::fromStdString(folder.path().string()));
        });
}

// The reserved users themselves are what every command-line test logs in with.
TEST(CreateUserStore, WritesTheFirstStoreWhereTheProgramLooksForIt)
{
    test::ScratchProgramFolder folder;
    const test::ProgramRun run = createUserStore(folder);
    EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
    EXPECT_EQ(std::filesystem::file_size(folder.file("BRELLWICK/BWKXBIDS.DAT")), 2 * UserRecordLength);
}

TEST(CreateUserStore, AFolderThatCannotBeMadeIsReported)
{
    test::ScratchProgramFolder folder;
    folder.write("BRELLWICK", "a file where the folder should be");
    const test::ProgramRun run = createUserStore(folder);
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_TRUE(run.err.contains(QStringLiteral("could not create the user store"))) << run.err.toStdString();
}

} // namespace
} // namespace corvane
