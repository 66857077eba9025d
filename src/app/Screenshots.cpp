#include "app/Screenshots.h"

#include "shell/forms/frmCVRemote.h"
#include "shell/forms/frmCVRemoteStartup.h"
#include "shell/forms/frmConfiguration.h"

#include <QApplication>
#include <QDir>
#include <QPushButton>
#include <QTimer>

#include <cstdio>

namespace corvane {
namespace {

// Long enough for a window to be laid out and painted.
constexpr int SettleMs = 400;

} // namespace

Screenshots::Screenshots(QString folder, Services& services)
    : folder_(std::move(folder))
    , services_(services)
{
    QDir().mkpath(folder_);
}

bool Screenshots::save(QWidget& widget, const char* name)
{
    const QString path = QDir(folder_).filePath(QString::fromLatin1(name));
    const bool saved = widget.grab().save(path);
    std::printf("%s %s\n", saved ? "wrote" : "could not write", qPrintable(path));
    return saved;
}

void Screenshots::startupShown(frmCVRemoteStartup& startup)
{
    QTimer::singleShot(SettleMs, &startup, [this, &startup] {
        save(startup, "startup.png");
        startup.findChild<QPushButton*>(QStringLiteral("cmdContinue"))->click();
    });
}

void Screenshots::mainShown(frmCVRemote& main)
{
    QTimer::singleShot(SettleMs, &main, [this, &main] {
        main.selectHost(1);
        main.findChild<QPushButton*>(QStringLiteral("Command1"))->click();
        // The connect returns once the status request is out; the grid fills when the reply is in,
        // and the label turns green on the connection timer's next tick.
        auto* poll = new QTimer(&main);
        QObject::connect(poll, &QTimer::timeout, &main, [this, &main, poll] {
            if (main.session().portStatus().front().WorkstationName.empty() ||
                main.session().socketCaption() != QStringLiteral("Connected"))
                return;
            poll->stop();
            QTimer::singleShot(SettleMs, &main, [this, &main] {
                save(main, "main.png");
                frmConfiguration form(main.configuration(), services_.boxes, &main);
                form.show();
                QEventLoop settle;
                QTimer::singleShot(SettleMs, &settle, &QEventLoop::quit);
                settle.exec();
                save(form, "configuration.png");
                form.close();
                main.close(); // the program ends with its main window
            });
        });
        poll->start(50);
    });
}

} // namespace corvane
