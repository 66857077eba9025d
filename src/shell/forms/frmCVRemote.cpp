#include "shell/forms/frmCVRemote.h"

#include "commparms/forms/frmCommParms.h"
#include "dialogs/MessageBoxes.h"
#include "dialogs/UntrappedError.h"
#include "widgets/InstalledPrinters.h"
#include "platform/Latin1.h"
#include "session/LastUser.h"
#include "security/forms/frmChangeUser.h"
#include "security/forms/frmSupervisorOps.h"
#include "shell/ConfigurationRules.h"
#include "shell/GridRules.h"
#include "shell/SessionMessages.h"
#include "shell/VersionRules.h"
#include "shell/forms/AboutDlg.h"
#include "shell/forms/frmConfiguration.h"
#include "ui_frmCVRemote.h"

#include <QApplication>
#include <QCloseEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QScreen>
#include <QScrollBar>
#include <QShortcut>
#include <QStyleOptionFrame>
#include <QTableView>

#include <algorithm>

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

// The width a line edit needs to show `sample` whole, frame and margins included.
int lineEditWidthFor(const QLineEdit& field, const QString& sample)
{
    QStyleOptionFrame option;
    option.initFrom(&field);
    option.lineWidth = field.style()->pixelMetric(QStyle::PM_DefaultFrameWidth, &option, &field);
    const QMargins text = field.textMargins();
    const int contents = field.fontMetrics().horizontalAdvance(sample) + text.left() + text.right() + 4;
    return field.style()->sizeFromContents(QStyle::CT_LineEdit, &option, QSize(contents, 1), &field).width();
}

} // namespace

frmCVRemote::frmCVRemote(Terminal& terminal, Services& services, QWidget* parent)
    : QMainWindow(parent)
    , ui(std::make_unique<Ui::frmCVRemote>())
    , services_(services)
    , terminal_(terminal)
    , config_(terminal.configuration())
    , store_(terminal.users())
    , rights_(terminal.rights())
    , login_(terminal.login())
    , prompts_(store_, login_, services.boxes, this)
    , hold_(terminal, *this, "desktop")
    , session_(hold_.session())
    , model_(session_.portStatus())
    , activity_([this] { session_.resetIdleCount(); }, this)
{
    ui->setupUi(this);
    setBackground(ui->lblSocketStatus, fromBgr(StartColour));
    ui->tgMainScreen->setModel(&model_);
    layOut();

    // Load: the status label, the grid, the tables, the hosts.
    showSocketStatus(QStringLiteral("Idle"), IdleColour);
    ui->tgMainScreen->scrollToTop();
    session_.parmsTables().PrinterNames = installedPrinterNames();
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
    connect(ui->Command1, &QPushButton::clicked, this, &frmCVRemote::connectToHost);
    connect(ui->cmdDisconnect, &QPushButton::clicked, this,
        [this] { guardedCommand([this] { session_.cmdDisconnect_Click(); }); });
    connect(ui->cmdRefresh, &QPushButton::clicked, this,
        [this] { guardedCommand([this] { session_.cmdRefresh_Click(); }); });
    connect(ui->cmdPurgeAndReset, &QPushButton::clicked, this,
        [this] { guardedCommand([this] { session_.cmdPurgeAndReset_Click(); }); });
    connect(ui->cmdCommParms, &QPushButton::clicked, this, &frmCVRemote::editParameters);
    bindKeys();
    connect(ui->cmdSetBook, &QPushButton::clicked, this, [this] { formBookmark_ = currentBookmark_; });
    connect(ui->cmdGetBook, &QPushButton::clicked, this, [this] { setCurrentRow(formBookmark_); });

    connect(
        ui->mnuConfiguration, &QAction::triggered, this, [this] { guardedCommand([this] { openConfiguration(); }); });
    connect(ui->mnuSetupUsers, &QAction::triggered, this, [this] {
        guardedCommand([this] {
            frmSupervisorOps form(store_, rights_, terminal_.logs(), services_.boxes, this);
            form.setUserSaved([this](const std::optional<UserEntry>& before, const std::optional<UserEntry>& after) {
                recordLocalChange(terminal_.logs(), change_kind::UserAdmin, session_.changeActor(), userFields(before, after, rights_));
            });
            form.exec();
        });
    });
    connect(ui->mnuChangeUser, &QAction::triggered, this, [this] { guardedCommand([this] { changeUser(); }); });
    connect(
        ui->mnuHelpContents, &QAction::triggered, this, [this] { showMessage(std::string(message::HelpContents)); });
    connect(ui->mnuAbout, &QAction::triggered, this, [this] {
        AboutDlg about(this);
        about.exec();
    });
}

frmCVRemote::~frmCVRemote() = default;

// The main commands by keyboard, each the very button (its checks and questions included): F5
// refreshes, Ctrl+E opens the editor, Enter or a double-click on a row opens it for that row,
// Delete on the grid purges (asking first). Tab leaves the grid for the next control.
void frmCVRemote::bindKeys()
{
    QTableView* grid = ui->tgMainScreen;
    grid->setTabKeyNavigation(false);
    grid->installEventFilter(this);
    connect(grid, &QAbstractItemView::doubleClicked, ui->cmdCommParms, &QPushButton::click);
    const auto key = [this](QKeySequence sequence, QPushButton* button, QWidget* scope, Qt::ShortcutContext context) {
        auto* shortcut = new QShortcut(sequence, scope, nullptr, nullptr, context);
        connect(shortcut, &QShortcut::activated, button, [button] {
            if (button->isEnabled() && button->isVisible())
                button->click();
        });
    };
    key(QKeySequence(Qt::Key_F5), ui->cmdRefresh, this, Qt::WindowShortcut);
    key(QKeySequence(Qt::CTRL | Qt::Key_E), ui->cmdCommParms, this, Qt::WindowShortcut);
    key(QKeySequence(Qt::Key_Delete), ui->cmdPurgeAndReset, grid, Qt::WidgetShortcut);
    ui->cmdRefresh->setToolTip(QStringLiteral("F5"));
    ui->cmdCommParms->setToolTip(QStringLiteral("Ctrl+E, or Enter on a row"));
    ui->cmdPurgeAndReset->setToolTip(QStringLiteral("Delete on a row"));
}

bool frmCVRemote::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == ui->tgMainScreen && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            ui->cmdCommParms->click();
            return true;
        }
    }
    return QMainWindow::eventFilter(watched, event);
}

// A useful share of the 128 rows at first sight; the extra width goes to the columns that hold
// words (machine, program, status), not to the byte count.
void frmCVRemote::layOut()
{
    QHeaderView* header = ui->tgMainScreen->horizontalHeader();
    header->setStretchLastSection(false);
    for (const int column : {MachineColumn, ProgramColumn, StatusColumn})
        header->setSectionResizeMode(column, QHeaderView::Stretch);
    header->setSectionResizeMode(PortColumn, QHeaderView::ResizeToContents);
    ui->tgMainScreen->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
    ui->tgMainScreen->setColumnWidth(IdColumn, 70);
    ui->tgMainScreen->setColumnWidth(ByteCountColumn, 100);
    ui->txtSocketPort->setMinimumWidth(lineEditWidthFor(*ui->txtSocketPort, QStringLiteral("00000")));
    // The note keeps its line while hidden, so the grid does not jump when it appears.
    QSizePolicy note = ui->NotFTP->sizePolicy();
    note.setRetainSizeWhenHidden(true);
    ui->NotFTP->setSizePolicy(note);

    const QScreen* screen = QGuiApplication::primaryScreen();
    const QRect available = screen ? screen->availableGeometry() : QRect(0, 0, 1024, 768);
    resize(std::min(available.width(), 1000), std::max(std::min(available.height(), 600), available.height() * 5 / 6));
}

template <typename Body> void frmCVRemote::guardedCommand(Body&& body)
{
    guarded(terminal_.logs(), services_.boxes, std::forward<Body>(body));
}

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

bool frmCVRemote::selectHost(int n)
{
    if (n < 1 || n > HostCount)
        return false;
    session_.cboHostName_Click(n);
    ui->cboHostName->setCurrentIndex(n - 1);
    ui->txtIP->setText(config_.HostIPs[static_cast<std::size_t>(n)]);
    ui->txtSocketPort->setText(QString::number(config_.SocketPorts[static_cast<std::size_t>(n)]));
    return true;
}

bool frmCVRemote::event(QEvent* event)
{
    if (event->type() == QEvent::WindowActivate)
        Form_Activate();
    return QMainWindow::event(event);
}

// Without a window manager the window may never be activated; its first showing then counts
// as the first activation, so that the user store is read and the log-in runs all the same.
void frmCVRemote::showEvent(QShowEvent* event)
{
    QMainWindow::showEvent(event);
    if (firstActivation_)
        QMetaObject::invokeMethod(
            this,
            [this] {
                if (firstActivation_)
                    Form_Activate();
            },
            Qt::QueuedConnection);
}

void frmCVRemote::Form_Activate()
{
    if (activating_ || ended_)
        return;
    activating_ = true;
    const bool first = firstActivation_;
    guardedCommand([this] { activate(); });
    activating_ = false;
    if (first && !firstActivation_ && !ended_)
        Q_EMIT loggedIn();
}

// Every activation reads the user store and the rights anew; the first also logs in.
void frmCVRemote::activate()
{
    ui->lblVersion->setText(QStringLiteral("Version: ") + QString::fromLatin1(clientVersionText().c_str()));
    if (loadUserStore(store_, terminal_.logs()) != StoreLoad::Loaded) {
        // The store's own fault, when it has one, follows the usual words.
        const std::string why = store_.fault.empty() ? std::string() : "\r\n\r\n" + store_.fault;
        services_.boxes.MsgBox(message::accessDenied() + why, msg::Critical, std::string(message::AccessDeniedTitle));
        endProgram(EXIT_FAILURE);
        return;
    }
    Load_Rights_List(rights_, "CVREMOTE");
    if (firstActivation_) {
        firstActivation_ = false;
        Initial_Login(store_, Get_Last_User(terminal_.registry()), login_, prompts_);
        currentUserChanged();
    }
}

// Ends at once, writing nothing: the window goes and main is told.
void frmCVRemote::endProgram(int exitStatus)
{
    ended_ = exitStatus;
    session_.cancelWaits();
    session_.closeSocket();
    hide();
    Q_EMIT programEnded(exitStatus);
}

// The unload: the last user and host are written and the program ends.
void frmCVRemote::closeEvent(QCloseEvent* event)
{
    session_.closeSocket();
    session_.cancelWaits();
    event->accept();
    if (ended_)
        return;
    if (store_.CurrentUser >= 0 && store_.CurrentUser < store_.count())
        Save_Last_User(terminal_.registry(), store_.users[static_cast<std::size_t>(store_.CurrentUser)].UserName);
    config_.Save_LastHostIPIndex(session_.hostIndex());
    ended_ = EXIT_SUCCESS;
    Q_EMIT programEnded(EXIT_SUCCESS);
}

// Setup Users is the supervisor's; the record of parameter changes names whoever is logged in.
void frmCVRemote::currentUserChanged()
{
    ui->mnuSetupUsers->setVisible(store_.isSupervisor(store_.CurrentUser));
    const UserEntry* current = store_.liveUser(store_.CurrentUser);
    session_.setUserName(current ? current->UserName : std::string());
}

void frmCVRemote::openConfiguration()
{
    ChangeActor actor = session_.changeActor();
    if (!Check_Access(store_, CommParmsRight, TrueValue, prompts_, &actor.authorisedBy))
        return;
    frmConfiguration form(config_, terminal_.logs(), services_.boxes, actor, this);
    form.exec();
    // The picker shows the names as they now are.
    Populate_Host();
    selectHost(session_.hostIndex());
}

// One editor at a time: while one loads or is open, the button does nothing more. A temporary
// user who let it open authorises the updates sent from it, and no more.
void frmCVRemote::openCommParms()
{
    if (editorOpen_)
        return;
    std::string temporaryUser;
    if (!session_.cmdCommParms_Click([this, &temporaryUser] {
            return Check_Access(store_, CommParmsRight, TrueValue, prompts_, &temporaryUser) != 0;
        }))
        return;
    editorOpen_ = true;
    session_.setAuthorisedBy(temporaryUser);
    struct Closed {
        frmCVRemote& window;
        ~Closed()
        {
            window.session_.setAuthorisedBy({});
            window.editorOpen_ = false;
        }
    } closed{*this};
    frmCommParms editor(session_, services_, this);
    Q_EMIT commParmsOpened(editor);
    editor.run();
}

void frmCVRemote::changeUser()
{
    login_.LoginMode = LoginModeChangeUser;
    login_.LoginUser = store_.CurrentUser;
    frmChangeUser form(store_, login_, this);
    form.exec();
    if (login_.LoginResult == LoginOk) {
        store_.CurrentUser = login_.LoginUser;
        currentUserChanged();
    }
}

void frmCVRemote::rowChanged(int row)
{
    currentBookmark_ = rowBookmark(row);
    session_.rowChanged(row);
    ui->NotFTP->setVisible(isFtpTypeMode(session_.statusOfRow(row)));
    setNotFtpColour(Qt::black);
}

void frmCVRemote::connectToHost()
{
    guardedCommand([this] { session_.Command1_Click(ui->txtIP->text()); });
}

void frmCVRemote::editParameters()
{
    guardedCommand([this] { openCommParms(); });
}

void frmCVRemote::selectRow(int row)
{
    ui->tgMainScreen->setCurrentIndex(model_.index(row, 0));
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
    Q_EMIT portTableUpdated();
}

void frmCVRemote::rememberGridPosition()
{
    rememberedBookmark_ = currentBookmark_;
}

void frmCVRemote::afterDisconnect()
{
    setCurrentRow(rememberedBookmark_);
    Form_Activate();
}

void frmCVRemote::notFtpRefused()
{
    setNotFtpColour(Qt::red);
}

void frmCVRemote::idleLoggedOff()
{
    close(); // an ordinary unload: the last user and host are written
}

} // namespace corvane
