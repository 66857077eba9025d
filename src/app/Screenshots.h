#pragma once

#include <QString>

class QWidget;

namespace corvane {

class frmCVRemote;
class frmCVRemoteStartup;
struct Services;

// Takes the README's pictures of the demo: the start-up form, the main window connected with its
// grid filled, the configuration form, the parameter editor of the first port on each of its
// tabs and its file-not-found form; then closes the main window, which ends the program.
class Screenshots {
public:
    Screenshots(QString folder, Services& services);
    void startupShown(frmCVRemoteStartup& startup);
    void mainShown(frmCVRemote& main);

private:
    bool save(QWidget& widget, const char* name);
    void connectedShown(frmCVRemote& main);
    void editorOf(frmCVRemote& main);
    static void settle(QWidget& widget);
    QString folder_;
    Services& services_;
};

} // namespace corvane
