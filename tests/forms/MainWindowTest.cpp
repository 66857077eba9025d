#include "hostsim/HostSimulator.h"
#include "security/FirstStore.h"
#include "security/LastUser.h"
#include "security/forms/frmChangeUser.h"
#include "shell/PortStatusModel.h"
#include "platform/Registry.h"
#include "shell/ConfigurationRules.h"
#include "shell/GridRules.h"
#include "shell/SessionMessages.h"
#include "shell/VersionRules.h"
#include "shell/forms/AboutDlg.h"
#include "shell/forms/frmCVRemote.h"
#include "shell/forms/frmCVRemoteStartup.h"
#include "shell/forms/frmConfiguration.h"
#include "support/Forms.h"
#include "support/ScratchProgramFolder.h"
#include "support/Users.h"
#include "support/Wait.h"

#include <QAbstractItemModelTester>
#include <QAction>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

namespace corvane {
namespace {

using test::control;
using test::whenModal;

class MainWindow : public ::testing::Test {
public:
    test::ScratchProgramFolder folder;
    QTemporaryDir registryDir;
    std::unique_ptr<Registry> registry;
    test::ScriptedBoxes boxes;
    std::unique_ptr<Services> services;
    hostsim::HostSimulator host;

    void SetUp() override
    {
        folder.useAsStoreRoot();
        qputenv("CORVANE_REGISTRY_DIR", registryDir.path().toLocal8Bit());
        registry = openSystemRegistry();
        services = std::make_unique<Services>(Services{*registry, boxes, SessionTimings{20, 100, 500, 60000}, 20});
        ASSERT_TRUE(host.listen());
        const QString key = QStringLiteral("Software\\Brellwick\\CorvaneRemote\\Configuration");
        registry->writeText(Hive::Machine, key, QStringLiteral("HostIP1"), QStringLiteral("127.0.0.1"));
        registry->writeNumber(Hive::Machine, key, QStringLiteral("SocketPortNumber1"), host.port());
        registry->writeText(Hive::Machine, key, QStringLiteral("HostIP2"), QStringLiteral("Undefined"));
    }
    void TearDown() override { qunsetenv("CORVANE_REGISTRY_DIR"); }

    void createStore(std::vector<UserEntry> users)
    {
        UserStore store;
        store.users = std::move(users);
        for (std::int16_t i = 0; i < store.count(); ++i)
            store.Save_User_Record(i);
    }
};

TEST_F(MainWindow, StartsAsTheSupervisorWhileSecurityIsOffAndConnects)
{
    ASSERT_EQ(createFirstUserStore(userStorePath()), FirstStore::Created);
    frmCVRemote window(*services);
    window.show();
    ASSERT_TRUE(test::waitUntil([&] { return window.isActiveWindow(); }));
    EXPECT_EQ(window.users().CurrentUser, window.users().SupervisorIndex);
    EXPECT_TRUE(window.findChild<QAction*>(QStringLiteral("mnuSetupUsers"))->isVisible());
    EXPECT_EQ(control<QLabel>(window, "lblVersion").text(), QStringLiteral("Version: 1.02 (build 8)"));
    EXPECT_EQ(control<QLabel>(window, "lblSocketStatus").text(), QStringLiteral("Idle"));
    EXPECT_EQ(control<QLineEdit>(window, "txtSocketPort").text(), QString::number(host.port()));

    control<QPushButton>(window, "Command1").click();
    ASSERT_TRUE(test::waitUntil(
        [&] { return control<QLabel>(window, "lblSocketStatus").text() == QStringLiteral("Connected"); }));
    auto& grid = control<QTableView>(window, "tgMainScreen");
    ASSERT_TRUE(
        test::waitUntil([&] { return grid.model()->index(0, 1).data().toString() == QStringLiteral("LATHE 01"); }));
    EXPECT_EQ(grid.model()->index(127, 0).data().toString(), QStringLiteral("128"));
    EXPECT_EQ(grid.model()->headerData(5, Qt::Horizontal).toString(), QStringLiteral("Byte Count"));
    EXPECT_TRUE(boxes.calls.empty());

    // An FTP-type row: the note shows, and a serial command turns it red without asking anything.
    grid.setCurrentIndex(grid.model()->index(24, 0));
    auto& note = control<QLabel>(window, "NotFTP");
    EXPECT_FALSE(note.isHidden());
    control<QPushButton>(window, "cmdPurgeAndReset").click();
    EXPECT_EQ(note.palette().color(QPalette::WindowText), QColor(Qt::red));
    EXPECT_TRUE(boxes.calls.empty());
    grid.setCurrentIndex(grid.model()->index(3, 0));
    EXPECT_TRUE(note.isHidden());

    // Set Bookmark remembers the row, Get Bookmark goes back to it.
    control<QPushButton>(window, "cmdSetBook").click();
    grid.setCurrentIndex(grid.model()->index(40, 0));
    control<QPushButton>(window, "cmdGetBook").click();
    EXPECT_EQ(grid.currentIndex().row(), 3);

    // The current row survives the host's updates.
    const auto refreshes = window.session().PortStatus[0].ByteCount;
    control<QPushButton>(window, "cmdRefresh").click();
    ASSERT_TRUE(test::waitUntil([&] { return window.session().PortStatus[0].ByteCount != refreshes; }));
    EXPECT_EQ(grid.currentIndex().row(), 3);

    window.close();
    EXPECT_EQ(Get_Last_User(*registry), "SUPERVISOR");
    EXPECT_EQ(registry->readText(Hive::User, QStringLiteral("Software\\Brellwick\\CorvaneRemote\\Configuration"),
                  QStringLiteral("Last Host IP Number")),
        QStringLiteral("1"));
}

TEST_F(MainWindow, AMissingStoreEndsTheProgram)
{
    frmCVRemote window(*services);
    window.show();
    ASSERT_TRUE(test::waitUntil([&] { return window.endedWith().has_value(); }));
    EXPECT_EQ(window.endedWith(), 1);
    ASSERT_EQ(boxes.calls.size(), 1u);
    EXPECT_EQ(boxes.calls[0].text, message::accessDenied());
    EXPECT_EQ(boxes.calls[0].title, "Corvane Remote Access Denied");
    EXPECT_EQ(boxes.calls[0].style, msg::Critical);
    EXPECT_EQ(Get_Last_User(*registry), "") << "nothing is written";
}

TEST_F(MainWindow, TheRememberedUserIsAskedForThePasswordAndGuestsGetNoSupervisorMenu)
{
    createStore({test::user("SUPERVISOR", "boss", {}, 1), test::user("GUEST", ""), test::user("SMITH", "pw", {4})});
    Save_Last_User(*registry, "SMITH");
    whenModal<frmChangeUser>([](frmChangeUser& form) {
        EXPECT_EQ(form.windowTitle(), QStringLiteral("Security Information"));
        control<QLineEdit>(form, "txtPassword").setText(QStringLiteral("PW"));
        control<QPushButton>(form, "cmdButton_0").click();
    });
    frmCVRemote window(*services);
    window.show();
    ASSERT_TRUE(test::waitUntil([&] { return window.users().CurrentUser == 2; }));
    EXPECT_FALSE(window.findChild<QAction*>(QStringLiteral("mnuSetupUsers"))->isVisible());

    // The parameter command asks for a temporary user only when connected; without, it says so.
    control<QPushButton>(window, "cmdCommParms").click();
    ASSERT_EQ(boxes.calls.size(), 1u);
    EXPECT_EQ(boxes.calls[0].text, message::noSocketConnection());

    // An undefined host is refused with the configuration message.
    window.selectHost(2);
    EXPECT_EQ(control<QLineEdit>(window, "txtIP").text(), QStringLiteral("Undefined"));
    control<QPushButton>(window, "Command1").click();
    EXPECT_EQ(boxes.calls.back().text, message::undefinedHost());
}

TEST(PortGrid, TheModelHoldsToTheRulesOfItemModels)
{
    std::vector<PortStatusRecord> table(128);
    table[4] = {"VMC 02", "O5101.NC", "Idle", "0", "104"};
    PortStatusModel model(table);
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    EXPECT_EQ(model.rowCount(), 128);
    EXPECT_EQ(model.columnCount(), 6);
    EXPECT_EQ(model.index(4, 3).data().toString(), QStringLiteral("104"));
    EXPECT_EQ(model.index(4, 4).data().toString(), QStringLiteral("Idle"));
    EXPECT_EQ(model.headerData(0, Qt::Horizontal).toString(), QString());
    QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
    model.refresh();
    EXPECT_EQ(changed.count(), 1);
}

class ConfigurationForm : public MainWindow { };

TEST_F(ConfigurationForm, TypingRulesAndWhatSaveAndCancelKeep)
{
    HostConfiguration config(*registry);
    config.load();
    frmConfiguration form(config, boxes);
    form.show();
    auto& port1 = control<QLineEdit>(form, "txtSocketPortNumber_1");
    auto typeInto = [](QLineEdit& field, const QString& text) {
        field.selectAll();
        QTest::keyClick(&field, Qt::Key_Backspace);
        QTest::keyClicks(&field, text);
    };

    typeInto(port1, QStringLiteral("70000"));
    EXPECT_EQ(port1.text(), QStringLiteral("65535"));
    typeInto(port1, QStringLiteral("1x2-3"));
    EXPECT_EQ(port1.text(), QStringLiteral("123")) << "only digits get in";
    typeInto(port1, QStringLiteral("49141")); // host 2's port
    ASSERT_EQ(boxes.calls.size(), 1u);
    EXPECT_EQ(boxes.calls[0].text, message::duplicatePort("49141"));
    EXPECT_EQ(port1.text(), QString::number(host.port())) << "back to what the table holds";

    auto& port3 = control<QLineEdit>(form, "txtSocketPortNumber_3");
    typeInto(port3, QStringLiteral("100"));
    typeInto(control<QLineEdit>(form, "txtSocketPortNumber_4"), QStringLiteral("0100"));
    EXPECT_EQ(boxes.calls.size(), 1u) << "0100 and 100 differ as text";

    auto& idle = control<QLineEdit>(form, "txtIdleMinutes");
    typeInto(idle, QStringLiteral("75"));
    EXPECT_EQ(idle.text(), QStringLiteral("60"));
    typeInto(control<QLineEdit>(form, "txtHostName_3"), QStringLiteral("Bay 3"));
    control<QPushButton>(form, "cmdDefault_2").click();
    EXPECT_EQ(control<QLineEdit>(form, "txtHostIP_2").text(), QString());

    control<QPushButton>(form, "cmdCancel").click();
    EXPECT_EQ(config.HostNames[3], QStringLiteral("Bay 3")) << "typed values stay in memory";
    EXPECT_EQ(config.SocketPorts[3], 100);
    EXPECT_EQ(config.IdleMinutes, 60);
    HostConfiguration stored(*registry);
    stored.load();
    EXPECT_EQ(stored.HostNames[3], QStringLiteral("Host 3")) << "Cancel writes nothing";
    EXPECT_EQ(stored.HostIPs[2], QStringLiteral("Undefined"));

    frmConfiguration again(config, boxes);
    control<QPushButton>(again, "cmdSaveHostIP").click();
    stored.load();
    EXPECT_EQ(stored.HostNames[3], QStringLiteral("Bay 3"));
    EXPECT_EQ(stored.HostIPs[2], QString());
    EXPECT_EQ(stored.SocketPorts[2], 49141);
    EXPECT_EQ(stored.IdleMinutes, 60);
}

TEST_F(ConfigurationForm, StartUpFormContinuesByItselfAndGuardsTheConfiguration)
{
    auto* startup = new frmCVRemoteStartup(*services);
    QSignalSpy continued(startup, &frmCVRemoteStartup::continued);
    startup->show();
    startup->activateWindow();
    ASSERT_TRUE(test::waitUntil([&] { return continued.count() > 0; }));
    EXPECT_EQ(continued.count(), 1);

    // Without write access to the machine's settings the configuration is refused.
    qputenv("CORVANE_REGISTRY_DIR", folder.file("error.log/none").string().c_str());
    folder.write("error.log", "");
    auto unwritable = openSystemRegistry();
    Services denied{*unwritable, boxes};
    frmCVRemoteStartup second(denied);
    second.findChild<QAction*>(QStringLiteral("mnuConfiguration"))->trigger();
    ASSERT_EQ(boxes.calls.size(), 1u);
    EXPECT_EQ(boxes.calls[0].text, message::insufficientRights());

    AboutDlg about;
    EXPECT_EQ(control<QLabel>(about, "lblVersion").text(), QStringLiteral("Ver 1.02 (build 8)"));
}

} // namespace
} // namespace corvane
