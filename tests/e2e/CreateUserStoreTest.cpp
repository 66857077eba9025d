#include "security/UserStore.h"
#include "support/ScratchProgramFolder.h"
#include "support/Users.h"

#include "support/Program.h"

#include <gtest/gtest.h>

namespace corvane {
namespace {

test::ProgramRun runProgram(const QStringList& arguments, const std::filesystem::path& root)
{
    return test::runProgram(QStringLiteral(CORVANE_REMOTE_EXE), arguments, [&root](QProcessEnvironment& env) {
        env.insert(QStringLiteral("CORVANE_ROOT"), QString::fromStdString(root.string()));
    });
}

TEST(CreateUserStore, CreatesTheReservedUsersOnceAndNeverOverwrites)
{
    test::ScratchProgramFolder folder;
    setenv("CORVANE_ROOT", folder.path().c_str(), 1);
    const auto path = folder.path() / "BRELLWICK" / "BWKXBIDS.DAT";

    const test::ProgramRun first = runProgram({QStringLiteral("--create-user-store")}, folder.path());
    EXPECT_EQ(first.exitCode, 0) << first.err.toStdString();
    EXPECT_TRUE(first.out.contains(QString::fromStdString(path.string())));
    EXPECT_EQ(std::filesystem::file_size(path), 2 * UserRecordLength);

    UserStore store;
    ASSERT_TRUE(store.Load_User_Store());
    ASSERT_EQ(store.count(), 2);
    EXPECT_EQ(store.users[0], test::user("SUPERVISOR", "", {}, 1));
    EXPECT_EQ(store.users[1], test::user("GUEST", ""));

    // A store with a password in it must survive a second run.
    store.users[0].Password = "boss";
    store.Save_User_Record(0);
    const std::string before = folder.read("BRELLWICK/BWKXBIDS.DAT");
    const test::ProgramRun second = runProgram({QStringLiteral("--create-user-store")}, folder.path());
    EXPECT_NE(second.exitCode, 0);
    EXPECT_TRUE(second.err.contains(QStringLiteral("already exists")));
    EXPECT_EQ(folder.read("BRELLWICK/BWKXBIDS.DAT"), before);
}

TEST(CreateUserStore, AFolderThatCannotBeMadeIsReported)
{
    test::ScratchProgramFolder folder;
    folder.write("BRELLWICK", "a file where the folder should be");
    const test::ProgramRun run = runProgram({QStringLiteral("--create-user-store")}, folder.path());
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_TRUE(run.err.contains(QStringLiteral("could not create the user store"))) << run.err.toStdString();
}

} // namespace
} // namespace corvane
