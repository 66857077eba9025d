#pragma once
// The desktop program as a test starts it: as main does, with the simulated host as host 1, real
// message boxes, and the program's clock in the test's hands.
#include "app/DesktopProgram.h"
#include "commparms/forms/frmCommParms.h"
#include "dialogs/MessageBoxes.h"
#include "support/Forms.h"
#include "support/ManualTimers.h"
#include "support/SimulatedPlant.h"

#include <QAbstractEventDispatcher>
#include <QLineEdit>
#include <QMessageBox>
#include <QTabWidget>
#include <QTest>

#include <gtest/gtest.h>

#include <memory>
#include <optional>

namespace corvane::test {

inline void whenMessage(const std::string& text, std::function<void(QMessageBox&)> answer)
{
    whenBox<QMessageBox>([text](QMessageBox& box) { return box.text() == QString::fromStdString(text); }, answer);
}

// Presses OK on the box that says `text` once it is up, and notes that it came.
inline void pressOk(const std::string& text, bool& came)
{
    whenMessage(text, [&came](QMessageBox& box) {
        came = true;
        QTest::keyClick(&box, Qt::Key_Return);
    });
}

inline ProgramOptions connectingTo(int host)
{
    ProgramOptions options;
    options.connectHost = host;
    return options;
}

// Connected to host 1, the editor opened on this port as its user would.
inline ProgramOptions editingPort(int port)
{
    ProgramOptions options = connectingTo(1);
    options.editPort = port;
    return options;
}

// Types over the confirmation footer, on the tab that shows it, as a user does.
inline QLineEdit& typeFooter(frmCommParms& editor, const QString& text)
{
    control<QTabWidget>(editor, "CommTab").setCurrentIndex(1);
    auto& footer = control<QLineEdit>(editor, "txtConfirmFooter");
    footer.setFocus();
    footer.selectAll();
    QTest::keyClicks(&footer, text);
    return footer;
}

class DesktopProgramTest : public ::testing::Test {
public:
    test::SimulatedPlant plant;
    test::ManualTimers timers;
    std::optional<int> untrappedEnd;
    GenMsgBoxes boxes{[this](int status) { untrappedEnd = status; }};
    test::ScriptedDesktop desktop;
    Services services{boxes, desktop};
    Places places = plant.folder.places(); // a test may move them before it starts the program
    std::unique_ptr<Terminal> terminal;
    std::unique_ptr<DesktopProgram> program;
    std::optional<int> finished;

    void SetUp() override { plant.folder.useAsStoreRoot(); }

    // Starts the program as main does, and lets the start-up form go on by itself.
    frmCVRemote& start(ProgramOptions options = {})
    {
        program.reset(); // a program started before goes with its terminal
        terminal = std::make_unique<Terminal>(*plant.registry, timers, "tester", places, ScratchProgramFolder::clock());
        program = std::make_unique<DesktopProgram>(std::move(options), *terminal, services);
        QObject::connect(program.get(), &DesktopProgram::finished, [this](int status) { finished = status; });
        // The moment an update looks for late acknowledgements passes once the host has sent all
        // it had to send, a surplus included.
        timers.tickWhenIdle("tmrAckSettle", program.get(), [this] { return plant.host.allSent(); });
        program->start();
        EXPECT_TRUE(timers["tmrStartup"].isActive()) << "shown is enough; no activation needed";
        timers.fire("tmrStartup");
        QObject::connect(program->mainWindow(), &frmCVRemote::loggedIn, [this] { loggedIn = true; });
        return *program->mainWindow();
    }
    // The same, up to the user's being logged in.
    frmCVRemote& startAndLogIn()
    {
        frmCVRemote& window = start();
        EXPECT_TRUE(waitFor([this] { return loggedIn; }));
        return window;
    }
    bool loggedIn = false;
    bool filled() const { return !program->mainWindow()->session().portStatus()[0].WorkstationName.empty(); }
};

} // namespace corvane::test
