#pragma once

#include "dialogs/Services.h"
#include "security/Login.h"
#include "security/Rights.h"
#include "security/forms/SecurityPrompts.h"
#include "session/HostConfiguration.h"
#include "session/HostSession.h"
#include "session/PortStatusModel.h"
#include "session/SessionUi.h"
#include "session/Terminal.h"
#include "widgets/ActivityWatch.h"

#include <QMainWindow>

#include <memory>
#include <optional>

namespace Ui {
class frmCVRemote;
}

namespace corvane {

class frmCommParms;

// The main window: host picker and connection, the port grid, the port commands, the menus.
// It owns the host session and answers what the session shows and asks. It never ends the
// program itself: it says so with programEnded, and the program's main ends it.
class frmCVRemote : public QMainWindow, private SessionUi {
    Q_OBJECT

public:
    // The main window of `terminal`, whose session it answers while it lives.
    frmCVRemote(Terminal& terminal, Services& services, QWidget* parent = nullptr);
    ~frmCVRemote() override;

    HostSession& session() { return session_; }
    HostConfiguration& configuration() { return config_; }
    const UserStore& users() const { return store_; }
    Terminal& terminal() { return terminal_; }
    // Selects host n (1-5) as a click in the picker would; false for a host there is not.
    bool selectHost(int n);
    // Makes grid row `row` the current one, as a click on it would.
    void selectRow(int row);
    // The connect button's command, and the parameter editor's, as their clicks run them (with
    // the same access checks and error traps).
    void connectToHost();
    void editParameters();

Q_SIGNALS:
    // The start-up log-in has been answered: the program is ready for its user.
    void loggedIn();
    // The program ends with this exit status (window closed, idle log-off, no user store).
    void programEnded(int exitStatus);
    // The parameter editor is about to load and show (the pictures of the demo take it).
    void commParmsOpened(frmCommParms& editor);
    // A status reply has been shown in the grid.
    void portTableUpdated();

protected:
    bool event(QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    // SessionUi
    void showMessage(const std::string& text) override;
    std::int16_t askYesNo(const std::string& text) override;
    void showSocketStatus(const QString& caption, std::uint32_t colour) override;
    void portTableChanged() override;
    void rememberGridPosition() override;
    void afterDisconnect() override;
    void notFtpRefused() override;
    void idleLoggedOff() override;

    void Form_Activate();
    void activate();
    void endProgram(int exitStatus);
    void Populate_Host();
    void layOut();
    void rowChanged(int row);
    void setCurrentRow(const std::optional<std::string>& bookmark);
    void setNotFtpColour(const QColor& colour);
    void currentUserChanged();
    void openConfiguration();
    void changeUser();
    void openCommParms();
    template <typename Body> void guardedCommand(Body&& body);
    void bindKeys();
    bool eventFilter(QObject* watched, QEvent* event) override;
    std::string title() const;

    std::unique_ptr<Ui::frmCVRemote> ui;
    Services& services_;
    Terminal& terminal_;
    HostConfiguration& config_;
    UserStore& store_;
    RightsList& rights_;
    LoginValues& login_;
    SecurityPrompts prompts_;
    SessionHold hold_;
    HostSession& session_;
    PortStatusModel model_;
    ActivityWatch activity_; // any key, click or scroll anywhere in the program resets the idle count
    bool firstActivation_ = true;
    bool activating_ = false;
    bool editorOpen_ = false;
    std::optional<std::string> currentBookmark_; // the row the user last moved to
    std::optional<std::string> rememberedBookmark_; // put back after a disconnect
    std::optional<std::string> formBookmark_; // Set Bookmark / Get Bookmark
    std::optional<int> ended_;
};

} // namespace corvane
