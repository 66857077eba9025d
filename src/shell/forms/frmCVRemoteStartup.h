#pragma once

#include "shell/forms/Services.h"

#include <QMainWindow>
#include <QTimer>

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
    explicit frmCVRemoteStartup(Services& services, QWidget* parent = nullptr);
    ~frmCVRemoteStartup() override;

    QTimer tmrStartup;

Q_SIGNALS:
    void continued(); // open the main window
    void exited(); // end the program

protected:
    bool event(QEvent* event) override;

private:
    void openConfiguration();

    std::unique_ptr<Ui::frmCVRemoteStartup> ui;
    Services& services_;
};

} // namespace corvane
