// The desktop program against a host, a user store and a program folder that fail it.
#include "commparms/forms/frmCommParms.h"
#include "protocol/PacketTypes.h"
#include "security/FirstStore.h"
#include "shell/SessionMessages.h"
#include "support/ChangeRecordLines.h"
#include "support/DesktopProgram.h"

#include <QJsonObject>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTest>

#include <gtest/gtest.h>

#include <filesystem>

namespace corvane {
namespace {

using test::connectingTo;
using test::control;
using test::editingPort;
using test::pressOk;
using test::waitFor;
using test::whenModal;

class Faults : public test::DesktopProgramTest {
public:
    void SetUp() override
    {
        DesktopProgramTest::SetUp();
        ASSERT_EQ(createFirstUserStore(plant.folder.places().storeFile), FirstStore::Created);
    }
    // The cable goes at the host's `nth` packet of this type; the terminal's wait then runs out.
    void pullCableAt(std::int16_t type, std::size_t nth)
    {
        QObject::connect(&plant.host, &hostsim::HostSimulator::packetReceived, &plant.host, [this, type, nth] {
            if (plant.receivedOfType(type) == nth)
                plant.host.pullCable();
        });
        test::whenReady(
            [this, type, nth]() -> bool* {
                const bool gone
                    = program && plant.receivedOfType(type) >= nth && !program->mainWindow()->session().connected();
                return gone ? &loggedIn : nullptr;
            },
            [this](bool&) { timers.fire("tmrPacketWait"); }, {}, 10000);
    }
};

// The host has taken in sections 1 to 3 when the cable goes: the user is told, the editor keeps
// the edit, and the terminal is Idle until the user connects again.
TEST_F(Faults, ACablePulledInTheMiddleOfAnUpdate)
{
    pullCableAt(packet_type::PortParms, 3);
    // The connect's timer hands over to the socket watch, as it does once the socket is up.
    test::whenReady([this]() -> bool* { return program && filled() ? &loggedIn : nullptr; },
        [this](bool&) {
            timers.fire("tmrConnectionTimeout");
            timers.fire("tmrSocketStatus");
        });
    QString shownAfter;
    bool told = false, toldGone = false;
    whenModal<frmCommParms>([&](frmCommParms& editor) {
        QLineEdit& footer = test::typeFooter(editor, QStringLiteral("M99"));
        pressOk(std::string(message::UpdateNoAck), told);
        QTest::mouseClick(&control<QPushButton>(editor, "cmdUpdate"), Qt::LeftButton);
        // Update again, the host gone: said in the words every command uses, the edit kept.
        pressOk(message::noSocketConnection(), toldGone);
        QTest::mouseClick(&control<QPushButton>(editor, "cmdUpdate"), Qt::LeftButton);
        shownAfter = footer.text();
        QTest::mouseClick(&control<QPushButton>(editor, "cmdExit"), Qt::LeftButton);
    });
    const std::string hostsFooter = plant.host.plant().parms.PortCommParmsTable[2].ConfirmFooter;
    start(editingPort(3));
    ASSERT_TRUE(waitFor([&] { return !shownAfter.isEmpty(); }));
    EXPECT_TRUE(told);
    EXPECT_TRUE(toldGone);
    EXPECT_EQ(shownAfter, QStringLiteral("M99"));
    EXPECT_EQ(program->mainWindow()->session().parmsTables().PortCommParmsTable[2].ConfirmFooter, "M99");
    EXPECT_EQ(plant.host.plant().parms.PortCommParmsTable[2].ConfirmFooter, hostsFooter) << "section 5 never went";
    const std::vector<QJsonObject> record = test::changeRecordLines(plant.folder.logs(), 3);
    ASSERT_EQ(record.size(), 1u);
    EXPECT_EQ(record[0].value(QStringLiteral("outcome")).toString(), QStringLiteral("connection-lost"));
    EXPECT_EQ(record[0].value(QStringLiteral("section")).toInt(), 3);
    timers.fire("tmrSocketStatus"); // the socket watch's next look finds the connection gone
    EXPECT_EQ(control<QLabel>(*program->mainWindow(), "lblSocketStatus").text(), QStringLiteral("Idle"));
    QTest::mouseClick(&control<QPushButton>(*program->mainWindow(), "Command1"), Qt::LeftButton);
    EXPECT_TRUE(waitFor([this] { return program->mainWindow()->session().connected() && filled(); }));
}

// The cable goes while section 3 of a fetch is asked for: the user is told, and the editor shows
// none of the port's values (sections 1 and 2 came, but not with the rest) and offers no Update.
TEST_F(Faults, ACablePulledInTheMiddleOfAFetch)
{
    pullCableAt(packet_type::PortParmsRequest, 3);
    bool told = false;
    pressOk(std::string(message::FetchCommParmsTimeout), told);
    QString name = QStringLiteral("unread"), state;
    bool tabsShown = true, updateOn = true;
    whenModal<frmCommParms>(
        [&](frmCommParms& editor) {
            name = control<QLineEdit>(editor, "WorkstationName").text();
            state = control<QLabel>(editor, "lblFetchState").text();
            tabsShown = control<QTabWidget>(editor, "CommTab").isVisible();
            updateOn = control<QPushButton>(editor, "cmdUpdate").isEnabled();
            QTest::mouseClick(&control<QPushButton>(editor, "cmdExit"), Qt::LeftButton);
        },
        10000);
    start(editingPort(15));
    ASSERT_TRUE(waitFor([&] { return !state.isEmpty(); }, 10000));
    EXPECT_TRUE(told);
    EXPECT_EQ(name, QString()) << "section 1 came, but not the whole port";
    EXPECT_TRUE(state.contains(QStringLiteral("sections 3, 4, 5 and 6 missing"))) << state.toStdString();
    EXPECT_FALSE(tabsShown);
    EXPECT_FALSE(updateOn);
    ASSERT_TRUE(test::waitUntilIdle());
    EXPECT_EQ(plant.receivedOfType(packet_type::PortParms), 0u);
}

// An oversized status reply fails in the dispatch's trap (positions past 32,767 overflow) and
// leaves the grid as it was until a refresh; a trickling host leaves the terminal Idle.
TEST_F(Faults, WhatTheHostSendsAndTheStateItLeaves)
{
    struct Case {
        const char* name;
        std::function<void(hostsim::Faults&)> fault;
        bool connected;
        bool filled;
        const char* errorLog; // a line error.log gains, or ""
    } const cases[] = {
        {"each reply joined with a status packet", [](auto& f) { f.joinWithStatus = true; }, true, true, ""},
        {"every packet in three chunks", [](auto& f) { f.splitInto = 3; }, true, true, ""},
        {"a status reply of 40,000 characters", [](auto& f) { f.bigPacketSize = 40000; }, true, false,
            "Error Location 155 Err = 6 "},
        {"a byte every 100 ms", [](auto& f) { f.dribbleMs = 100; }, false, false, ""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        c.fault(plant.host.faults);
        if (!c.connected) {
            // The version reply is under way a byte at a time when the version wait runs out.
            const int before = plant.host.chunksWritten();
            test::whenReady(
                [this, before]() -> bool* { return plant.host.chunksWritten() > before ? &loggedIn : nullptr; },
                [this](bool&) { timers.fire("tmrPacketTimeOut"); });
            test::whenMessage(
                message::fetchVersionTimeout(), [](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Return); });
        }
        frmCVRemote& window = start(connectingTo(1));
        HostSession& session = window.session();
        ASSERT_TRUE(waitFor([&] { return loggedIn; }));
        ASSERT_TRUE(waitFor([&] {
            return session.connectState() == ConnectState::Connected ? plant.host.answers() >= 2
                                                                     : session.connectState() == ConnectState::Idle;
        }));
        EXPECT_EQ(session.connected(), c.connected);
        if (c.filled) {
            EXPECT_TRUE(waitFor([&] { return filled(); }));
        } else {
            // Not filled once the host has sent what it had (to a terminal still connected) and
            // the program has taken it in.
            ASSERT_TRUE(test::waitUntilIdle([&] { return plant.host.allSent() || !session.connected(); }));
            EXPECT_FALSE(filled());
        }
        if (*c.errorLog) {
            EXPECT_TRUE(waitFor([&] { return plant.folder.read("error.log").find(c.errorLog) != std::string::npos; }));
            QTest::mouseClick(&control<QPushButton>(window, "cmdRefresh"), Qt::LeftButton);
            EXPECT_TRUE(waitFor([&] { return filled(); })) << "the next reply is taken in as ever";
        }
        window.close();
        ASSERT_TRUE(waitFor([&] { return !plant.host.hasTerminal(); }));
        std::filesystem::remove(plant.folder.file("error.log"));
        plant.host.faults = {};
        program.reset();
        loggedIn = false;
    }
}

// Logs that cannot be written go unsaid, and a box opened while an arrival is dispatched holds
// up nothing: under "No Packet String" the version reply is read and the grid fills.
TEST_F(Faults, NoLogsAndATextThatIsNoPacketHoldUpNothing)
{
    plant.folder.write("not-a-folder", "");
    places.programFolder = plant.folder.file("not-a-folder").string();
    plant.host.faults.noPacketTextOnConnect = true;
    bool filledUnderTheBox = false;
    test::whenBox<QMessageBox>(
        [this](QMessageBox& box) { return box.text() == QLatin1String(message::NoPacketString) && filled(); },
        [&](QMessageBox& box) {
            filledUnderTheBox = true;
            QTest::keyClick(&box, Qt::Key_Return);
        });
    start(connectingTo(1));
    ASSERT_TRUE(waitFor([&] { return filledUnderTheBox; })) << "no version time-out";
    EXPECT_FALSE(untrappedEnd.has_value());
}

// A store that is not sound ends the program before anything reaches the host: one that does not
// read is logged, one that reads but is not whole or lacks a reserved user is said in the box.
TEST_F(Faults, AUserStoreThatIsNotSound)
{
    const std::filesystem::path store = plant.folder.places().storeFile;
    const std::string sound = plant.folder.read("BRELLWICK/BWKXBIDS.DAT");
    struct Case {
        const char* name;
        std::function<void()> damage;
        const char* errorLog; // what error.log gains; "" nothing
        const char* reason; // said after the usual words, or nullptr
    } const cases[] = {
        {"a byte that does not unscramble",
            [&] { plant.folder.write("BRELLWICK/BWKXBIDS.DAT", '\0' + sound.substr(1)); },
            "Error Location 143 Err = 6 ", nullptr},
        {"a folder where the store should be",
            [&] { std::filesystem::remove(store), std::filesystem::create_directory(store); },
            "Error Location 143 Err = ", nullptr},
        {"less than one whole record", [&] { plant.folder.write("BRELLWICK/BWKXBIDS.DAT", sound.substr(0, 100)); }, "",
            "The user store ends in a record cut short."},
        {"a last record cut short", [&] { plant.folder.write("BRELLWICK/BWKXBIDS.DAT", sound + sound.substr(0, 60)); },
            "", "The user store ends in a record cut short."},
        {"the supervisor alone",
            [&] { plant.folder.write("BRELLWICK/BWKXBIDS.DAT", sound.substr(0, UserRecordLength)); }, "",
            "The user store holds no GUEST."},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        std::filesystem::remove_all(store);
        plant.folder.write("BRELLWICK/BWKXBIDS.DAT", sound);
        std::filesystem::remove(plant.folder.file("error.log"));
        c.damage();
        bool told = false;
        pressOk(message::accessDenied() + (c.reason ? "\r\n\r\n" + std::string(c.reason) : std::string()), told);
        finished.reset();
        loggedIn = false;
        start(connectingTo(1));
        ASSERT_TRUE(waitFor([&] { return finished.has_value(); }));
        EXPECT_TRUE(told);
        EXPECT_EQ(*finished, EXIT_FAILURE);
        EXPECT_FALSE(loggedIn);
        if (*c.errorLog)
            EXPECT_NE(plant.folder.read("error.log").find(c.errorLog), std::string::npos);
        else
            EXPECT_FALSE(std::filesystem::exists(plant.folder.file("error.log")));
        EXPECT_FALSE(plant.host.hasTerminal());
        program.reset();
    }
}

} // namespace
} // namespace corvane
