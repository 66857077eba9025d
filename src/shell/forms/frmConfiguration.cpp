#include "shell/forms/frmConfiguration.h"

#include "dialogs/MessageBoxes.h"
#include "widgets/DigitField.h"
#include "platform/Latin1.h"
#include "shell/ConfigurationRules.h"
#include "session/HostConfiguration.h"
#include "shell/SessionMessages.h"
#include "ui_frmConfiguration.h"

#include "runtime/Convert.h"
#include "runtime/RunTimeError.h"

#include <QApplication>

namespace corvane {

frmConfiguration::frmConfiguration(
    HostConfiguration& config, Logs& logs, MessageBoxes& boxes, ChangeActor actor, QWidget* parent)
    : QDialog(parent)
    , ui(std::make_unique<Ui::frmConfiguration>())
    , config_(config)
    , logs_(logs)
    , boxes_(boxes)
    , actor_(std::move(actor))
{
    ui->setupUi(this);
    names_ = {nullptr, ui->txtHostName_1, ui->txtHostName_2, ui->txtHostName_3, ui->txtHostName_4, ui->txtHostName_5};
    addresses_ = {nullptr, ui->txtHostIP_1, ui->txtHostIP_2, ui->txtHostIP_3, ui->txtHostIP_4, ui->txtHostIP_5};
    ports_ = {nullptr, ui->txtSocketPortNumber_1, ui->txtSocketPortNumber_2, ui->txtSocketPortNumber_3,
        ui->txtSocketPortNumber_4, ui->txtSocketPortNumber_5};
    const std::array<QPushButton*, 6> defaults
        = {nullptr, ui->cmdDefault_1, ui->cmdDefault_2, ui->cmdDefault_3, ui->cmdDefault_4, ui->cmdDefault_5};

    for (int n = 1; n <= HostCount; ++n) {
        Populate_Host_Fields(n);
        const auto i = static_cast<std::size_t>(n);
        connect(
            names_[i], &QLineEdit::textEdited, this, [this, i](const QString& text) { config_.HostNames[i] = text; });
        connect(
            addresses_[i], &QLineEdit::textEdited, this, [this, i](const QString& text) { config_.HostIPs[i] = text; });
        connect(ports_[i], &QLineEdit::textEdited, this, [this, n] { portEdited(n); });
        connect(ports_[i], &QLineEdit::editingFinished, this, [this, n] { storePort(n); });
        connect(defaults[i], &QPushButton::clicked, this, [this, n] { setDefault(n); });
        DigitField::apply(*ports_[i]);
    }
    ui->txtIdleMinutes->setText(QString::number(config.IdleMinutes));
    DigitField::apply(*ui->txtIdleMinutes);
    connect(ui->txtIdleMinutes, &QLineEdit::textEdited, this, &frmConfiguration::idleEdited);
    connect(ui->cmdSaveHostIP, &QPushButton::clicked, this, &frmConfiguration::save);
    connect(ui->cmdCancel, &QPushButton::clicked, this, &frmConfiguration::cancel);
}

frmConfiguration::~frmConfiguration() = default;

void frmConfiguration::Populate_Host_Fields(int n)
{
    const auto i = static_cast<std::size_t>(n);
    names_[i]->setText(config_.HostNames[i]);
    addresses_[i]->setText(config_.HostIPs[i]);
    ports_[i]->setText(QString::number(config_.SocketPorts[i]));
}

void frmConfiguration::portEdited(int n)
{
    QLineEdit* field = ports_[static_cast<std::size_t>(n)];
    std::vector<std::string> others;
    for (int m = 1; m <= HostCount; ++m)
        if (m != n)
            others.push_back(toLatin1Bytes(ports_[static_cast<std::size_t>(m)]->text()));

    const FieldChange change = portFieldChanged(toLatin1Bytes(field->text()), others);
    if (fromLatin1Bytes(change.text) != field->text())
        field->setText(fromLatin1Bytes(change.text));
    if (change.selectAll)
        field->selectAll();
    if (change.duplicate) {
        // The box takes the focus; that is not the user leaving the field, so what they typed is
        // not stored on the way out, and the field goes back to the stored port.
        refusingDuplicate_ = true;
        boxes_.MsgBox(message::duplicatePort(change.text), 0, toLatin1Bytes(QApplication::applicationName()));
        refusingDuplicate_ = false;
        field->setText(QString::number(config_.SocketPorts[static_cast<std::size_t>(n)]));
    }
}

void frmConfiguration::storePort(int n)
{
    if (refusingDuplicate_)
        return;
    const auto i = static_cast<std::size_t>(n);
    try {
        config_.SocketPorts[i] = textToInt32(toLatin1Bytes(ports_[i]->text()));
    } catch (const RunTimeError&) {
        // Only digits get in, and the rules keep the field at 1-65535; nothing else is stored.
    }
}

void frmConfiguration::idleEdited()
{
    const FieldChange change = idleFieldChanged(toLatin1Bytes(ui->txtIdleMinutes->text()));
    if (fromLatin1Bytes(change.text) != ui->txtIdleMinutes->text())
        ui->txtIdleMinutes->setText(fromLatin1Bytes(change.text));
    if (change.selectAll)
        ui->txtIdleMinutes->selectAll();
    config_.IdleMinutes = textToInt16(change.text);
}

void frmConfiguration::setDefault(int n)
{
    const auto i = static_cast<std::size_t>(n);
    config_.HostNames[i] = HostConfiguration::defaultName(n);
    config_.HostIPs[i].clear();
    config_.SocketPorts[i] = HostConfiguration::defaultPort(n);
    Populate_Host_Fields(n);
}

// Leaving a port field for a button stores it, as leaving it any other way does.
void frmConfiguration::storePorts()
{
    for (int n = 1; n <= HostCount; ++n)
        storePort(n);
}

void frmConfiguration::save()
{
    storePorts();
    if (!saveConfiguration(config_, logs_, actor_))
        boxes_.MsgBox("The configuration could not be saved: this user may not write the machine's settings.",
            msg::Exclamation, toLatin1Bytes(QApplication::applicationName()));
    accept();
}

void frmConfiguration::cancel()
{
    storePorts();
    reject();
}

} // namespace corvane
