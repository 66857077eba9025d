#include "shell/forms/frmCVRemoteStartup.h"

#include "dialogs/MessageBoxes.h"
#include "platform/Latin1.h"
#include "session/HostConfiguration.h"
#include "shell/SessionMessages.h"
#include "shell/VersionRules.h"
#include "shell/forms/frmConfiguration.h"
#include "ui_frmCVRemoteStartup.h"

#include <QApplication>

namespace corvane {

frmCVRemoteStartup::frmCVRemoteStartup(Terminal& terminal, Services& services, QWidget* parent)
    : QMainWindow(parent)
    , ui(std::make_unique<Ui::frmCVRemoteStartup>())
    , terminal_(terminal)
    , services_(services)
    , tmrStartup(terminal.timers().make("tmrStartup", 2500))
{
    ui->setupUi(this);
    ui->lblVersion->setText(QStringLiteral("Version ") + QString::fromLatin1(clientVersionText().c_str()));
    connect(tmrStartup.get(), &ProgramTimer::timeout, this, [this] {
        tmrStartup->stop(); // it fires once
        if (ui->cmdContinue->isEnabled())
            ui->cmdContinue->click();
    });
    connect(ui->cmdContinue, &QPushButton::clicked, this, [this] {
        tmrStartup->stop();
        hide();
        Q_EMIT continued();
        deleteLater();
    });
    connect(ui->cmdExit, &QPushButton::clicked, this, [this] {
        tmrStartup->stop();
        hide();
        Q_EMIT exited();
        deleteLater();
    });
    connect(ui->mnuConfiguration, &QAction::triggered, this, &frmCVRemoteStartup::openConfiguration);
}

frmCVRemoteStartup::~frmCVRemoteStartup() = default;

bool frmCVRemoteStartup::event(QEvent* event)
{
    if (event->type() == QEvent::WindowActivate)
        Form_Activate();
    return QMainWindow::event(event);
}

// Without a window manager the form may never be activated: being shown then counts, so that
// the program goes on by itself wherever the form can be seen.
void frmCVRemoteStartup::showEvent(QShowEvent* event)
{
    QMainWindow::showEvent(event);
    Form_Activate();
}

void frmCVRemoteStartup::Form_Activate()
{
    if (ui->cmdContinue->isEnabled() && tmrStartup->isActive())
        return; // already counting down; a second activation does not start it over
    ui->cmdContinue->setEnabled(true);
    tmrStartup->start();
}

void frmCVRemoteStartup::openConfiguration()
{
    tmrStartup->stop(); // nobody is carried on past a form they are filling in
    HostConfiguration config(terminal_.registry());
    config.load();
    if (!config.machineHiveWritable()) {
        services_.boxes.MsgBox(message::insufficientRights(), 0, toLatin1Bytes(QApplication::applicationName()));
    } else {
        // Before anyone has logged in: the record names the program and its account only.
        frmConfiguration form(
            config, terminal_.logs(), services_.boxes, ChangeActor{"desktop", terminal_.osUser(), {}, {}}, this);
        form.exec();
    }
    Form_Activate(); // back at the start-up form, whether or not the window system says so
}

} // namespace corvane
