#pragma once

#include "app/ProgramOptions.h"
#include "dialogs/Services.h"
#include "session/Terminal.h"
#include "shell/forms/frmCVRemote.h"
#include "shell/forms/frmCVRemoteStartup.h"

#include <QObject>
#include <QPointer>

namespace corvane {

// The desktop program as its user meets it: the start-up form, then the main window, and the
// connect that --connect asks for once the log-in is answered. It ends when its windows say so.
class DesktopProgram : public QObject {
    Q_OBJECT

public:
    // The desktop program of `terminal`, its windows given `services`.
    DesktopProgram(ProgramOptions options, Terminal& terminal, Services& services, QObject* parent = nullptr);
    ~DesktopProgram() override;

    // Shows the start-up form.
    void start();

    frmCVRemoteStartup* startupForm() const { return startup_; }
    frmCVRemote* mainWindow() const { return main_; }

Q_SIGNALS:
    void startupShown(frmCVRemoteStartup& form);
    void mainWindowShown(frmCVRemote& window);
    // The program has ended with this exit status; main returns it.
    void finished(int exitStatus);

private:
    void openMainWindow();

    ProgramOptions options_;
    Services& services_;
    Terminal& terminal_;
    QPointer<frmCVRemoteStartup> startup_;
    QPointer<frmCVRemote> main_;
};

} // namespace corvane
