#include "commparms/FieldCatalogue.h"
#include "commparms/ParmsLink.h"
#include "commparms/forms/frmCommParms.h"
#include "commparms/forms/frmFileNotFoundMsg.h"
#include "dialogs/frmPathZoom.h"
#include "dialogs/CommMessage.h"
#include "dialogs/Services.h"
#include "platform/Registry.h"
#include "support/Forms.h"
#include "support/ManualTimers.h"
#include "support/ScratchProgramFolder.h"
#include "support/Wait.h"

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QTabWidget>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

namespace corvane {
namespace {

using test::control;
using test::whenModal;

// The session as the editor sees it, without a host: fetches and updates are counted.
struct ScriptedLink final : ParmsLink {
    Logs& logged; // where an update's trapped error goes, and the help is looked for
    PortParmsTables tables;
    std::vector<MachineTypeRecord> types = {{1, "LATHE", "C:\\DNC\\LATHES", 'F'}, {2, "MILL", "C:\\DNC\\MILLS", 'F'}};
    SinglePortMode single;
    std::int16_t selected = 3;
    bool noticeShown = false;
    std::vector<std::int16_t> fetched, updated;
    FetchState state{true, false, {}};
    std::vector<ChangedField> corrections;

    explicit ScriptedLink(Logs& logs)
        : logged(logs)
    {
        tables.resize();
        for (std::int16_t port = 0; port < PortCount; ++port) {
            tables.PortCommParmsTable[port].FileNotFoundMessage = "NO FILE ON " + std::to_string(port + 1);
        }
    }
    PortParmsTables& parmsTables() override { return tables; }
    Logs& logs() override { return logged; }
    const std::vector<MachineTypeRecord>& machineTypes() const override { return types; }
    SinglePortMode singlePortMode() const override { return single; }
    std::int16_t selectedPortIndex() const override { return selected; }
    void resetIdleCount() override { }
    bool portSpinNoticeShown() const override { return noticeShown; }
    void setPortSpinNoticeShown() override { noticeShown = true; }
    bool FetchCommParms(std::int16_t port) override
    {
        fetched.push_back(port);
        return true;
    }
    FetchState fetchState(std::int16_t) const override { return state; }
    std::vector<ChangedField> showCorrections(std::int16_t) const override { return corrections; }
    bool FetchMachineTypes(std::int16_t) override { return true; }
    bool UpdateCommParms(std::int16_t port) override
    {
        updated.push_back(port);
        return true;
    }
    void RefreshPortStates() override { }
};

class CommParmsForm : public ::testing::Test {
public:
    test::ScratchProgramFolder folder;
    QTemporaryDir registryDir;
    std::unique_ptr<Registry> registry;
    test::ScriptedBoxes boxes;
    test::ManualTimers timers;
    test::ScriptedDesktop desktop;
    std::unique_ptr<Services> services;
    ScriptedLink link{folder.logs()};
    std::unique_ptr<frmCommParms> form;

    void SetUp() override
    {
        qputenv("CORVANE_REGISTRY_DIR", registryDir.path().toLocal8Bit());
        registry = openSystemRegistry();
        services = std::make_unique<Services>(Services{boxes, desktop});
    }
    void TearDown() override { qunsetenv("CORVANE_REGISTRY_DIR"); }

    frmCommParms& open()
    {
        form = std::make_unique<frmCommParms>(link, *services);
        form->Form_Load();
        form->show();
        EXPECT_TRUE(test::waitFor([this] { return form->isVisible(); }));
        QApplication::processEvents(); // its first showing counts as its activation
        // Focus moves as a user's only in the active window: under a window manager, once it
        // has made the editor so.
        form->activateWindow();
        EXPECT_TRUE(test::waitFor([this] { return QApplication::activeWindow() == form.get(); }));
        return *form;
    }
    template <typename W> W& find(const char* name) { return control<W>(*form, name); }
    PortCommParms& shown() { return link.tables.PortCommParmsTable[static_cast<std::size_t>(form->shownPort())]; }
};

TEST_F(CommParmsForm, OpensOnTheSelectedRowAsItStandsAndShowsTheRecord)
{
    PortCommParms& p = link.tables.PortCommParmsTable[3];
    p.DataType = 1; // EIA, which stands last on the screen
    p.Machine_Unique_Id = 2;
    p.RedirectCode = '#';
    open();
    EXPECT_EQ(link.fetched, std::vector<std::int16_t>{3});
    EXPECT_EQ(find<QLabel>("SpinPort").text(), QStringLiteral("3")) << "no offset";
    EXPECT_TRUE(find<QRadioButton>("DataType_1").isChecked());
    EXPECT_EQ(find<QComboBox>("cboMachineTypes").currentText(), QStringLiteral("MILL"));
    EXPECT_EQ(find<QLineEdit>("RedirectCode").text(), QStringLiteral("#")) << "the other pages show it too";
    EXPECT_FALSE(find<QLabel>("lblSinglePortModeOn").isVisible());
    EXPECT_TRUE(boxes.calls.empty()) << "showing a record never warns";

    // A row beyond the spinner takes its largest value.
    link.selected = 300;
    link.single = {true, 4};
    open();
    EXPECT_EQ(form->shownPort(), 127);
    EXPECT_TRUE(find<QLabel>("lblSinglePortModeOn").isVisible());
    EXPECT_TRUE(find<QLineEdit>("txtCommPort").isReadOnly());
}

TEST_F(CommParmsForm, ChoicesApplyTheRulesShowWhatTheyForceAndWarnOnlyWhenUp)
{
    open();
    find<QRadioButton>("DataType_1").click(); // EIA
    EXPECT_TRUE(find<QRadioButton>("Parity_0").isChecked()) << "the forced parity is shown";
    EXPECT_EQ(boxes.calls.size(), 1u);

    Q_EMIT find<QComboBox>("SpecificProtocols").activated(4); // the user picks GE 2000
    EXPECT_EQ(find<QComboBox>("BaudRates").currentText(), QStringLiteral("4800"));
    EXPECT_FALSE(find<QCheckBox>("ckPurgeIfInactive").isEnabled()) << "another page's states follow";
}

// A field's rule runs when it is left: what the rule makes of the text goes back into the field
// and into the shown port's record. Clearing the outgoing header empties and greys its values.
TEST_F(CommParmsForm, FieldsAreCheckedWhenLeft)
{
    PortCommParms& p = link.tables.PortCommParmsTable[3];
    p.StripOutgoingHeader = -1;
    p.OutHdrVal1 = 13;
    p.bPurgeIfInactive = -1;
    p.iMinimumPurgeSeconds = 10;
    open();
    find<QTabWidget>("CommTab").setCurrentIndex(2);
    struct Case {
        const char* field;
        const char* typed;
        const char* shown;
        bool told;
    } const cases[] = {
        {"txtOutHdrVal1", "abc", "", true},
        {"txtOutHdrVal4", "13", "13", false},
        {"txtPurgeIfInactiveSeconds", "3", "10", true},
    };
    for (const auto& c : cases) {
        boxes.calls.clear();
        auto& field = find<QLineEdit>(c.field);
        field.setFocus();
        field.selectAll();
        QTest::keyClick(&field, Qt::Key_Backspace);
        QTest::keyClicks(&field, QString::fromLatin1(c.typed));
        QTest::keyClick(&field, Qt::Key_Tab); // leaves it, as a user does
        EXPECT_EQ(field.text(), QLatin1String(c.shown)) << c.field;
        EXPECT_EQ(boxes.calls.size(), c.told ? 1u : 0u) << c.field;
    }
    EXPECT_EQ(shown().OutHdrVal4, 13);

    find<QCheckBox>("StripOutgoingHeader").click(); // off
    EXPECT_EQ(shown().OutHdrVal4, -1);
    EXPECT_FALSE(find<QLineEdit>("txtOutHdrVal4").isEnabled());

    // End-of-block nulls: Backspace does nothing there, and 300 reads 64.
    find<QTabWidget>("CommTab").setCurrentIndex(0);
    auto& nulls = find<QLineEdit>("txtEobNumNulls");
    nulls.setFocus();
    nulls.end(false);
    const QString before = nulls.text();
    QTest::keyClick(&nulls, Qt::Key_Backspace);
    EXPECT_EQ(nulls.text(), before);
    nulls.selectAll();
    QTest::keyClicks(&nulls, QStringLiteral("300"));
    EXPECT_EQ(nulls.text(), QStringLiteral("64"));
    EXPECT_EQ(shown().EobNullNumber, 64);

    // A text pasted with the packet's own control characters is not taken: the field shows
    // again what the record holds, which is what Update would send.
    find<QTabWidget>("CommTab").setCurrentIndex(1);
    shown().ConfirmFooter = "M30";
    auto& footer = find<QLineEdit>("txtConfirmFooter");
    footer.setText(QStringLiteral("M30"));
    footer.setFocus();
    footer.end(false);
    QGuiApplication::clipboard()->setText(QStringLiteral("\x02"));
    footer.paste();
    EXPECT_EQ(shown().ConfirmFooter, "M30");
    EXPECT_EQ(footer.text(), QStringLiteral("M30"));
}

TEST_F(CommParmsForm, TheSpinNoticeComesOncePerRunAndUpdateSendsTheShownPort)
{
    open();
    find<QSpinBox>("PortSpin").setValue(9);
    EXPECT_EQ(link.fetched.back(), 9);
    EXPECT_EQ(boxes.calls.size(), 1u);
    open(); // closed and opened again: still once per run
    find<QSpinBox>("PortSpin").setValue(11);
    EXPECT_EQ(boxes.calls.size(), 1u);

    find<QPushButton>("cmdUpdate").click();
    EXPECT_EQ(link.updated, std::vector<std::int16_t>{11});
    EXPECT_TRUE(find<QPushButton>("cmdUpdate").isEnabled());
}

// The arrow key that moved to another port leaves the keyboard on the spinner, and so does an
// update: the next key moves the port again, and never changes the machine type.
TEST_F(CommParmsForm, KeysStayWhereTheUserAimedThem)
{
    open();
    QApplication::setActiveWindow(form.get());
    auto& spin = find<QSpinBox>("PortSpin");
    spin.setFocus();
    for (const int key : {Qt::Key_Up, Qt::Key_Down}) {
        QTest::keyClick(QApplication::focusWidget(), static_cast<Qt::Key>(key));
        EXPECT_TRUE(spin.isAncestorOf(QApplication::focusWidget()) || QApplication::focusWidget() == &spin);
    }
    EXPECT_EQ(link.fetched, (std::vector<std::int16_t>{3, 4, 3}));
    auto& update = find<QPushButton>("cmdUpdate");
    update.setFocus();
    update.click();
    EXPECT_EQ(QApplication::focusWidget(), &update);
    const std::int16_t type = shown().Machine_Unique_Id;
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
    EXPECT_EQ(shown().Machine_Unique_Id, type);
}

// A port not fetched whole, or whose last update is uncertain, shows none of its values and
// cannot be sent; a correction that the rules made on showing a record is marked.
TEST_F(CommParmsForm, OnlyAWholeFetchIsShownAndCorrectionsAreMarked)
{
    link.tables.PortCommParmsTable[3].wstat_name = "LATHE 04";
    link.state = {false, false, {5, 6}};
    open();
    EXPECT_FALSE(find<QTabWidget>("CommTab").isVisible());
    EXPECT_FALSE(find<QPushButton>("cmdUpdate").isEnabled());
    EXPECT_TRUE(find<QLineEdit>("WorkstationName").text().isEmpty());
    EXPECT_TRUE(find<QLabel>("lblFetchState").text().contains(QStringLiteral("sections 5 and 6 missing")));

    link.state = {true, false, {}};
    link.corrections = {{"bPurgeIfInactive", std::int64_t{-1}, std::int64_t{0}, "rule"}};
    find<QPushButton>("cmdFetchAgain").click();
    EXPECT_EQ(link.fetched, (std::vector<std::int16_t>{3, 3}));
    EXPECT_TRUE(find<QTabWidget>("CommTab").isVisible());
    EXPECT_TRUE(find<QPushButton>("cmdUpdate").isEnabled());
    EXPECT_EQ(find<QLineEdit>("WorkstationName").text(), QStringLiteral("LATHE 04"));
    EXPECT_FALSE(find<QLabel>("lblFetchState").isVisible());
    EXPECT_TRUE(find<QLabel>("lblShowCorrections").text().contains(QStringLiteral("bPurgeIfInactive True -> False")));
}

TEST_F(CommParmsForm, TheNoWaitReadNoticeComesWhenTicked)
{
    open();
    whenModal<CommMessage>([](CommMessage& notice) { notice.accept(); });
    find<QCheckBox>("ckEnableNoWaitRead").click();
    EXPECT_EQ(shown().bEnableNoWaitRead, -1);
    find<QCheckBox>("ckEnableNoWaitRead").click(); // unticking says nothing
    EXPECT_EQ(shown().bEnableNoWaitRead, 0);
}

TEST_F(CommParmsForm, DataCollectionFramesAndTheFolderBrowser)
{
    DataCollectionParms& d = link.tables.DataCollectionTable[3];
    d.ExtractData = 1;
    d.SaveToFolder = "before";
    link.tables.PortCommParmsTable[3].Machine_Unique_Id = 1;
    open();
    find<QRadioButton>("optPrintOptions_2").click(); // "Do not print", first on the screen
    EXPECT_EQ(d.PrintOption, 2);
    find<QCheckBox>("chkExtractData").click(); // off: everything goes grey
    EXPECT_EQ(d.ExtractData, 0);
    EXPECT_FALSE(find<QLineEdit>("txtDataStartString").isEnabled());
    find<QCheckBox>("chkExtractData").click();

    // The host's receive folder for this machine type is refused, another folder taken.
    const std::string receive = folder.path().string();
    const std::string other = (folder.path() / "collected").string();
    std::filesystem::create_directories(other);
    link.types[0].DefaultDir = receive;
    desktop.folders = {QString::fromStdString(receive), QString(), QString::fromStdString(other)};
    boxes.calls.clear();
    auto& browse = find<QPushButton>("cmdBrwoseFolder");
    browse.click();
    EXPECT_EQ(d.SaveToFolder, "before");
    EXPECT_EQ(boxes.calls.size(), 1u) << "the refusal is told";
    browse.click(); // cancelled: nothing changes
    EXPECT_EQ(d.SaveToFolder, "before");
    browse.click();
    EXPECT_EQ(d.SaveToFolder, other);
}

// Another connection's message is a template: Save stores it for the port being edited only.
TEST_F(CommParmsForm, TheFileNotFoundMessageClonesFromAnotherConnection)
{
    for (const bool save : {true, false}) {
        ScriptedLink fresh(folder.logs());
        link.tables = fresh.tables;
        open();
        whenModal<frmFileNotFoundMsg>([save](frmFileNotFoundMsg& edit) {
            EXPECT_EQ(
                control<QPlainTextEdit>(edit, "txtFileNotFoundMsg").toPlainText(), QStringLiteral("NO FILE ON 4"));
            control<QSpinBox>(edit, "spnMachine").setValue(1);
            control<QPushButton>(edit, save ? "cmdSave" : "cmdCancel").click();
        });
        find<QPushButton>("cmdEditMsg").click();
        EXPECT_EQ(link.tables.PortCommParmsTable[3].FileNotFoundMessage, save ? "NO FILE ON 2" : "NO FILE ON 4");
        EXPECT_EQ(link.tables.PortCommParmsTable[3].FileNotFoundMsgSet, save ? -1 : 0);
        EXPECT_EQ(link.tables.PortCommParmsTable[1].FileNotFoundMessage, "NO FILE ON 2") << "the template is unchanged";
    }
}

// The keyboard never gets caught or changes a value it did not mean to: Ctrl+PgDn, Ctrl+PgUp and
// Ctrl+Tab turn the editor's pages while a list has the focus, which keeps its value; the message
// editor's Tab leaves the message and Escape cancels it; the zoom lets Tab out and Escape close it.
TEST_F(CommParmsForm, TheKeyboardTurnsPagesAndLeavesEveryBox)
{
    open();
    auto& tabs = find<QTabWidget>("CommTab");
    auto& baud = find<QComboBox>("BaudRates");
    tabs.setCurrentIndex(0); // the editor is the active window: a shortcut is that window's
    baud.setFocus();
    const int value = baud.currentIndex();
    struct Step {
        Qt::Key key;
        Qt::KeyboardModifiers modifiers;
        int page;
    } const steps[] = {
        {Qt::Key_PageDown, Qt::ControlModifier, 1},
        {Qt::Key_PageUp, Qt::ControlModifier, 0},
        {Qt::Key_PageUp, Qt::ControlModifier, tabs.count() - 1},
        {Qt::Key_PageDown, Qt::ControlModifier, 0},
        {Qt::Key_Tab, Qt::ControlModifier, 1},
        {Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier, 0},
    };
    for (const Step& step : steps) {
        QTest::keyClick(QApplication::focusWidget() ? QApplication::focusWidget() : &baud, step.key, step.modifiers);
        EXPECT_EQ(tabs.currentIndex(), step.page) << step.key;
    }
    EXPECT_EQ(baud.currentIndex(), value) << "the list kept its value";

    // Tab goes from the pages' tabs through the page shown, then on to the buttons below them.
    QStringList chain;
    for (QWidget* w = form->nextInFocusChain(); w && w != form.get(); w = w->nextInFocusChain())
        if ((w->focusPolicy() & Qt::TabFocus) && w->isVisible() && w->isEnabled())
            chain << w->objectName();
    EXPECT_LT(chain.indexOf(QStringLiteral("CommTab")), chain.indexOf(QStringLiteral("BaudRates")))
        << chain.join(u' ').toStdString();
    EXPECT_LT(chain.indexOf(QStringLiteral("BaudRates")), chain.indexOf(QStringLiteral("cmdUpdate")))
        << chain.join(u' ').toStdString();

    whenModal<frmFileNotFoundMsg>([](frmFileNotFoundMsg& edit) {
        auto& message = control<QPlainTextEdit>(edit, "txtFileNotFoundMsg");
        message.setFocus();
        QTest::keyClick(&message, Qt::Key_Tab);
        EXPECT_FALSE(message.toPlainText().contains(QLatin1Char('\t')));
        EXPECT_NE(QApplication::focusWidget(), &message) << "Tab left the message";
        QTest::keyClick(&edit, Qt::Key_Escape);
    });
    const std::string before = link.tables.PortCommParmsTable[3].FileNotFoundMessage;
    find<QPushButton>("cmdEditMsg").click();
    EXPECT_EQ(link.tables.PortCommParmsTable[3].FileNotFoundMessage, before) << "Escape is Cancel";

    frmPathZoom zoom(QStringLiteral("C:\\DNC\\LATHES"));
    zoom.show();
    auto& text = control<QPlainTextEdit>(zoom, "txtZoom");
    text.setFocus();
    QTest::keyClick(&text, Qt::Key_X);
    EXPECT_EQ(text.toPlainText(), QStringLiteral("C:\\DNC\\LATHES")) << "the zoom takes no typing";
    QTest::keyClick(&text, Qt::Key_Tab);
    EXPECT_NE(zoom.focusWidget(), &text) << "Tab left the zoom's text";
    text.setFocus();
    QTest::keyClick(&text, Qt::Key_Escape);
    EXPECT_FALSE(zoom.isVisible());
    EXPECT_EQ(zoom.result(), QDialog::Rejected);
}

// The field catalogue and the form agree on every control: which field it edits, its choices'
// captions, and, for every protocol and option state, whether it is enabled.
TEST_F(CommParmsForm, TheCatalogueAndTheFormAgree)
{
    const auto widgetsOf = [this](const FieldRow& row) {
        std::vector<QWidget*> widgets;
        if (row.control != Control::Options) {
            widgets.push_back(&find<QWidget>(std::string(row.controlName).c_str()));
            return widgets;
        }
        for (int code = row.lowest; code <= row.highest; ++code)
            widgets.push_back(&find<QRadioButton>((std::string(row.controlName) + std::to_string(code)).c_str()));
        return widgets;
    };
    const auto compare = [&](const std::string& state) {
        const ControlStates expected = controlStates(shown(), link.tables.DataCollectionTable[3]);
        for (const FieldRow& row : fieldCatalogue()) {
            if (row.controlName.empty() || row.name == "FileNotFoundMessage") // that one has a window of its own
                continue;
            for (QWidget* w : widgetsOf(row))
                EXPECT_EQ(w->isEnabled(), row.enabledFor(expected)) << row.name << " with " << state;
        }
    };
    open();
    for (const FieldRow& row : fieldCatalogue()) {
        if (row.control != Control::Options)
            continue;
        for (int code = row.lowest; code <= row.highest; ++code)
            EXPECT_EQ(widgetsOf(row)[static_cast<std::size_t>(code)]->property("text").toString(),
                QString::fromLatin1(row.choices[static_cast<std::size_t>(code)]))
                << row.name << " " << code;
    }

    for (std::int16_t protocol = 0; protocol < 7; ++protocol)
        for (std::int16_t handshake = 0; handshake < 3; ++handshake)
            for (const bool purge : {false, true})
                for (const bool header : {false, true}) {
                    PortCommParms& p = link.tables.PortCommParmsTable[3];
                    p.SpecificProtocol = protocol;
                    p.Handshaking = handshake;
                    p.bPurgeIfInactive = flagOf(purge);
                    p.StripOutgoingHeader = flagOf(header);
                    form->Form_Load();
                    compare("protocol " + std::to_string(protocol) + ", handshake " + std::to_string(handshake)
                        + (purge ? ", purge" : "") + (header ? ", header stripped" : ""));
                }
    for (const std::int16_t extract : {0, 1})
        for (const std::int16_t stream : {0, 1})
            for (const std::int16_t naming : {0, 1})
                for (const std::int16_t print : {0, 1, 2}) {
                    DataCollectionParms& d = link.tables.DataCollectionTable[3];
                    d.ExtractData = extract;
                    d.DataStreamOption = stream;
                    d.FileNameOption = naming;
                    d.PrintOption = print;
                    form->Form_Load();
                    compare("extract " + std::to_string(extract) + ", stream " + std::to_string(stream) + ", naming "
                        + std::to_string(naming) + ", print " + std::to_string(print));
                }
}

// As it opens, with its pages, tabs and scroll areas: every control named for a reader.
TEST_F(CommParmsForm, EveryControlHasAnAccessibleName)
{
    open();
    EXPECT_EQ(test::unnamedControls(*form).join(QStringLiteral(", ")).toStdString(), "");
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&find<QSpinBox>("PortSpin"))->text(QAccessible::Name),
        QStringLiteral("Row (Port - 1):"))
        << "the spinner holds the grid's row, the port less one";
}

TEST_F(CommParmsForm, F1OpensTheHelpOrSaysItIsMissing)
{
    // The forwarding pages go to a runtime folder of the test's own.
    QTemporaryDir runtime;
    const QByteArray previous = qgetenv("XDG_RUNTIME_DIR");
    qputenv("XDG_RUNTIME_DIR", runtime.path().toLocal8Bit());
    const auto restore = qScopeGuard([&] {
        if (previous.isEmpty())
            qunsetenv("XDG_RUNTIME_DIR");
        else
            qputenv("XDG_RUNTIME_DIR", previous);
    });
    open();
    QTest::keyClick(form.get(), Qt::Key_F1);
    ASSERT_EQ(boxes.calls.size(), 1u);
    EXPECT_TRUE(boxes.calls[0].text.starts_with("The help is missing: ")) << boxes.calls[0].text;

    std::filesystem::create_directories(folder.path() / "help");
    folder.write("help/corvane-remote.html", "<html></html>");
    QTest::keyClick(form.get(), Qt::Key_F1);
    ASSERT_EQ(desktop.opened.size(), 1u);
    EXPECT_TRUE(desktop.opened[0].toLocalFile().startsWith(runtime.path())) << "a forwarding page";
    const QUrl first = test::landsOn(desktop.opened[0]);
    EXPECT_EQ(first.fragment(), QStringLiteral("commparms"));
    EXPECT_TRUE(first.toLocalFile().endsWith(QStringLiteral("help/corvane-remote.html")));

    // On a field, the help's section about that field's tab.
    find<QCheckBox>("chkExtractData").setFocus();
    QTest::keyClick(form.get(), Qt::Key_F1);
    ASSERT_EQ(desktop.opened.size(), 2u);
    EXPECT_EQ(test::landsOn(desktop.opened[1]).fragment(), QStringLiteral("commparms-collection"));

    desktop.opens = false;
    QTest::keyClick(form.get(), Qt::Key_F1);
    EXPECT_TRUE(boxes.calls.back().text.starts_with("Nothing on this desktop opens the help: "));
}

} // namespace
} // namespace corvane
