#pragma once

#include "session/ChangeRecord.h"

#include <QDialog>

#include <array>
#include <memory>

class QLineEdit;

namespace Ui {
class frmConfiguration;
}

namespace corvane {

class HostConfiguration;
class MessageBoxes;

// The five hosts and the idle time. Typing changes the in-memory tables at once; Save writes
// them to the registry, and records what changed there in the name of `actor`; Cancel leaves the
// registry as it was.
class frmConfiguration : public QDialog {
    Q_OBJECT

public:
    frmConfiguration(
        HostConfiguration& config, Logs& logs, MessageBoxes& boxes, ChangeActor actor, QWidget* parent = nullptr);
    ~frmConfiguration() override;

    void Populate_Host_Fields(int n);

private:
    void portEdited(int n);
    void storePort(int n);
    void storePorts();
    void idleEdited();
    void setDefault(int n);
    void save();
    void cancel();

    std::unique_ptr<Ui::frmConfiguration> ui;
    HostConfiguration& config_;
    Logs& logs_;
    MessageBoxes& boxes_;
    ChangeActor actor_;
    std::array<QLineEdit*, 6> names_{};
    std::array<QLineEdit*, 6> addresses_{};
    std::array<QLineEdit*, 6> ports_{};
    bool refusingDuplicate_ = false;
};

} // namespace corvane
