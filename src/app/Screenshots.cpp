#include "app/Screenshots.h"

#include "commparms/forms/frmCommParms.h"
#include "commparms/forms/frmFileNotFoundMsg.h"
#include "shell/forms/frmCVRemote.h"
#include "shell/forms/frmCVRemoteStartup.h"
#include "shell/forms/frmConfiguration.h"

#include <QApplication>
#include <QDir>
#include <QEventLoop>
#include <QPushButton>
#include <QTabWidget>
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
        main.connectToHost();
        // The connect returns once the status request is out; the grid fills when the reply is in,
        // and the label turns green on the connection timer's next tick.
        auto* poll = new QTimer(&main);
        QObject::connect(poll, &QTimer::timeout, &main, [this, &main, poll] {
            if (main.session().portStatus().front().WorkstationName.empty()
                || main.session().socketCaption() != QStringLiteral("Connected"))
                return;
            poll->stop();
            QTimer::singleShot(SettleMs, &main, [this, &main] {
                save(main, "main.png");
                frmConfiguration form(
                    main.configuration(), main.terminal().logs(), services_.boxes, main.session().changeActor(), &main);
                form.show();
                settle();
                save(form, "configuration.png");
                form.close();
                editorOf(main);
            });
        });
        poll->start(50);
    });
}

// The parameter editor of a port, on each of its tabs, and its file-not-found form.
void Screenshots::editorOf(frmCVRemote& main)
{
    QObject::connect(&main, &frmCVRemote::commParmsOpened, &main, [this, &main](frmCommParms& editor) {
        QObject::connect(&editor, &frmCommParms::activated, &editor, [this, &main, &editor] {
            auto* tabs = editor.findChild<QTabWidget*>(QStringLiteral("CommTab"));
            for (int tab = 0; tab < tabs->count(); ++tab) {
                tabs->setCurrentIndex(tab);
                settle();
                save(editor, QStringLiteral("commparms-%1.png").arg(tab + 1).toLatin1().constData());
            }
            tabs->setCurrentIndex(1);
            QTimer::singleShot(SettleMs, &editor, [this] {
                if (auto* form = qobject_cast<frmFileNotFoundMsg*>(QApplication::activeModalWidget())) {
                    save(*form, "filenotfound.png");
                    form->reject();
                }
            });
            editor.findChild<QPushButton*>(QStringLiteral("cmdEditMsg"))->click();
            editor.accept();
            main.close(); // the program ends with its main window
        });
    });
    main.selectRow(14); // EDM 1, which collects data
    main.editParameters();
}

void Screenshots::settle()
{
    QEventLoop settle;
    QTimer::singleShot(SettleMs, &settle, &QEventLoop::quit);
    settle.exec();
}

} // namespace corvane
