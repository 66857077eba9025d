#include "security/FirstStore.h"
#include "session/LastUser.h"
#include "security/forms/frmChangeUser.h"
#include "shell/GridRules.h"
#include "session/PortStatusModel.h"
#include "shell/forms/frmCVRemote.h"
#include "shell/forms/frmCVRemoteStartup.h"
#include "shell/forms/frmConfiguration.h"
#include "support/ChangeRecordLines.h"
#include "support/Forms.h"
#include "support/ManualTimers.h"
#include "support/SimulatedPlant.h"
#include "support/Users.h"

#include <QAbstractItemModelTester>
#include <QAction>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTableView>
#include <QTest>

#include <gtest/gtest.h>

namespace corvane {
namespace {

using test::control;
using test::waitFor;
using test::whenModal;

class MainWindow : public ::testing::Test {
public:
    test::SimulatedPlant plant;
    test::ScriptedBoxes boxes;
    test::ManualTimers timers;
    test::ScriptedDesktop desktop;
    Services services{boxes, desktop};
    Terminal terminal{*plant.registry, timers, "tester", plant.folder.places(), test::ScratchProgramFolder::clock()};

    void SetUp() override { plant.folder.useAsStoreRoot(); }
    static void typeInto(QLineEdit& field, const QString& text)
    {
        field.setFocus();
        field.selectAll();
        QTest::keyClick(&field, Qt::Key_Backspace);
        QTest::keyClicks(&field, text);
    }
};

TEST_F(MainWindow, StartsAsTheSupervisorWhileSecurityIsOffAndConnects)
{
    ASSERT_EQ(createFirstUserStore(plant.folder.places().storeFile), FirstStore::Created);
    frmCVRemote window(terminal, services);
    QSignalSpy loggedIn(&window, &frmCVRemote::loggedIn);
    window.show();
    ASSERT_TRUE(waitFor([&] { return loggedIn.count() == 1; }));
    EXPECT_EQ(window.users().CurrentUser, window.users().SupervisorIndex);
    EXPECT_TRUE(window.findChild<QAction*>(QStringLiteral("mnuSetupUsers"))->isVisible());
    EXPECT_EQ(control<QLineEdit>(window, "txtSocketPort").text(), QString::number(plant.host.port()));

    control<QPushButton>(window, "Command1").click();
    auto& grid = control<QTableView>(window, "tgMainScreen");
    ASSERT_TRUE(waitFor([&] { return grid.model()->index(0, 1).data().toString() == QStringLiteral("LATHE 01"); }));
    timers.fire("tmrConnectionTimeout");
    timers.fire("tmrSocketStatus");
    EXPECT_EQ(control<QLabel>(window, "lblSocketStatus").text(), QStringLiteral("Connected"));

    // An FTP-type row shows its note without moving the grid; a serial command there turns the
    // note red without asking anything.
    const int height = grid.height();
    grid.setCurrentIndex(grid.model()->index(24, 0));
    auto& note = control<QLabel>(window, "NotFTP");
    ASSERT_FALSE(note.isHidden());
    QApplication::processEvents(); // lay out
    EXPECT_EQ(grid.height(), height);
    control<QPushButton>(window, "cmdPurgeAndReset").click();
    EXPECT_EQ(note.palette().color(QPalette::WindowText), QColor(Qt::red));
    EXPECT_TRUE(boxes.calls.empty());
    grid.setCurrentIndex(grid.model()->index(3, 0));
    EXPECT_TRUE(note.isHidden());

    control<QPushButton>(window, "cmdSetBook").click();
    grid.setCurrentIndex(grid.model()->index(40, 0));
    control<QPushButton>(window, "cmdGetBook").click();
    EXPECT_EQ(grid.currentIndex().row(), 3);

    // The current row survives the host's updates.
    const auto before = window.session().portStatus()[0].ByteCount;
    control<QPushButton>(window, "cmdRefresh").click();
    ASSERT_TRUE(waitFor([&] { return window.session().portStatus()[0].ByteCount != before; }));
    EXPECT_EQ(grid.currentIndex().row(), 3);

    window.close(); // what it ends with is remembered for the next start
    EXPECT_EQ(Get_Last_User(*plant.registry), "SUPERVISOR");
    EXPECT_EQ(plant.registry->readText(Hive::User, ConfigurationKey, QStringLiteral("Last Host IP Number")),
        QStringLiteral("1"));
}

TEST_F(MainWindow, TheRememberedUserIsAskedForThePasswordAndGuestsGetNoSupervisorMenu)
{
    test::createStore(plant.folder.places().storeFile, 
        {test::user("SUPERVISOR", "boss", {}, 1), test::user("GUEST", ""), test::user("SMITH", "pw", {4})});
    Save_Last_User(*plant.registry, "SMITH");
    whenModal<frmChangeUser>([](frmChangeUser& form) {
        control<QLineEdit>(form, "txtPassword").setText(QStringLiteral("PW"));
        control<QPushButton>(form, "cmdButton_0").click();
    });
    frmCVRemote window(terminal, services);
    window.show();
    ASSERT_TRUE(waitFor([&] { return window.users().CurrentUser == 2; }));
    EXPECT_FALSE(window.findChild<QAction*>(QStringLiteral("mnuSetupUsers"))->isVisible());
}

// A useful share of the 128 rows, and the words get the room.
TEST_F(MainWindow, TheGridGetsTheRoom)
{
    ASSERT_EQ(createFirstUserStore(plant.folder.places().storeFile), FirstStore::Created);
    frmCVRemote window(terminal, services);
    window.show();
    auto& grid = control<QTableView>(window, "tgMainScreen");
    ASSERT_TRUE(waitFor([&] { return grid.isVisible() && grid.viewport()->height() > 0; }));
    EXPECT_GE(grid.viewport()->height() / grid.verticalHeader()->defaultSectionSize(), 20);
    for (const int wordy : {MachineColumn, ProgramColumn, StatusColumn})
        EXPECT_GT(grid.columnWidth(wordy), grid.columnWidth(ByteCountColumn)) << wordy;
    const QLineEdit& port = control<QLineEdit>(window, "txtSocketPort");
    EXPECT_GE(port.minimumWidth(), port.fontMetrics().horizontalAdvance(QStringLiteral("00000")));
}

TEST(PortGrid, TheModelHoldsToTheRulesOfItemModels)
{
    std::vector<PortStatusRecord> table(128, PortStatusRecord{"VMC 02", "O5101.NC", "Idle", "0", "104"});
    PortStatusModel model(table);
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
}

TEST_F(MainWindow, TheConfigurationsTypingRulesAndWhatSaveAndCancelKeep)
{
    HostConfiguration config(*plant.registry);
    config.load();
    const ChangeActor actor{"desktop", "tester", "SUPERVISOR", "SMITH"};
    frmConfiguration form(config, plant.folder.logs(), boxes, actor);
    form.show();

    typeInto(control<QLineEdit>(form, "txtSocketPortNumber_3"), QStringLiteral("100"));
    typeInto(control<QLineEdit>(form, "txtIdleMinutes"), QStringLiteral("75")); // 60 at most
    typeInto(control<QLineEdit>(form, "txtHostName_3"), QStringLiteral("Bay 3"));
    control<QPushButton>(form, "cmdDefault_2").click();

    control<QPushButton>(form, "cmdCancel").click();
    EXPECT_EQ(config.HostNames[3], QStringLiteral("Bay 3")) << "typed values stay in memory";
    EXPECT_EQ(config.SocketPorts[3], 100);
    HostConfiguration stored(*plant.registry);
    stored.load();
    EXPECT_EQ(stored.HostNames[3], QStringLiteral("Host 3")) << "Cancel writes nothing";

    EXPECT_TRUE(test::changeRecordLines(plant.folder.logs()).empty());

    frmConfiguration again(config, plant.folder.logs(), boxes, actor);
    control<QPushButton>(again, "cmdSaveHostIP").click();
    stored.load();
    EXPECT_EQ(stored.HostNames[3], QStringLiteral("Bay 3"));
    EXPECT_EQ(stored.SocketPorts[3], 100);
    EXPECT_EQ(stored.HostIPs[2], QString());
    EXPECT_EQ(stored.IdleMinutes, 60);

    // Recorded against what the settings held, not the tables the cancelled form had typed into.
    const std::vector<QJsonObject> record = test::changeRecordLines(plant.folder.logs());
    ASSERT_EQ(record.size(), 1u);
    EXPECT_EQ(record[0].value(QStringLiteral("kind")).toString(), QStringLiteral("config"));
    EXPECT_EQ(record[0].value(QStringLiteral("authorisedBy")).toString(), QStringLiteral("SMITH"));
    QStringList changed;
    for (const QJsonValue& field : record[0].value(QStringLiteral("fields")).toArray())
        changed << field.toObject().value(QStringLiteral("name")).toString();
    EXPECT_EQ(changed,
        (QStringList{QStringLiteral("HostIP2"), QStringLiteral("HostName3"), QStringLiteral("SocketPortNumber3"),
            QStringLiteral("Idle Minutes")}));
    EXPECT_EQ(record[0].value(QStringLiteral("fields")).toArray().at(1).toObject().value(QStringLiteral("old")),
        QJsonValue(QStringLiteral("Host 3")));
}

// Without write access to the machine's settings the start-up form refuses its configuration,
// and goes on counting down afterwards.
TEST_F(MainWindow, TheStartUpFormGuardsTheConfiguration)
{
    plant.folder.write("error.log", "");
    auto unwritable = openSystemRegistry(QString::fromStdString(plant.folder.file("error.log/none").string()));
    Terminal denied(*unwritable, timers, "tester", plant.folder.places());
    frmCVRemoteStartup second(denied, services);
    second.show();
    second.findChild<QAction*>(QStringLiteral("mnuConfiguration"))->trigger();
    EXPECT_EQ(boxes.calls.size(), 1u) << "refused, with no form to hang on";
    EXPECT_TRUE(timers["tmrStartup"].isActive());
}

} // namespace
} // namespace corvane
