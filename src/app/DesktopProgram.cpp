#include "app/DesktopProgram.h"

#include "shell/forms/frmCVRemote.h"
#include "shell/forms/frmCVRemoteStartup.h"

#include <memory>

namespace corvane {

DesktopProgram::DesktopProgram(ProgramOptions options, Terminal& terminal, Services& services, QObject* parent)
    : QObject(parent)
    , options_(std::move(options))
    , services_(services)
    , terminal_(terminal)
{
}

DesktopProgram::~DesktopProgram()
{
    delete main_;
    delete startup_;
}

void DesktopProgram::start()
{
    startup_ = new frmCVRemoteStartup(terminal_, services_);
    connect(startup_, &frmCVRemoteStartup::exited, this, [this] { Q_EMIT finished(EXIT_SUCCESS); });
    connect(startup_, &frmCVRemoteStartup::continued, this, &DesktopProgram::openMainWindow);
    startup_->show();
    Q_EMIT startupShown(*startup_);
}

void DesktopProgram::openMainWindow()
{
    main_ = new frmCVRemote(terminal_, services_);
    main_->setAttribute(Qt::WA_DeleteOnClose);
    connect(main_, &frmCVRemote::programEnded, this, &DesktopProgram::finished);
    if (options_.connectHost) {
        // Only once the user is known: the grid does not fill behind a password prompt.
        connect(main_, &frmCVRemote::loggedIn, this, [this] {
            if (*options_.connectHost >= 1)
                main_->selectHost(*options_.connectHost);
            main_->connectToHost();
        });
    }
    if (options_.editPort) {
        // Once connected and the port states are in, the port's row and the button, as a user would.
        auto once = std::make_shared<QMetaObject::Connection>();
        *once = connect(main_, &frmCVRemote::portTableUpdated, this, [this, once] {
            if (main_->session().connectState() != ConnectState::Connected)
                return;
            disconnect(*once);
            QMetaObject::invokeMethod(
                this,
                [this] {
                    main_->selectRow(*options_.editPort - 1);
                    main_->editParameters();
                },
                Qt::QueuedConnection);
        });
    }
    main_->show();
    Q_EMIT mainWindowShown(*main_);
}

} // namespace corvane
