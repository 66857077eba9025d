#include "platform/Registry.h"
#include "session/LastUser.h"

#include <QSettings>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cstdlib>
#include <string_view>

#include <sys/stat.h>

namespace corvane {
namespace {

class IniRegistry : public ::testing::Test {
protected:
    QTemporaryDir dir;
    void SetUp() override { qputenv("CORVANE_REGISTRY_DIR", dir.path().toLocal8Bit()); }
    void TearDown() override { qunsetenv("CORVANE_REGISTRY_DIR"); }
};

// Any key of ours will do; the registry knows nothing of what the program keeps in it.
const QString ConfigKey = QStringLiteral("Software\\Brellwick\\RegistryTest");

TEST_F(IniRegistry, ValuesLandInTheirHiveAndReadBackAsText)
{
    auto registry = openSystemRegistry();
    EXPECT_FALSE(registry->keyExists(Hive::Machine, ConfigKey));
    EXPECT_EQ(registry->readText(Hive::Machine, ConfigKey, QStringLiteral("HostIP1")), QString());
    EXPECT_TRUE(registry->createKey(Hive::Machine, ConfigKey));

    EXPECT_TRUE(registry->writeText(Hive::Machine, ConfigKey, QStringLiteral("HostIP1"), QStringLiteral("10.0.0.5")));
    EXPECT_TRUE(registry->writeNumber(Hive::Machine, ConfigKey, QStringLiteral("SocketPortNumber1"), 49140));
    EXPECT_TRUE(registry->writeNumber(Hive::User, ConfigKey, QStringLiteral("Last Host IP Number"), 3));

    auto again = openSystemRegistry();
    EXPECT_TRUE(again->keyExists(Hive::Machine, ConfigKey));
    EXPECT_EQ(again->readText(Hive::Machine, ConfigKey, QStringLiteral("HostIP1")), QStringLiteral("10.0.0.5"));
    EXPECT_EQ(again->readText(Hive::Machine, ConfigKey, QStringLiteral("SocketPortNumber1")), QStringLiteral("49140"));
    EXPECT_EQ(again->readText(Hive::User, ConfigKey, QStringLiteral("Last Host IP Number")), QStringLiteral("3"));
    EXPECT_EQ(again->readText(Hive::Machine, ConfigKey, QStringLiteral("Last Host IP Number")), QString());
    EXPECT_TRUE(QFile::exists(dir.filePath(QStringLiteral("machine.ini"))));
    EXPECT_TRUE(QFile::exists(dir.filePath(QStringLiteral("user.ini"))));
}

// The hosts an administrator wrote for every user of the computer are read where the user's own
// settings hold none, and a user's write never reaches them.
TEST_F(IniRegistry, TheMachineWideHostsStandBehindTheUsersOwn)
{
    QTemporaryDir system;
    QSettings wide(system.filePath(QStringLiteral("machine.ini")), QSettings::IniFormat);
    wide.setValue(QStringLiteral("Software/Brellwick/RegistryTest/HostIP1"), QStringLiteral("10.0.0.1"));
    wide.setValue(QStringLiteral("Software/Brellwick/RegistryTest/HostIP2"), QStringLiteral("10.0.0.2"));
    wide.sync();
    auto registry = openSystemRegistry(dir.path(), system.path());
    EXPECT_TRUE(registry->keyExists(Hive::Machine, ConfigKey));
    EXPECT_FALSE(registry->keyExists(Hive::User, ConfigKey)) << "the user's hive is the user's alone";
    EXPECT_TRUE(registry->writeText(Hive::Machine, ConfigKey, QStringLiteral("HostIP2"), QStringLiteral("10.9.9.9")));
    EXPECT_EQ(registry->readText(Hive::Machine, ConfigKey, QStringLiteral("HostIP1")), QStringLiteral("10.0.0.1"));
    EXPECT_EQ(registry->readText(Hive::Machine, ConfigKey, QStringLiteral("HostIP2")), QStringLiteral("10.9.9.9"));
    wide.sync();
    EXPECT_EQ(wide.value(QStringLiteral("Software/Brellwick/RegistryTest/HostIP2")).toString(), QStringLiteral("10.0.0.2"));
    EXPECT_EQ(openSystemRegistry(dir.path())->readText(Hive::Machine, ConfigKey, QStringLiteral("HostIP1")), QString())
        << "a chosen folder stands alone";
}

TEST_F(IniRegistry, LastUserIsKeptPerUser)
{
    auto registry = openSystemRegistry();
    EXPECT_EQ(Get_Last_User(*registry), "");
    Save_Last_User(*registry, "M\xDCLLER");
    EXPECT_EQ(Get_Last_User(*openSystemRegistry()), "M\xDCLLER");
}

TEST_F(IniRegistry, AFolderThatCannotBeWrittenRefusesTheKey)
{
    qputenv("CORVANE_REGISTRY_DIR", dir.filePath(QStringLiteral("machine.ini/below")).toLocal8Bit());
    QFile(dir.filePath(QStringLiteral("machine.ini"))).open(QIODevice::WriteOnly); // a file where a folder must be
    auto registry = openSystemRegistry();
    EXPECT_FALSE(registry->createKey(Hive::Machine, QStringLiteral("Software\\Brellwick\\AccessTest")));
    EXPECT_FALSE(registry->writeText(Hive::Machine, ConfigKey, QStringLiteral("HostName1"), QStringLiteral("x")));
}

// A settings file that is no regular file (a pipe would hold the program up, a link may lead
// anywhere) or far larger than any the program writes is not read: its hive reads empty and takes
// nothing.
TEST_F(IniRegistry, ASettingsFileThatIsNoneIsNotRead)
{
    const QString machine = dir.filePath(QStringLiteral("machine.ini"));
    const QString elsewhere = dir.filePath(QStringLiteral("elsewhere.ini"));
    for (const char* kind : {"a pipe", "a link", "a large file"}) {
        QFile::remove(machine);
        if (kind == std::string_view("a pipe")) {
            ASSERT_EQ(::mkfifo(machine.toLocal8Bit().constData(), 0600), 0);
        } else if (kind == std::string_view("a link")) {
            QFile target(elsewhere);
            ASSERT_TRUE(target.open(QIODevice::WriteOnly));
            target.write("[Software]\nHostIP1=10.0.0.9\n");
            target.close();
            ASSERT_TRUE(QFile::link(elsewhere, machine));
        } else {
            QFile big(machine);
            ASSERT_TRUE(big.open(QIODevice::WriteOnly));
            big.write("[Software]\nHostIP1=10.0.0.9\n");
            big.write(QByteArray(2 << 20, ';'));
        }
        auto registry = openSystemRegistry();
        EXPECT_EQ(registry->readText(Hive::Machine, ConfigKey, QStringLiteral("HostIP1")), QString()) << kind;
        EXPECT_FALSE(registry->writeText(Hive::Machine, ConfigKey, QStringLiteral("HostIP1"), QStringLiteral("x")))
            << kind;
    }
    QFile target(elsewhere);
    ASSERT_TRUE(target.open(QIODevice::ReadOnly));
    EXPECT_EQ(target.readAll(), QByteArray("[Software]\nHostIP1=10.0.0.9\n")) << "nothing written through the link";
}

} // namespace
} // namespace corvane
