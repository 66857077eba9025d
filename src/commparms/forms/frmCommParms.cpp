#include "commparms/forms/frmCommParms.h"

#include "commparms/ExchangeTexts.h"
#include "commparms/FieldCatalogue.h"
#include "commparms/ParmsLink.h"
#include "commparms/forms/CommTabDataCollection.h"
#include "commparms/forms/CommTabOptions.h"
#include "commparms/forms/CommTabRequests.h"
#include "commparms/forms/CommTabSerial.h"
#include "commparms/forms/CommTabStrings.h"
#include "dialogs/MessageBoxes.h"
#include "dialogs/ProgramHelp.h"
#include "dialogs/Services.h"
#include "platform/Latin1.h"
#include "runtime/ErrorLog.h"
#include "ui_frmCommParms.h"
#include "widgets/DigitField.h"
#include "widgets/ScreenFit.h"

#include <QApplication>
#include <QKeyEvent>
#include <QShortcut>
#include <QPointer>
#include <QSignalBlocker>
#include <QTabBar>

#include <algorithm>

namespace corvane {
namespace {

// A control that is disabled while it works hands the keyboard focus on to the next one in
// the chain, where the next arrow key would change a value the user never aimed at: the focus
// goes back where it was.
class KeepFocus {
public:
    KeepFocus()
        : widget_(QApplication::focusWidget())
    {
    }
    ~KeepFocus()
    {
        if (widget_ && widget_->isEnabled() && widget_->isVisible())
            widget_->setFocus(Qt::OtherFocusReason);
    }
    KeepFocus(const KeepFocus&) = delete;
    KeepFocus& operator=(const KeepFocus&) = delete;

private:
    QPointer<QWidget> widget_;
};

} // namespace

frmCommParms::frmCommParms(ParmsLink& link, Services& services, QWidget* parent)
    : QDialog(parent)
    , ui(std::make_unique<Ui::frmCommParms>())
    , link_(link)
    , services_(services)
{
    ui->setupUi(this);
    serial_ = new CommTabSerial(*this, ui->CommTab);
    requests_ = new CommTabRequests(*this, ui->CommTab);
    options_ = new CommTabOptions(*this, ui->CommTab);
    strings_ = new CommTabStrings(*this, ui->CommTab);
    collection_ = new CommTabDataCollection(*this, ui->CommTab);
    // Each page scrolls where the screen is too small for it (1280x720, or 150 %).
    ui->CommTab->addTab(scrolledPage(serial_), QStringLiteral("Communications"));
    ui->CommTab->addTab(scrolledPage(requests_), QStringLiteral("Remote Request"));
    ui->CommTab->addTab(scrolledPage(options_), QStringLiteral("Options"));
    ui->CommTab->addTab(scrolledPage(strings_), QStringLiteral("Start/End Strings"));
    ui->CommTab->addTab(scrolledPage(collection_), QStringLiteral("Data Collection"));
    pages_ = {serial_, requests_, options_, strings_, collection_};
    // The pages came after the buttons below them: Tab goes through the page shown first.
    // (Qt orders only widgets that take focus: the last of the pages' that does.)
    QWidget* last = previousInFocusChain();
    while (last != this && last->focusPolicy() == Qt::NoFocus)
        last = last->previousInFocusChain();
    for (QWidget* button : {ui->cmdUpdate, ui->cmdExit, ui->cmdCancel, ui->cmdFetchAgain}) {
        QWidget::setTabOrder(last, button);
        last = button;
    }
    if (auto* bar = ui->CommTab->findChild<QTabBar*>())
        bar->setAccessibleName(ui->CommTab->accessibleName());
    for (CommParmsPage* page : pages_)
        page->bindPlainFields();
    // Shown while a port's state is asked for: its line stays reserved when it is hidden, so
    // that showing it never raises the window's minimum and the window never grows from it.
    QSizePolicy pending = ui->lblPending->sizePolicy();
    pending.setRetainSizeWhenHidden(true);
    ui->lblPending->setSizePolicy(pending);
    ui->lblPending->setVisible(false);
    ui->PortSpin->setRange(0, static_cast<int>(link.parmsTables().PortCommParmsTable.size()) - 1);
    ui->PortSpin->setKeyboardTracking(false); // a port is fetched once its number is complete
    DigitField::apply(*ui->txtCommPort);

    connect(ui->WorkstationName, &QLineEdit::textEdited, this, [this](const QString& text) {
        comm().wstat_name = toLatin1Bytes(text);
        changed({}, false);
    });
    connect(ui->txtCommPort, &QLineEdit::textEdited, this, [this](const QString& text) {
        comm().Port_No = numberFieldValue(toLatin1Bytes(text));
        changed({}, false);
    });
    connect(ui->cboMachineTypes, &QComboBox::activated, this, [this](int index) {
        const std::int32_t id = ui->cboMachineTypes->itemData(index).toInt();
        if (id >= INT16_MIN && id <= INT16_MAX)
            comm().Machine_Unique_Id = static_cast<std::int16_t>(id);
        changed({}, false);
    });
    connect(ui->PortSpin, &QSpinBox::valueChanged, this, &frmCommParms::PortSpin_Change);
    connect(ui->cmdUpdate, &QPushButton::clicked, this, &frmCommParms::cmdUpdate_Click);
    connect(ui->cmdFetchAgain, &QPushButton::clicked, this, [this] {
        const KeepFocus keep;
        IsSwitchingPort = true;
        showPort(CurrentPort);
        IsSwitchingPort = false;
    });
    connect(ui->cmdExit, &QPushButton::clicked, this, &QDialog::accept);
    connect(ui->cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    // The tabs' keys go to the tabs, before a list or a number in focus takes them for its value.
    const auto turn = [this](QKeySequence sequence, int by) {
        auto* shortcut = new QShortcut(sequence, this, nullptr, nullptr, Qt::WidgetWithChildrenShortcut);
        connect(shortcut, &QShortcut::activated, this, [this, by] {
            const int count = ui->CommTab->count();
            for (int step = 1; step < count; ++step) {
                const int index = ((ui->CommTab->currentIndex() + by * step) % count + count) % count;
                if (ui->CommTab->isTabEnabled(index)) {
                    ui->CommTab->setCurrentIndex(index);
                    return;
                }
            }
        });
    };
    turn(QKeySequence(Qt::CTRL | Qt::Key_PageDown), 1);
    turn(QKeySequence(Qt::CTRL | Qt::Key_Tab), 1);
    turn(QKeySequence(Qt::CTRL | Qt::Key_PageUp), -1);
    turn(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Backtab), -1);
    turn(QKeySequence(Qt::CTRL | Qt::Key_Backtab), -1);
}

frmCommParms::~frmCommParms()
{
    if (busyCursor_)
        QApplication::restoreOverrideCursor();
}

PortCommParms& frmCommParms::comm()
{
    return link_.parmsTables().commParms(CurrentPort);
}

DataCollectionParms& frmCommParms::collection()
{
    return link_.parmsTables().dataCollection(CurrentPort);
}

int frmCommParms::run()
{
    QApplication::setOverrideCursor(Qt::WaitCursor); // until the form is up
    busyCursor_ = true;
    Form_Load();
    return exec();
}

void frmCommParms::Form_Load()
{
    IsSwitchingPort = true;
    const SinglePortMode single = link_.singlePortMode();
    ui->lblSinglePortModeOn->setVisible(single.on);
    ui->lblSingleDNCCommPort->setVisible(single.on);
    ui->lblSingleDNCCommPort->setText(QStringLiteral("Using COMM: ") + QString::number(single.commPort));
    ui->txtCommPort->setReadOnly(single.on);
    IsActivated = false;
    // The grid row taken as it stands; beyond the spinner's range, its largest value.
    showPort(link_.selectedPortIndex());
    ui->CommTab->setCurrentIndex(0);
    IsSwitchingPort = false;
}

bool frmCommParms::event(QEvent* event)
{
    if (event->type() == QEvent::WindowActivate)
        Form_Activate();
    return QDialog::event(event);
}

// Without a window manager the form may never be activated: being shown counts.
void frmCommParms::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    if (!IsActivated)
        QMetaObject::invokeMethod(
            this,
            [this] {
                if (!IsActivated)
                    Form_Activate();
            },
            Qt::QueuedConnection);
}

void frmCommParms::Form_Activate()
{
    ParmsChanged = false;
    if (busyCursor_) {
        QApplication::restoreOverrideCursor();
        busyCursor_ = false;
    }
    const bool first = !IsActivated;
    IsActivated = true;
    if (first)
        Q_EMIT activated();
}

void frmCommParms::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_F1) {
        showHelp();
        return;
    }
    QDialog::keyPressEvent(event);
}

// The help's section about the field in focus, or about the editor.
void frmCommParms::showHelp()
{
    QString topic = QStringLiteral("commparms");
    if (const QWidget* focused = focusWidget())
        if (const FieldRow* row = fieldOfControl(toLatin1Bytes(focused->objectName())))
            topic = fromLatin1Bytes(row->helpAnchor);
    showProgramHelp(services_.desktop, services_.boxes, link_.logs().folder(), topic);
}

// The user moved to another port: told once per run that Update sends the shown port only,
// then the port is fetched and shown. The spinner waits while a port is on its way.
void frmCommParms::PortSpin_Change(int value)
{
    if (IsSwitchingPort)
        return;
    const KeepFocus keep;
    IsSwitchingPort = true;
    ui->PortSpin->setEnabled(false);
    if (!link_.portSpinNoticeShown()) {
        link_.setPortSpinNoticeShown();
        tell({portSpinNotice()});
    }
    showPort(value);
    ui->PortSpin->setEnabled(true);
    IsSwitchingPort = false;
}

void frmCommParms::showPort(int value)
{
    value = std::clamp(value, ui->PortSpin->minimum(), ui->PortSpin->maximum());
    {
        const QSignalBlocker quiet(ui->PortSpin);
        ui->PortSpin->setValue(value);
    }
    ui->SpinPort->setText(QString::number(value));
    CurrentPort = static_cast<std::int16_t>(value);
    link_.FetchCommParms(CurrentPort);
    ui->lblPending->setVisible(true);
    link_.RefreshPortStates();
    ui->lblPending->setVisible(false);
    showFetchState();
    if (link_.fetchState(CurrentPort).complete)
        ShowPortParms();
}

// Only a port whose six sections all arrived is shown and may be sent; of any other the form
// says what is missing and shows none of its values.
void frmCommParms::showFetchState()
{
    const FetchState state = link_.fetchState(CurrentPort);
    ui->CommTab->setVisible(state.complete);
    for (QWidget* w : std::initializer_list<QWidget*>{ui->WorkstationName, ui->txtCommPort, ui->cboMachineTypes})
        w->setEnabled(state.complete);
    ui->cmdUpdate->setEnabled(state.complete);
    ui->lblFetchState->setVisible(!state.complete);
    ui->cmdFetchAgain->setVisible(!state.complete);
    if (!state.complete) {
        ui->WorkstationName->clear();
        ui->txtCommPort->clear();
        const QSignalBlocker quiet(ui->cboMachineTypes);
        ui->cboMachineTypes->setCurrentIndex(-1);
        ui->lblFetchState->setText(fromLatin1Bytes(fetchStateText(state)));
    }
    QStringList corrected;
    for (const ChangedField& c : link_.showCorrections(CurrentPort))
        corrected << fromLatin1Bytes(
            std::string(c.name) + " " + fieldValueText(c.name, c.before) + " -> " + fieldValueText(c.name, c.after));
    ui->lblShowCorrections->setVisible(state.complete && !corrected.isEmpty());
    ui->lblShowCorrections->setText(
        QStringLiteral("Corrected on showing, by the rules of this port's settings (the host holds the first "
                       "value until Update sends the second): ")
        + corrected.join(QStringLiteral("; ")));
}

void frmCommParms::ShowPortParms()
{
    const PortCommParms& p = comm();
    const auto show = [](QLineEdit& field, const std::string& text) {
        if (field.text() != fromLatin1Bytes(text))
            field.setText(fromLatin1Bytes(text));
    };
    show(*ui->WorkstationName, p.wstat_name);
    show(*ui->txtCommPort, std::to_string(p.Port_No));
    for (CommParmsPage* page : pages_)
        if (page != serial_ && page != options_) {
            page->showPlainFields();
            page->showRecord();
        }
    SetDataValues();
    Match_cboMachineTypesIndex();
    showStates();
}

void frmCommParms::SetDataValues()
{
    IsLoading = true;
    for (CommParmsPage* page : {static_cast<CommParmsPage*>(serial_), static_cast<CommParmsPage*>(options_)}) {
        page->showPlainFields();
        page->showRecord();
    }
    IsLoading = false;
}

// The machine types as the host last listed them; the port's own selected, or the selection
// left as it was when the list has no such type.
void frmCommParms::Match_cboMachineTypesIndex()
{
    const std::vector<MachineTypeRecord>& types = link_.machineTypes();
    if (ui->cboMachineTypes->count() != static_cast<int>(types.size())) {
        const QSignalBlocker quiet(ui->cboMachineTypes);
        ui->cboMachineTypes->clear();
        for (const MachineTypeRecord& type : types)
            ui->cboMachineTypes->addItem(fromLatin1Bytes(type.machine_type), type.unique_id);
    }
    for (std::size_t i = 0; i < types.size(); ++i)
        if (types[i].unique_id == comm().Machine_Unique_Id) {
            const QSignalBlocker quiet(ui->cboMachineTypes);
            ui->cboMachineTypes->setCurrentIndex(static_cast<int>(i));
            return;
        }
}

void frmCommParms::showStates()
{
    for (CommParmsPage* page : pages_)
        page->showStates();
}

void frmCommParms::changed(const RuleOutcome& outcome, bool showAll)
{
    ParmsChanged = true;
    link_.resetIdleCount();
    if (showAll)
        ShowPortParms();
    else
        showStates();
    for (const RuleMessage& message : outcome.messages)
        tell(message);
}

void frmCommParms::tell(const RuleMessage& message)
{
    services_.boxes.MsgBox(message.text, message.style,
        message.title.empty() ? toLatin1Bytes(QApplication::applicationName()) : message.title);
}

// The shown port goes back to the host; the port cannot change under the update, and a second
// update cannot start inside the first. The trailer's failure on a closed socket is trapped.
void frmCommParms::cmdUpdate_Click()
{
    link_.resetIdleCount();
    const std::int16_t port = CurrentPort;
    {
        const KeepFocus keep;
        ui->cmdUpdate->setEnabled(false);
        ui->PortSpin->setEnabled(false);
        runTrapped(link_.logs(), location::CommParmsUpdate, [&] { link_.UpdateCommParms(port); });
        ui->PortSpin->setEnabled(true);
        showFetchState();
    }
}

} // namespace corvane
