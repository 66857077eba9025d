// The desktop program as its user meets it: the windows main opens, real message boxes that take
// the focus as they do on a desktop, keys typed into the controls. Only the clock is the test's.
#include "app/DesktopProgram.h"
#include "commparms/forms/frmCommParms.h"
#include "dialogs/MessageBoxes.h"
#include "dialogs/forms/frmGenMsgBox.h"
#include "hostsim/HostPackets.h"
#include "protocol/Requests.h"
#include "security/FirstStore.h"
#include "security/LastUser.h"
#include "security/forms/frmChangeUser.h"
#include "security/forms/frmTempMsg.h"
#include "shell/ChangeRecord.h"
#include "shell/SessionMessages.h"
#include "shell/forms/frmConfiguration.h"
#include "support/DesktopProgram.h"
#include "support/Forms.h"
#include "support/Users.h"

#include <QAction>
#include <QComboBox>
#include <QJsonArray>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QTabWidget>
#include <QTest>

#include <gtest/gtest.h>

namespace corvane {
namespace {

using test::connectingTo;
using test::control;
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

TEST_F(Program, ConnectDoesNotComeWhenTheLogInEndsTheProgram)
{
    QString title;
    whenMessage(message::accessDenied(), [&](QMessageBox& box) {
        title = box.windowTitle();
        QTest::keyClick(&box, Qt::Key_Return);
    });
    start(connectingTo(1)); // with no user store
    ASSERT_TRUE(waitFor([&] { return finished.has_value(); }));
    EXPECT_EQ(finished, EXIT_FAILURE);
    EXPECT_EQ(title, QLatin1String(message::AccessDeniedTitle));
    EXPECT_FALSE(plant.host.hasTerminal());
    EXPECT_TRUE(plant.received.empty());
    EXPECT_EQ(Get_Last_User(*plant.registry), "") << "nothing is written";
}

// The box takes the focus, as on any desktop; what was typed does not slip into the table on
// the way, the field goes back, and Save writes no duplicate.
TEST_F(Program, ADuplicatePortGoesBackAndIsNeverSaved)
{
    ASSERT_EQ(createFirstUserStore(userStorePath()), FirstStore::Created);
    frmCVRemote& window = startAndLogIn();
    bool boxHadTheFocus = false;
    QString afterTheBox;
    whenModal<frmConfiguration>([&](frmConfiguration& form) {
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
    EXPECT_TRUE(boxHadTheFocus);
    EXPECT_EQ(afterTheBox, QStringLiteral("49143"));
    HostConfiguration saved(*plant.registry);
    saved.load();
    EXPECT_EQ(saved.SocketPorts[4], 49143);
    EXPECT_EQ(saved.SocketPorts[5], 49144);
}

// Only typed characters are filtered: the keys that move, delete, go on and leave still work.
TEST_F(Program, KeysThatTypeNothingKeepTheirWorkInTheDigitFields)
{
    ASSERT_EQ(createFirstUserStore(userStorePath()), FirstStore::Created);
    frmCVRemote& window = startAndLogIn();
    QString port, idle;
    bool tabLeft = false, escapeClosed = false;
    whenModal<frmConfiguration>([&](frmConfiguration& form) {
        auto& port3 = control<QLineEdit>(form, "txtSocketPortNumber_3"); // 49142
        QTest::mouseClick(&port3, Qt::LeftButton);
        QTest::keyClick(&port3, Qt::Key_Home);
        QTest::keyClick(&port3, Qt::Key_Right);
        QTest::keyClick(&port3, Qt::Key_Delete); // 4142
        QTest::keyClick(&port3, Qt::Key_End);
        QTest::keyClicks(&port3, QStringLiteral("x7")); // 41427
        port = port3.text();
        QTest::keyClick(&port3, Qt::Key_Tab);
        tabLeft = QApplication::focusWidget() != &port3;

        auto& minutes = control<QLineEdit>(form, "txtIdleMinutes"); // 5
        QTest::mouseClick(&minutes, Qt::LeftButton);
        QTest::keyClick(&minutes, Qt::Key_Left);
        QTest::keyClick(&minutes, Qt::Key_Left);
        QTest::keyClicks(&minutes, QStringLiteral("1")); // 15
        idle = minutes.text();
        QTest::keyClick(&minutes, Qt::Key_Escape);
        escapeClosed = !form.isVisible();
        if (!escapeClosed)
            form.reject(); // so that a failure does not hang the test
    });
    window.findChild<QAction*>(QStringLiteral("mnuConfiguration"))->trigger();
    EXPECT_EQ(port, QStringLiteral("41427"));
    EXPECT_TRUE(tabLeft);
    EXPECT_EQ(idle, QStringLiteral("15"));
    EXPECT_TRUE(escapeClosed);
    HostConfiguration saved(*plant.registry);
    saved.load();
    EXPECT_EQ(saved.SocketPorts[3], 49142) << "Escape is a cancel: nothing written";
}

// The box a refused temporary user meets shows its caption whole.
TEST_F(Program, TheAccessBoxShowsItsCaptionWhole)
{
    test::createStore({test::user("SUPERVISOR", "boss", {}, 1), test::user("GUEST", "")});
    frmCVRemote& window = startAndLogIn(); // no one remembered, security on: the guest
    int boxWidth = 0, captionNeeds = -1, textWidth = 1000;
    whenModal<frmTempMsg>([&](frmTempMsg& form) {
        whenBox<frmGenMsgBox>(
            [](frmGenMsgBox& box) { return box.windowTitle() == QStringLiteral("Access Not Allowed"); },
            [&](frmGenMsgBox& box) {
                boxWidth = box.width();
                captionNeeds = captionWidth(box.windowTitle(), box.fontMetrics());
                textWidth = control<QLabel>(box, "lblMsg").width();
                QTest::keyClick(&box, Qt::Key_Return);
            });
        auto& name = *form.findChild<QLineEdit*>(QStringLiteral("txtTempUserName"));
        QTest::keyClicks(&name, QStringLiteral("NOBODY"));
        QTest::mouseClick(&control<QPushButton>(form, "cmdButton_0"), Qt::LeftButton);
    });
    ASSERT_EQ(window.users().CurrentUser, window.users().GuestIndex);
    window.findChild<QAction*>(QStringLiteral("mnuConfiguration"))->trigger();
    EXPECT_GE(boxWidth, captionNeeds);
    EXPECT_LE(textWidth, 300);
}

// From the main window a user opens a port, changes it under the rules and saves it to the host.
TEST_F(Program, TheEditorOpensAPortAndSavesItsChangesToTheHost)
{
    ASSERT_EQ(createFirstUserStore(userStorePath()), FirstStore::Created);
    ProgramOptions options = connectingTo(1);
    options.editPort = 15; // EDM 1, the grid's port 15: row 14 on the wire
    QString name;
    whenModal<frmCommParms>([&](frmCommParms& editor) {
        name = control<QLineEdit>(editor, "WorkstationName").text();
        control<QTabWidget>(editor, "CommTab").setCurrentIndex(1);
        auto& footer = control<QLineEdit>(editor, "txtConfirmFooter");
        footer.setFocus();
        footer.selectAll();
        QTest::keyClicks(&footer, QStringLiteral("M99"));
        QTest::mouseClick(&control<QPushButton>(editor, "cmdUpdate"), Qt::LeftButton);
        QTest::mouseClick(&control<QPushButton>(editor, "cmdExit"), Qt::LeftButton);
    });
    start(options);
    ASSERT_TRUE(waitFor([&] { return plant.host.updatesCompleted() == 1; }));
    EXPECT_EQ(name, QStringLiteral("EDM 1"));
    EXPECT_EQ(plant.host.plant().parms.PortCommParmsTable[14].ConfirmFooter, "M99");
    const std::string request = Build_Port_Parms_Request(1, 14).substr(1);
    EXPECT_NE(std::find(plant.received.begin(), plant.received.end(), request), plant.received.end());

    // The change record has the desktop's update as the client would have written it.
    const std::vector<QJsonObject> record = readChangeRecord();
    ASSERT_EQ(record.size(), 1u);
    EXPECT_EQ(record[0].value(QStringLiteral("port")).toInt(), 15);
    EXPECT_EQ(record[0].value(QStringLiteral("user")).toString(), QStringLiteral("SUPERVISOR"));
    EXPECT_EQ(record[0].value(QStringLiteral("outcome")).toString(), QStringLiteral("complete"));
    const QJsonArray changes = record[0].value(QStringLiteral("changes")).toArray();
    ASSERT_EQ(changes.size(), 1) << "only what differs from the fetch";
    EXPECT_EQ(changes[0].toObject().value(QStringLiteral("old")).toString(), QStringLiteral("M30"));
    EXPECT_EQ(changes[0].toObject().value(QStringLiteral("new")).toString(), QStringLiteral("M99"));
}

// A box of the editor holds up nothing: the port states the host pushes while the baud warning
// is up reach the grid underneath it.
TEST_F(Program, ArrivalsGoOnWhileABoxOfTheEditorIsUp)
{
    ASSERT_EQ(createFirstUserStore(userStorePath()), FirstStore::Created);
    ProgramOptions options = connectingTo(1);
    options.editPort = 1;
    bool arrivedUnderTheBox = false;
    whenModal<frmCommParms>([&](frmCommParms& editor) {
        whenBox<QMessageBox>(
            [&](QMessageBox& box) {
                if (!box.text().startsWith(QLatin1String("Some communications ports")))
                    return false;
                if (program->mainWindow()->session().portStatus()[0].WorkstationName != "PUSHED") {
                    plant.host.sendRaw(hostsim::statusReply({{"PUSHED", "", "Idle", "0", "1"}}));
                    return false;
                }
                return true;
            },
            [&](QMessageBox& box) {
                arrivedUnderTheBox = true;
                QTest::keyClick(&box, Qt::Key_Return);
            });
        auto& rates = control<QComboBox>(editor, "BaudRates");
        rates.setFocus();
        QTest::keyClick(&rates, Qt::Key_End); // 256000
        QTest::mouseClick(&control<QPushButton>(editor, "cmdExit"), Qt::LeftButton);
    });
    start(options);
    ASSERT_TRUE(waitFor([&] { return arrivedUnderTheBox; }));
}

// Saving after the connection went: no section goes out, nothing is said, and the trailer's
// failure is written down by the update's trap.
TEST_F(Program, SavingWithoutAConnectionIsTrappedNotShown)
{
    ASSERT_EQ(createFirstUserStore(userStorePath()), FirstStore::Created);
    ProgramOptions options = connectingTo(1);
    options.editPort = 3;
    std::optional<bool> noBoxCameUp;
    whenModal<frmCommParms>([&](frmCommParms& editor) {
        program->mainWindow()->session().closeSocket();
        QTest::mouseClick(&control<QPushButton>(editor, "cmdUpdate"), Qt::LeftButton);
        noBoxCameUp = QApplication::activeModalWidget() == &editor;
        editor.accept();
    });
    start(options);
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
