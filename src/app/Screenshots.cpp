#include "app/Screenshots.h"

#include "commparms/forms/frmCommParms.h"
#include "commparms/forms/frmFileNotFoundMsg.h"
#include "platform/Idle.h"
#include "shell/forms/frmCVRemote.h"
#include "shell/forms/frmCVRemoteStartup.h"
#include "shell/forms/frmConfiguration.h"

#include <QApplication>
#include <QDir>
#include <QPushButton>
#include <QTabWidget>
#include <QWindow>

#include <cstdio>

namespace corvane {
namespace {

// A window settles in a few milliseconds; this is for a display that never shows it.
constexpr int SettleLimitMs = 2000;

// Notes the first paint of a widget from now on.
class PaintWatch final : public QObject {
public:
    explicit PaintWatch(QWidget& widget)
        : widget_(widget)
    {
        widget.installEventFilter(this);
    }
    ~PaintWatch() override { widget_.removeEventFilter(this); }
    bool painted() const { return painted_; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (watched == &widget_ && event->type() == QEvent::Paint)
            painted_ = true;
        return false;
    }

private:
    QWidget& widget_;
    bool painted_ = false;
};

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
    QMetaObject::invokeMethod(
        &startup,
        [this, &startup] {
            settle(startup);
            save(startup, "startup.png");
            startup.findChild<QPushButton*>(QStringLiteral("cmdContinue"))->click();
        },
        Qt::QueuedConnection);
}

void Screenshots::mainShown(frmCVRemote& main)
{
    QMetaObject::invokeMethod(
        &main,
        [this, &main] {
            settle(main);
            main.selectHost(1);
            main.connectToHost();
            // The connect returns once the status request is out; the grid fills when the reply is
            // in, and the label turns green on the connection timer's next tick.
            auto* filled = new QObject(&main);
            whenIdle(
                filled,
                [&main] {
                    return !main.session().portStatus().front().WorkstationName.empty()
                        && main.session().socketCaption() == QStringLiteral("Connected");
                },
                [this, &main, filled] {
                    filled->deleteLater();
                    QMetaObject::invokeMethod(
                        &main, [this, &main] { connectedShown(main); }, Qt::QueuedConnection);
                });
        },
        Qt::QueuedConnection);
}

void Screenshots::connectedShown(frmCVRemote& main)
{
    settle(main);
    save(main, "main.png");
    frmConfiguration form(
        main.configuration(), main.terminal().logs(), services_.boxes, main.session().changeActor(), &main);
    form.show();
    settle(form);
    save(form, "configuration.png");
    form.close();
    editorOf(main);
}

// The parameter editor of a port, on each of its tabs, and its file-not-found form.
void Screenshots::editorOf(frmCVRemote& main)
{
    QObject::connect(&main, &frmCVRemote::commParmsOpened, &main, [this, &main](frmCommParms& editor) {
        QObject::connect(&editor, &frmCommParms::activated, &editor, [this, &main, &editor] {
            auto* tabs = editor.findChild<QTabWidget*>(QStringLiteral("CommTab"));
            for (int tab = 0; tab < tabs->count(); ++tab) {
                tabs->setCurrentIndex(tab);
                settle(editor);
                save(editor, QStringLiteral("commparms-%1.png").arg(tab + 1).toLatin1().constData());
            }
            tabs->setCurrentIndex(1);
            // Comes up inside the form's own loop, which the button opens.
            QMetaObject::invokeMethod(
                &editor,
                [this] {
                    if (auto* form = qobject_cast<frmFileNotFoundMsg*>(QApplication::activeModalWidget())) {
                        settle(*form);
                        save(*form, "filenotfound.png");
                        form->reject();
                    }
                },
                Qt::QueuedConnection);
            editor.findChild<QPushButton*>(QStringLiteral("cmdEditMsg"))->click();
            editor.accept();
            main.close(); // the program ends with its main window
        });
    });
    main.selectRow(14); // EDM 1, which collects data
    main.editParameters();
}

// Until the window is on the screen (under a window manager: framed and mapped by it), has been
// painted there since, and nothing else waits: its layouts, the grid's rows, the window
// manager's answers all taken in.
void Screenshots::settle(QWidget& widget)
{
    QWidget& window = *widget.window();
    PaintWatch paint(window);
    window.update();
    const bool idle = waitUntilIdle(
        [&window, &paint] { return window.windowHandle() && window.windowHandle()->isExposed() && paint.painted(); },
        SettleLimitMs);
    if (!idle)
        std::printf("%s had not settled after %d ms; its picture is taken as it stands\n",
            qPrintable(window.objectName()), SettleLimitMs);
}

} // namespace corvane
