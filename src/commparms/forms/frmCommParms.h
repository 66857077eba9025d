#pragma once

#include "commparms/forms/ParmsEditing.h"

#include <QDialog>

#include <memory>
#include <vector>

namespace Ui {
class frmCommParms;
}

namespace corvane {

class CommTabDataCollection;
class CommTabOptions;
class CommTabRequests;
class CommTabSerial;
class CommTabStrings;

// The editor of one port's parameters: fetched from the host when it opens and when another
// port is chosen, shown on five tabs, changed under the rules, and sent back with cmdUpdate.
// It works on the port's records in the session's tables; there is no working copy.
class frmCommParms : public QDialog, private ParmsEditing {
    Q_OBJECT

public:
    frmCommParms(ParmsLink& link, Services& services, QWidget* parent = nullptr);
    ~frmCommParms() override;

    // Loads the form for the selected port (fetching its six sections) and shows it modally.
    int run();
    // The load alone: single-port labels, the selected port fetched and shown on the first tab.
    void Form_Load();
    std::int16_t shownPort() const { return CurrentPort; }

Q_SIGNALS:
    // The form is up and activated (the pictures of the demo wait for it).
    void activated();

protected:
    bool event(QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    // ParmsEditing
    PortCommParms& comm() override;
    DataCollectionParms& collection() override;
    std::int16_t currentPort() const override { return CurrentPort; }
    EditorFlags flags() const override { return {IsActivated, IsLoading, IsSwitchingPort}; }
    ParmsLink& link() override { return link_; }
    Services& services() override { return services_; }
    void changed(const RuleOutcome& outcome, bool showAll) override;

    void Form_Activate();
    void PortSpin_Change(int value);
    void showPort(int value);
    void ShowPortParms();
    void showFetchState();
    void SetDataValues();
    void Match_cboMachineTypesIndex();
    void showStates();
    void cmdUpdate_Click();
    void showHelp();
    void tell(const RuleMessage& message);

    std::unique_ptr<Ui::frmCommParms> ui;
    ParmsLink& link_;
    Services& services_;
    CommTabSerial* serial_;
    CommTabRequests* requests_;
    CommTabOptions* options_;
    CommTabStrings* strings_;
    CommTabDataCollection* collection_;
    std::vector<CommParmsPage*> pages_;

    std::int16_t CurrentPort = 0;
    bool IsActivated = false;
    bool IsLoading = false;
    bool IsSwitchingPort = false;
    bool ParmsChanged = false;
    bool busyCursor_ = false;
};

} // namespace corvane
