// The user store's permissions as an ordinary user meets them: the client run as an account
// that is not root, in or out of the store's group. Root passes every permission check, so the
// test drops to such an account (setpriv) and is skipped where it cannot.
#include "security/FirstStore.h"
#include "security/UserStore.h"
#include "support/Program.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <filesystem>

#include <sys/stat.h>
#include <unistd.h>

namespace corvane {
namespace {

constexpr gid_t StoreGroup = 4242; // no group of the system's: only the test hands it out
constexpr uid_t Operator = 65534; // nobody

class StorePermissions : public ::testing::Test {
public:
    QTemporaryDir dir;
    std::filesystem::path root, folder, store;

    void SetUp() override
    {
        if (::geteuid() != 0 || !std::filesystem::exists("/usr/bin/setpriv"))
            GTEST_SKIP() << "needs root to hand the store to a group and setpriv to drop to an operator";
        root = dir.path().toStdString();
        std::filesystem::permissions(root, std::filesystem::perms(0755));
        folder = root / "BRELLWICK";
        store = folder / "BWKXBIDS.DAT";
        ASSERT_EQ(createFirstUserStore(store.string()), FirstStore::Created);
        for (const char* writable : {"logs", "settings"}) {
            std::filesystem::create_directory(root / writable);
            ASSERT_EQ(::chown((root / writable).c_str(), Operator, StoreGroup), 0);
        }
        hand(folder, 02770);
        hand(store, 0660);
    }
    static void hand(const std::filesystem::path& path, mode_t mode)
    {
        ASSERT_EQ(::chown(path.c_str(), 0, StoreGroup), 0);
        ASSERT_EQ(::chmod(path.c_str(), mode), 0);
    }
    // The client as the operator, in the store's group or not.
    test::ProgramRun asOperator(bool inGroup, const QStringList& arguments)
    {
        const QStringList drop = {QStringLiteral("--reuid=%1").arg(Operator),
            QStringLiteral("--regid=%1").arg(inGroup ? StoreGroup : Operator), QStringLiteral("--clear-groups"),
            QStringLiteral(CORVANE_REMOTE_CLI_EXE)};
        return test::runProgram(QStringLiteral("/usr/bin/setpriv"), drop + arguments, [this](QProcessEnvironment& env) {
            env.insert(QStringLiteral("CORVANE_ROOT"), QString::fromStdString(root.string()));
            env.insert(QStringLiteral("CORVANE_PROGRAM_DIR"), QString::fromStdString((root / "logs").string()));
            env.insert(QStringLiteral("CORVANE_REGISTRY_DIR"), QString::fromStdString((root / "settings").string()));
        });
    }
    struct stat status() const
    {
        struct stat st { };
        EXPECT_EQ(::stat(store.c_str(), &st), 0);
        return st;
    }
};

// Outside the group the store cannot be read, so nobody logs in; inside it, the supervisor's
// changes are written: where the folder takes a new file but the new file could not keep root
// as its owner, and where the folder takes none, the store is rewritten in place, its owner,
// group and mode as they were.
TEST_F(StorePermissions, TheGroupDecidesWhoMayReadAndWriteTheStore)
{
    const test::ProgramRun outsider = asOperator(false, {QStringLiteral("users"), QStringLiteral("list")});
    EXPECT_EQ(outsider.exitCode, 5) << outsider.err.toStdString();
    EXPECT_TRUE(outsider.err.contains(QStringLiteral("Password Security has been compromised.")));

    const struct stat before = status();
    struct Case {
        const char* name;
        mode_t folderMode;
        const char* user;
    } const cases[] = {{"a folder the group may write", 02770, "SMITH"}, {"a folder it may only read", 02750, "JONES"}};
    for (const Case& c : cases) {
        hand(folder, c.folderMode);
        const test::ProgramRun added = asOperator(true,
            {QStringLiteral("users"), QStringLiteral("add"), QLatin1String(c.user), QStringLiteral("--password"),
                QStringLiteral("pw")});
        EXPECT_EQ(added.exitCode, 0) << c.name << ": " << added.err.toStdString();
        const struct stat after = status();
        EXPECT_EQ(after.st_ino, before.st_ino) << c.name << ": rewritten in place";
        EXPECT_EQ(after.st_uid, 0u) << c.name;
        EXPECT_EQ(after.st_gid, StoreGroup) << c.name;
        EXPECT_EQ(after.st_mode & 07777, 0660u) << c.name;
        UserStore reloaded((root / "BRELLWICK" / "BWKXBIDS.DAT").string());
        const bool loaded = reloaded.Load_User_Store();
        ASSERT_TRUE(loaded) << c.name;
        std::int16_t index = 0;
        EXPECT_TRUE(reloaded.Find_User(c.user, index)) << c.name;
    }
    std::error_code ec;
    for (const auto& entry : std::filesystem::directory_iterator(folder, ec))
        EXPECT_EQ(entry.path(), store) << "nothing left beside the store";
}

} // namespace
} // namespace corvane
