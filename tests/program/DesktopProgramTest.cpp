// The desktop program as its user meets it: real modal boxes, keys typed into the controls.
#include "app/DesktopProgram.h"
#include "commparms/forms/frmCommParms.h"
#include "security/FirstStore.h"
#include "protocol/PacketTypes.h"
#include "security/UserStore.h"
#include "session/HostConfiguration.h"
#include "session/LastUser.h"
#include "security/forms/frmChangeUser.h"
#include "security/Rights.h"
#include "security/forms/frmTempMsg.h"
#include "shell/SessionMessages.h"
#include "shell/forms/frmConfiguration.h"
#include "support/ChangeRecordLines.h"
#include "support/DesktopProgram.h"
#include "support/Forms.h"
#include "support/Users.h"

#include <QAction>
#include <QApplication>
#include <QTableView>
#include <QLabel>
#include <QJsonObject>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QMouseEvent>
#include <QTest>
#include <QWheelEvent>

#include <gtest/gtest.h>

namespace corvane {
namespace {

using test::control;
using Program = test::DesktopProgramTest;

// The host hears nothing until the remembered user's password is given; the change that user
// saves is recorded under their name. Closing the main window ends the program.
TEST_F(Program, ALoggedInUserSavesAPortsChangeToTheHost)
{
    test::createStore(plant.folder.places().storeFile, {test::user("SUPERVISOR", "boss", {}, 1), test::user("GUEST", "")});
    Save_Last_User(*plant.registry, "SUPERVISOR");
    bool hostHeardNothing = false;
    test::whenModal<frmChangeUser>([&](frmChangeUser& form) {
        hostHeardNothing = plant.received.empty() && !plant.host.hasTerminal();
        QTest::keyClicks(&control<QLineEdit>(form, "txtPassword"), QStringLiteral("boss"));
        QTest::keyClick(&control<QLineEdit>(form, "txtPassword"), Qt::Key_Return);
    });
    test::whenModal<frmCommParms>([&](frmCommParms& editor) {
        test::typeFooter(editor, QStringLiteral("M99"));
        QTest::mouseClick(&control<QPushButton>(editor, "cmdUpdate"), Qt::LeftButton);
        QTest::mouseClick(&control<QPushButton>(editor, "cmdExit"), Qt::LeftButton);
    });
    frmCVRemote& window = start(test::editingPort(15));
    ASSERT_TRUE(test::waitFor([&] { return plant.host.updatesCompleted() == 1; }));
    EXPECT_TRUE(hostHeardNothing);
    EXPECT_EQ(plant.host.plant().parms.PortCommParmsTable[14].ConfirmFooter, "M99");
    const QJsonObject line = test::changeRecordLines(plant.folder.logs(), 15).at(0);
    EXPECT_EQ(line.value(QStringLiteral("user")).toString(), QStringLiteral("SUPERVISOR"));
    EXPECT_EQ(line.value(QStringLiteral("via")).toString(), QStringLiteral("desktop"));
    window.close();
    EXPECT_EQ(finished, EXIT_SUCCESS);
}

// A user without the Comm Parameters right has a temporary user open the editor: the update sent
// from it is recorded as the logged-in user's, authorised by the temporary one.
TEST_F(Program, ATemporaryUserAuthorisesTheEditorsUpdate)
{
    test::createStore(plant.folder.places().storeFile, {test::user("SUPERVISOR", "boss", {}, 1), test::user("GUEST", ""), test::user("SMITH", "pw"),
        test::user("JONES", "jj", {CommParmsRight})});
    Save_Last_User(*plant.registry, "SMITH");
    test::whenModal<frmChangeUser>([&](frmChangeUser& form) {
        QTest::keyClicks(&control<QLineEdit>(form, "txtPassword"), QStringLiteral("pw"));
        QTest::keyClick(&control<QLineEdit>(form, "txtPassword"), Qt::Key_Return);
    });
    test::whenModal<frmTempMsg>([](frmTempMsg& form) {
        QTest::keyClicks(&control<QLineEdit>(form, "txtTempUserName"), QStringLiteral("JONES"));
        QTest::keyClicks(&control<QLineEdit>(form, "txtTempPassword"), QStringLiteral("jj"));
        control<QPushButton>(form, "cmdButton_0").click();
    });
    test::whenModal<frmCommParms>([&](frmCommParms& editor) {
        test::typeFooter(editor, QStringLiteral("M97"));
        QTest::mouseClick(&control<QPushButton>(editor, "cmdUpdate"), Qt::LeftButton);
        QTest::mouseClick(&control<QPushButton>(editor, "cmdExit"), Qt::LeftButton);
    });
    start(test::editingPort(15));
    ASSERT_TRUE(test::waitFor([&] { return plant.host.updatesCompleted() == 1; }));
    const QJsonObject line = test::changeRecordLines(plant.folder.logs()).at(0);
    EXPECT_EQ(line.value(QStringLiteral("user")).toString(), QStringLiteral("SMITH"));
    EXPECT_EQ(line.value(QStringLiteral("authorisedBy")).toString(), QStringLiteral("JONES"));
    EXPECT_EQ(line.value(QStringLiteral("via")).toString(), QStringLiteral("desktop"));
}

// Escape on the purge question answers No: nothing is purged (the host has had every request
// by the time it answers the next refresh); Yes purges.
TEST_F(Program, EscapeOnThePurgeQuestionPurgesNothing)
{
    ASSERT_EQ(createFirstUserStore(plant.folder.places().storeFile), FirstStore::Created);
    frmCVRemote& window = start(test::connectingTo(1));
    ASSERT_TRUE(test::waitFor([this] { return program->mainWindow()->session().connected() && filled(); }));
    for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_Y}) {
        bool asked = false;
        test::whenBox<QMessageBox>(
            [](QMessageBox& box) { return box.text().contains(QStringLiteral("purge and reset")); },
            [&asked, key](QMessageBox& box) {
                asked = true;
                if (key == Qt::Key_Escape)
                    QTest::keyClick(&box, key);
                else
                    box.buttons().at(0)->click(); // Yes, the first of Yes and No
            });
        QTest::mouseClick(&control<QPushButton>(window, "cmdPurgeAndReset"), Qt::LeftButton);
        ASSERT_TRUE(test::waitFor([&] { return asked; }));
        const std::size_t refreshes = plant.receivedOfType(packet_type::StatusRequest);
        QTest::mouseClick(&control<QPushButton>(window, "cmdRefresh"), Qt::LeftButton);
        ASSERT_TRUE(test::waitFor([&] { return plant.receivedOfType(packet_type::StatusRequest) > refreshes; }));
        EXPECT_EQ(plant.receivedOfType(packet_type::PurgeReset), key == Qt::Key_Escape ? 0u : 1u);
    }
}

// The box takes the focus, as on any desktop, and the field goes back: Save writes no duplicate.
// Only typed characters are filtered: the keys that move, delete and leave still work.
TEST_F(Program, TheConfigurationFieldsTakeKeysAsTheDesktopSendsThem)
{
    ASSERT_EQ(createFirstUserStore(plant.folder.places().storeFile), FirstStore::Created);
    frmCVRemote& window = startAndLogIn();
    QString afterTheBox;
    bool boxHadTheFocus = false;
    test::whenModal<frmConfiguration>([&](frmConfiguration& form) {
        auto& port3 = control<QLineEdit>(form, "txtSocketPortNumber_3"); // 49142
        QTest::mouseClick(&port3, Qt::LeftButton);
        QTest::keyClick(&port3, Qt::Key_Home);
        QTest::keyClick(&port3, Qt::Key_Right);
        QTest::keyClick(&port3, Qt::Key_Delete); // 4142
        QTest::keyClick(&port3, Qt::Key_End);
        QTest::keyClicks(&port3, QStringLiteral("x7")); // 41427
        QTest::keyClick(&port3, Qt::Key_Tab);

        auto& port4 = control<QLineEdit>(form, "txtSocketPortNumber_4");
        test::whenMessage(message::duplicatePort("49144"), [&](QMessageBox& box) {
            boxHadTheFocus = QApplication::focusWidget() != &port4;
            QTest::keyClick(&box, Qt::Key_Return);
        });
        QTest::mouseClick(&port4, Qt::LeftButton);
        port4.selectAll();
        QTest::keyClick(&port4, Qt::Key_Backspace);
        QTest::keyClicks(&port4, QStringLiteral("49144")); // host 5's port
        afterTheBox = port4.text();
        QTest::keyClick(&port4, Qt::Key_Tab);
        QTest::mouseClick(&control<QPushButton>(form, "cmdSaveHostIP"), Qt::LeftButton);
    });
    window.findChild<QAction*>(QStringLiteral("mnuConfiguration"))->trigger();
    EXPECT_TRUE(boxHadTheFocus);
    EXPECT_EQ(afterTheBox, QStringLiteral("49143"));
    HostConfiguration saved(*plant.registry);
    saved.load();
    EXPECT_EQ(saved.SocketPorts[3], 41427);
    EXPECT_EQ(saved.SocketPorts[4], 49143);
}

// Any key, click or scroll in any window counts as someone there, reading included: the idle
// log-off comes only a whole idle time after the last of them, whichever window had it.
TEST_F(Program, AnyKeyClickOrScrollPutsTheIdleLogOffBack)
{
    ASSERT_EQ(createFirstUserStore(plant.folder.places().storeFile), FirstStore::Created);
    HostConfiguration hosts(*plant.registry);
    hosts.load();
    hosts.IdleMinutes = 1;
    ASSERT_TRUE(hosts.save());
    frmCVRemote& window = start(test::connectingTo(1));
    ASSERT_TRUE(test::waitFor([&] { return loggedIn && filled(); }));
    QWidget& grid = control<QWidget>(window, "tgMainScreen");
    const std::function<void()> activities[] = {
        [&] { QTest::keyClick(&grid, Qt::Key_Down); },
        [&] {
            QMouseEvent press(QEvent::MouseButtonPress, QPointF(5, 5), grid.mapToGlobal(QPointF(5, 5)), Qt::LeftButton,
                Qt::LeftButton, Qt::NoModifier);
            QCoreApplication::sendEvent(&control<QLabel>(window, "lblSocketStatus"), &press);
        },
        [&] {
            QWheelEvent wheel(QPointF(5, 5), grid.mapToGlobal(QPointF(5, 5)), QPoint(), QPoint(0, -120), Qt::NoButton,
                Qt::NoModifier, Qt::NoScrollPhase, false);
            QCoreApplication::sendEvent(&grid, &wheel);
        },
    };
    bool told = false;
    test::pressOk(message::idleLogOff(1), told); // should any activity be missed
    // One minute passes after each activity: one over the limit were it not counted.
    timers.fire("tmrIdleLogoff");
    for (std::size_t i = 0; i < std::size(activities); ++i) {
        activities[i]();
        timers.fire("tmrIdleLogoff");
        EXPECT_FALSE(told) << "activity " << i;
    }
    timers.fire("tmrIdleLogoff");
    EXPECT_TRUE(test::waitFor([&] { return told && finished.has_value(); }));
}

// The main commands by keyboard, each the very button: F5 refreshes, Delete on a row asks before
// it purges, Enter on a row opens the editor for that row (after the same checks), and Tab leaves
// the grid.
TEST_F(Program, TheMainCommandsByKeyboard)
{
    ASSERT_EQ(createFirstUserStore(plant.folder.places().storeFile), FirstStore::Created);
    frmCVRemote& window = start(test::connectingTo(1));
    ASSERT_TRUE(test::waitFor([&] { return loggedIn && filled(); }));
    auto& grid = control<QTableView>(window, "tgMainScreen");
    // A shortcut is the active window's: under a window manager, once it has made it so.
    window.activateWindow();
    ASSERT_TRUE(test::waitFor([&] { return QApplication::activeWindow() == &window; }));
    grid.setFocus();
    grid.setCurrentIndex(grid.model()->index(6, 0));

    const std::size_t asked = plant.receivedOfType(packet_type::StatusRequest);
    QTest::keyClick(&grid, Qt::Key_F5);
    EXPECT_TRUE(test::waitFor([&] { return plant.receivedOfType(packet_type::StatusRequest) == asked + 1; }));

    bool askedFirst = false;
    test::whenMessage(message::purgeQuestion(), [&](QMessageBox& box) {
        askedFirst = true;
        QTest::keyClick(&box, Qt::Key_Escape); // No
    });
    QTest::keyClick(&grid, Qt::Key_Delete);
    EXPECT_TRUE(askedFirst);
    EXPECT_EQ(plant.receivedOfType(packet_type::PurgeReset), 0u);

    int editedRow = -1;
    test::whenModal<frmCommParms>([&](frmCommParms& editor) {
        editedRow = editor.shownPort();
        QTest::keyClick(&editor, Qt::Key_Escape);
    });
    QTest::keyClick(&grid, Qt::Key_Return);
    EXPECT_TRUE(test::waitFor([&] { return editedRow >= 0; }));
    EXPECT_EQ(editedRow, 6);

    grid.setFocus();
    QTest::keyClick(&grid, Qt::Key_Tab);
    EXPECT_NE(QApplication::focusWidget(), &grid) << "Tab left the grid";
}

} // namespace
} // namespace corvane
