// The desktop program as its user meets it: the windows main opens, real message boxes that take
// the focus as they do on a desktop, keys typed into the controls. Only the clock is the test's.
#include "app/DesktopProgram.h"
#include "commparms/forms/frmCommParms.h"
#include "dialogs/MessageBoxes.h"
#include "protocol/Requests.h"
#include "security/FirstStore.h"
#include "security/LastUser.h"
#include "security/forms/frmChangeUser.h"
#include "shell/ChangeRecord.h"
#include "shell/SessionMessages.h"
#include "shell/forms/frmConfiguration.h"
#include "support/DesktopProgram.h"
#include "support/Forms.h"
#include "support/Users.h"

#include <QAction>
#include <QJsonObject>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

namespace corvane {
namespace {

using test::connectingTo;
using test::control;
using test::editingPort;
using test::typeFooter;
using test::waitFor;
using test::whenBox;
using test::whenMessage;
using test::whenModal;
using Program = test::DesktopProgramTest;

// A box opened while an arrival is dispatched holds up nothing: under "No Packet String" the
// version reply is read, the connect goes on, and the grid fills before the user presses OK.
TEST_F(Program, TheGridFillsWhileTheNoPacketStringBoxIsUp)
{
    ASSERT_EQ(createFirstUserStore(userStorePath()), FirstStore::Created);
    plant.host.faults.noPacketTextOnConnect = true;
    bool filledUnderTheBox = false;
    whenBox<QMessageBox>(
        [this](QMessageBox& box) { return box.text() == QLatin1String(message::NoPacketString) && filled(); },
        [&](QMessageBox& box) {
            filledUnderTheBox = true;
            QTest::keyClick(&box, Qt::Key_Return);
        });
    frmCVRemote& window = start(connectingTo(1));
    ASSERT_TRUE(waitFor([&] { return filledUnderTheBox; }));
    EXPECT_EQ(window.session().connectState(), ConnectState::Connected) << "no version time-out";
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

// The remembered user's password is asked first; the host hears nothing until it is given.
TEST_F(Program, ConnectWaitsForTheLogIn)
{
    test::createStore({test::user("SUPERVISOR", "boss", {}, 1), test::user("GUEST", "")});
    Save_Last_User(*plant.registry, "SUPERVISOR");
    bool hostHeardNothing = false;
    whenModal<frmChangeUser>([&](frmChangeUser& form) {
        hostHeardNothing = plant.received.empty() && !plant.host.hasTerminal()
            && program->mainWindow()->session().connectState() == ConnectState::Idle;
        QTest::keyClicks(&control<QLineEdit>(form, "txtPassword"), QStringLiteral("boss"));
        QTest::keyClick(&control<QLineEdit>(form, "txtPassword"), Qt::Key_Return);
    });
    frmCVRemote& window = start(connectingTo(1));
    ASSERT_TRUE(waitFor([&] { return filled(); }));
    EXPECT_TRUE(hostHeardNothing);
    EXPECT_EQ(window.users().CurrentUser, window.users().SupervisorIndex);
}

// The box takes the focus, as on any desktop; what was typed does not slip into the table on
// the way, the field goes back, and Save writes no duplicate. Only typed characters are
// filtered: the keys that move, delete and leave still work.
TEST_F(Program, TheConfigurationFieldsTakeKeysAsTheDesktopSendsThem)
{
    ASSERT_EQ(createFirstUserStore(userStorePath()), FirstStore::Created);
    frmCVRemote& window = startAndLogIn();
    QString edited, afterTheBox;
    bool tabLeft = false, boxHadTheFocus = false;
    whenModal<frmConfiguration>([&](frmConfiguration& form) {
        auto& port3 = control<QLineEdit>(form, "txtSocketPortNumber_3"); // 49142
        QTest::mouseClick(&port3, Qt::LeftButton);
        QTest::keyClick(&port3, Qt::Key_Home);
        QTest::keyClick(&port3, Qt::Key_Right);
        QTest::keyClick(&port3, Qt::Key_Delete); // 4142
        QTest::keyClick(&port3, Qt::Key_End);
        QTest::keyClicks(&port3, QStringLiteral("x7")); // 41427
        edited = port3.text();
        QTest::keyClick(&port3, Qt::Key_Tab);
        tabLeft = QApplication::focusWidget() != &port3;

        auto& port4 = control<QLineEdit>(form, "txtSocketPortNumber_4");
        whenMessage(message::duplicatePort("49144"), [&](QMessageBox& box) {
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
    EXPECT_EQ(edited, QStringLiteral("41427"));
    EXPECT_TRUE(tabLeft);
    EXPECT_TRUE(boxHadTheFocus);
    EXPECT_EQ(afterTheBox, QStringLiteral("49143"));
    HostConfiguration saved(*plant.registry);
    saved.load();
    EXPECT_EQ(saved.SocketPorts[3], 41427);
    EXPECT_EQ(saved.SocketPorts[4], 49143);
    EXPECT_EQ(saved.SocketPorts[5], 49144);
}

// From the main window a user opens a port, changes it under the rules and saves it to the host.
TEST_F(Program, TheEditorOpensAPortAndSavesItsChangesToTheHost)
{
    ASSERT_EQ(createFirstUserStore(userStorePath()), FirstStore::Created);
    QString name;
    whenModal<frmCommParms>([&](frmCommParms& editor) {
        name = control<QLineEdit>(editor, "WorkstationName").text();
        typeFooter(editor, QStringLiteral("M99"));
        QTest::mouseClick(&control<QPushButton>(editor, "cmdUpdate"), Qt::LeftButton);
        QTest::mouseClick(&control<QPushButton>(editor, "cmdExit"), Qt::LeftButton);
    });
    start(editingPort(15)); // EDM 1, the grid's port 15: row 14 on the wire
    ASSERT_TRUE(waitFor([&] { return plant.host.updatesCompleted() == 1; }));
    EXPECT_EQ(name, QStringLiteral("EDM 1"));
    EXPECT_EQ(plant.host.plant().parms.PortCommParmsTable[14].ConfirmFooter, "M99");
    const std::string request = Build_Port_Parms_Request(1, 14).substr(1);
    EXPECT_NE(std::find(plant.received.begin(), plant.received.end(), request), plant.received.end());

    // The change record names the user logged in at the desktop.
    const std::vector<QJsonObject> record = readChangeRecord(15);
    ASSERT_EQ(record.size(), 1u);
    EXPECT_EQ(record[0].value(QStringLiteral("user")).toString(), QStringLiteral("SUPERVISOR"));
}

// Saving after the connection went: no section goes out, nothing is said, and the trailer's
// failure is written down by the update's trap.
TEST_F(Program, SavingWithoutAConnectionIsTrappedNotShown)
{
    ASSERT_EQ(createFirstUserStore(userStorePath()), FirstStore::Created);
    std::optional<bool> noBoxCameUp;
    whenModal<frmCommParms>([&](frmCommParms& editor) {
        program->mainWindow()->session().closeSocket();
        QTest::mouseClick(&control<QPushButton>(editor, "cmdUpdate"), Qt::LeftButton);
        noBoxCameUp = QApplication::activeModalWidget() == &editor;
        editor.accept();
    });
    start(editingPort(3));
    ASSERT_TRUE(waitFor([&] { return noBoxCameUp.has_value(); }));
    EXPECT_TRUE(*noBoxCameUp);
    EXPECT_EQ(plant.receivedOfType(packet_type::PortParms), 0u);
    EXPECT_NE(plant.folder.read("error.log").find("Error Location 311 Err = 40006 "), std::string::npos);
}

TEST_F(Program, ClosingTheMainWindowEndsTheProgram)
{
    ASSERT_EQ(createFirstUserStore(userStorePath()), FirstStore::Created);
    frmCVRemote& window = start();
    window.close();
    EXPECT_EQ(finished, EXIT_SUCCESS);
    EXPECT_FALSE(untrappedEnd.has_value());
}

} // namespace
} // namespace corvane
