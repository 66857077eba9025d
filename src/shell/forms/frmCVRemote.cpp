#include "shell/forms/frmCVRemote.h"

#include "commparms/PortParms.h"
#include "dialogs/MessageBoxes.h"
#include "dialogs/UntrappedError.h"
#include "protocol/Framing.h"
#include "security/LastUser.h"
#include "security/forms/frmChangeUser.h"
#include "security/forms/frmSupervisorOps.h"
#include "platform/InstalledPrinters.h"
#include "platform/Latin1.h"
#include "shell/ConfigurationRules.h"
#include "shell/GridRules.h"
#include "shell/SessionMessages.h"
#include "shell/VersionRules.h"
#include "shell/forms/AboutDlg.h"
#include "shell/forms/frmConfiguration.h"
#include "ui_frmCVRemote.h"

#include <QApplication>
#include <QCloseEvent>
#include <QScrollBar>

namespace corvane {
namespace {

QColor fromBgr(std::uint32_t bgr)
{
    return QColor(bgr & 0xFF, (bgr >> 8) & 0xFF, (bgr >> 16) & 0xFF);
}

void setBackground(QWidget* widget, const QColor& colour)
{
    QPalette palette = widget->palette();
    palette.setColor(QPalette::Window, colour);
    palette.setColor(QPalette::WindowText, Qt::black);
    widget->setPalette(palette);
}

} // namespace

frmCVRemote::frmCVRemote(Services& services, QWidget* parent)
    : QMainWindow(parent)
    , ui(std::make_unique<Ui::frmCVRemote>())
    , services_(services)
    , config_(services.registry)
    , prompts_(store_, login_, services.boxes, this)
    , session_(config_, *this, services.timings)
    , model_(session_.PortStatus)
{
    ui->setupUi(this);
    setBackground(ui->lblSocketStatus, fromBgr(StartColour));

    // Load: the status label, the counters, the grid, the tables, the hosts.
    showSocketStatus(QStringLiteral("Idle"), IdleColour);
    session_.IdleMinuteCount = 0;
    receiveState().reset();
    ui->tgMainScreen->setModel(&model_);
    ui->tgMainScreen->scrollToTop();
    ui->tgMainScreen->setColumnWidth(PortColumn, 48);
    ui->tgMainScreen->setColumnWidth(MachineColumn, 150);
    ui->tgMainScreen->setColumnWidth(ProgramColumn, 140);
    ui->tgMainScreen->setColumnWidth(IdColumn, 60);
    ui->tgMainScreen->setColumnWidth(StatusColumn, 140);
    session_.clearPortStatus();
    session_.MachineTypes.clear();
    session_.MachineTypeCount = 0;
    portParmsTables().PrinterNames = installedPrinterNames();
    portParmsTables().resize();
    const int lastHost = config_.load();
    Populate_Host();
    selectHost(lastHost);

    connect(ui->tgMainScreen->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
        [this](const QModelIndex& current) { rowChanged(current.row()); });
    connect(ui->cboHostName, &QComboBox::activated, this, [this](int index) { selectHost(index + 1); });
    connect(ui->cboHostName, &HostComboBox::dropDown, this, [this] {
        if (session_.connected())
            showMessage(message::alreadyConnectedDropDown());
    });
    connect(ui->Command1, &QPushButton::clicked, this,
        [this] { guarded([this] { session_.Command1_Click(ui->txtIP->text()); }); });
    connect(ui->cmdDisconnect, &QPushButton::clicked, this,
        [this] { guarded([this] { session_.cmdDisconnect_Click(); }); });
    connect(ui->cmdRefresh, &QPushButton::clicked, this, [this] { guarded([this] { session_.cmdRefresh_Click(); }); });
    connect(ui->cmdPurgeAndReset, &QPushButton::clicked, this,
        [this] { guarded([this] { session_.cmdPurgeAndReset_Click(); }); });
    connect(ui->cmdCommParms, &QPushButton::clicked, this, [this] {
        guarded([this] {
            // The parameter editor opens here once it exists; until then the check is all.
            session_.cmdCommParms_Click(
                [this] { return Check_Access(store_, CommParmsRight, TrueValue, prompts_) != 0; });
        });
    });
    connect(ui->cmdSetBook, &QPushButton::clicked, this, [this] { formBookmark_ = currentBookmark_; });
    connect(ui->cmdGetBook, &QPushButton::clicked, this, [this] { setCurrentRow(formBookmark_); });

    connect(ui->mnuConfiguration, &QAction::triggered, this, [this] { guarded([this] { openConfiguration(); }); });
    connect(ui->mnuSetupUsers, &QAction::triggered, this, [this] {
        guarded([this] {
            frmSupervisorOps form(store_, rights_, services_.boxes, this);
            form.exec();
        });
    });
    connect(ui->mnuChangeUser, &QAction::triggered, this, [this] { guarded([this] { changeUser(); }); });
    connect(ui->mnuHelpContents, &QAction::triggered, this,
        [this] { showMessage("Please refer to the Communications Parameters Help in Corvane."); });
    connect(ui->mnuAbout, &QAction::triggered, this, [this] {
        AboutDlg about(this);
        about.exec();
    });
}

frmCVRemote::~frmCVRemote() = default;

std::string frmCVRemote::title() const
{
    return toLatin1Bytes(QApplication::applicationName());
}

void frmCVRemote::Populate_Host()
{
    ui->cboHostName->clear();
    for (int n = 1; n <= HostCount; ++n)
        ui->cboHostName->addItem(config_.HostNames[static_cast<std::size_t>(n)]);
}

void frmCVRemote::selectHost(int n)
{
    if (n < 1 || n > HostCount)
        return;
    session_.HostIndex = static_cast<std::int16_t>(n);
    ui->cboHostName->setCurrentIndex(n - 1);
    ui->txtIP->setText(config_.HostIPs[static_cast<std::size_t>(n)]);
    ui->txtSocketPort->setText(QString::number(config_.SocketPorts[static_cast<std::size_t>(n)]));
}

bool frmCVRemote::event(QEvent* event)
{
    if (event->type() == QEvent::WindowActivate && !activating_ && !ended_) {
        activating_ = true;
        guarded([this] { activate(); });
        activating_ = false;
    }
    return QMainWindow::event(event);
}

// Every activation reads the user store and the rights anew; the first also logs in.
void frmCVRemote::activate()
{
    ui->lblVersion->setText(QStringLiteral("Version: ") + QString::fromLatin1(clientVersionText().c_str()));
    if (loadUserStore(store_) != StoreLoad::Loaded || store_.users.empty()) {
        services_.boxes.MsgBox(message::accessDenied(), msg::Critical, std::string(message::AccessDeniedTitle));
        endProgram(1);
        return;
    }
    Load_Rights_List(rights_, "CVREMOTE");
    if (firstActivation_) {
        firstActivation_ = false;
        Initial_Login(store_, Get_Last_User(services_.registry), login_, prompts_);
        showSetupUsers();
    }
}

void frmCVRemote::endProgram(int code)
{
    ended_ = code;
    session_.cancelWaits();
    session_.closeSocket();
    hide();
    QCoreApplication::exit(code);
}

void frmCVRemote::closeEvent(QCloseEvent* event)
{
    session_.closeSocket();
    session_.cancelWaits();
    if (!ended_ && store_.CurrentUser >= 0 && store_.CurrentUser < store_.count())
        Save_Last_User(services_.registry, store_.users[static_cast<std::size_t>(store_.CurrentUser)].UserName);
    if (!ended_)
        config_.Save_LastHostIPIndex(session_.HostIndex);
    event->accept();
}

void frmCVRemote::showSetupUsers()
{
    ui->mnuSetupUsers->setVisible(store_.CurrentUser == store_.SupervisorIndex);
}

void frmCVRemote::openConfiguration()
{
    if (!Check_Access(store_, CommParmsRight, TrueValue, prompts_))
        return;
    frmConfiguration form(config_, services_.boxes, this);
    form.exec();
    // The picker shows the names as they now are.
    Populate_Host();
    selectHost(session_.HostIndex);
}

void frmCVRemote::changeUser()
{
    login_.LoginMode = LoginModeChangeUser;
    login_.LoginUser = store_.CurrentUser;
    frmChangeUser form(store_, login_, this);
    form.exec();
    if (login_.LoginResult == LoginOk) {
        store_.CurrentUser = login_.LoginUser;
        showSetupUsers();
    }
}

void frmCVRemote::rowChanged(int row)
{
    currentBookmark_ = rowBookmark(row);
    session_.SelectedPortRow = static_cast<std::int16_t>(row);
    ui->NotFTP->setVisible(isFtpTypeMode(session_.statusOfRow(row)));
    setNotFtpColour(Qt::black);
}

void frmCVRemote::setCurrentRow(const std::optional<std::string>& bookmark)
{
    if (!bookmark)
        return;
    const std::int16_t row = bookmarkToRow(bookmark, true);
    if (row == InvalidRow)
        return;
    ui->tgMainScreen->setCurrentIndex(model_.index(row, 0));
}

void frmCVRemote::setNotFtpColour(const QColor& colour)
{
    QPalette palette = ui->NotFTP->palette();
    palette.setColor(QPalette::WindowText, colour);
    ui->NotFTP->setPalette(palette);
}

// SessionUi

void frmCVRemote::showMessage(const std::string& text)
{
    services_.boxes.MsgBox(text, msg::OkOnly, title());
}

std::int16_t frmCVRemote::askYesNo(const std::string& text)
{
    return services_.boxes.MsgBox(text, msg::YesNo | msg::Question, title());
}

void frmCVRemote::showSocketStatus(const QString& caption, std::uint32_t colour)
{
    ui->lblSocketStatus->setText(caption);
    setBackground(ui->lblSocketStatus, fromBgr(colour));
}

void frmCVRemote::portTableChanged()
{
    QScrollBar* bar = ui->tgMainScreen->verticalScrollBar();
    const int position = bar->value();
    model_.refresh();
    bar->setValue(position);
    setCurrentRow(currentBookmark_);
}

void frmCVRemote::rememberGridPosition()
{
    rememberedBookmark_ = currentBookmark_;
}

void frmCVRemote::afterDisconnect()
{
    setCurrentRow(rememberedBookmark_);
    activate();
}

void frmCVRemote::notFtpRefused()
{
    setNotFtpColour(Qt::red);
}

void frmCVRemote::idleLoggedOff()
{
    close(); // an ordinary unload: the last user and host are written
    ended_ = 0;
    QCoreApplication::exit(0);
}

} // namespace corvane
