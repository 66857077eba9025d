#include "shell/forms/frmCVRemoteStartup.h"

#include "dialogs/MessageBoxes.h"
#include "shell/HostConfiguration.h"
#include "platform/Latin1.h"
#include "shell/SessionMessages.h"
#include "shell/VersionRules.h"
#include "shell/forms/frmConfiguration.h"
#include "ui_frmCVRemoteStartup.h"

#include <QApplication>

namespace corvane {

frmCVRemoteStartup::frmCVRemoteStartup(Services& services, QWidget* parent)
    : QMainWindow(parent)
    , ui(std::make_unique<Ui::frmCVRemoteStartup>())
    , services_(services)
{
    ui->setupUi(this);
    ui->lblVersion->setText(QStringLiteral("Version ") + QString::fromLatin1(clientVersionText().c_str()));
    tmrStartup.setSingleShot(true);
    tmrStartup.setInterval(services.startupDelayMs);
    connect(&tmrStartup, &QTimer::timeout, this, [this] {
        if (ui->cmdContinue->isEnabled())
            ui->cmdContinue->click();
    });
    connect(ui->cmdContinue, &QPushButton::clicked, this, [this] {
        tmrStartup.stop();
        hide();
        Q_EMIT continued();
        deleteLater();
    });
    connect(ui->cmdExit, &QPushButton::clicked, this, [this] {
        tmrStartup.stop();
        hide();
        Q_EMIT exited();
        deleteLater();
    });
    connect(ui->mnuConfiguration, &QAction::triggered, this, &frmCVRemoteStartup::openConfiguration);
}

frmCVRemoteStartup::~frmCVRemoteStartup() = default;

bool frmCVRemoteStartup::event(QEvent* event)
{
    if (event->type() == QEvent::WindowActivate) {
        ui->cmdContinue->setEnabled(true);
        tmrStartup.start();
    }
    return QMainWindow::event(event);
}

void frmCVRemoteStartup::openConfiguration()
{
    tmrStartup.stop(); // nobody is carried on past a form they are filling in
    HostConfiguration config(services_.registry);
    config.load();
    if (!config.machineHiveWritable()) {
        services_.boxes.MsgBox(message::insufficientRights(), 0, toLatin1Bytes(QApplication::applicationName()));
        return;
    }
    frmConfiguration form(config, services_.boxes, this);
    form.exec();
}

} // namespace corvane
