#pragma once

#include "dialogs/Services.h"
#include "platform/ProgramTimer.h"
#include "session/Terminal.h"

#include <QMainWindow>

#include <memory>

namespace Ui {
class frmCVRemoteStartup;
}

namespace corvane {

// The start-up form: Continue opens the main window (tmrStartup presses it after 2.5 s),
// Exit ends the program; its Configuration menu needs write access to the machine's settings.
class frmCVRemoteStartup : public QMainWindow {
    Q_OBJECT

public:
    frmCVRemoteStartup(Terminal& terminal, Services& services, QWidget* parent = nullptr);
    ~frmCVRemoteStartup() override;

Q_SIGNALS:
    void continued(); // open the main window
    void exited(); // end the program

protected:
    bool event(QEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    void Form_Activate();
    void openConfiguration();

    std::unique_ptr<Ui::frmCVRemoteStartup> ui;
    Terminal& terminal_;
    Services& services_;
    std::unique_ptr<ProgramTimer> tmrStartup;
};

} // namespace corvane
