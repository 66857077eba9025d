#pragma once

// What the commands that read or send a port's parameters share: the editor's session, the
// fetch and the update as the editor runs them, an export's ports, values applied through the
// editor's rules, and what a dry run shows instead of sending.
#include "cli/Cli.h"
#include "commparms/RecordFields.h"

#include <QJsonObject>

#include <vector>

namespace corvane::cli {

// Logged in with the Comm Parameters right, connected.
void editorSession(Client& client);
// The port's six sections fetched whole; ends with 1 or 3 (said) otherwise.
void fetched(Client& client, std::int16_t port);
// The port's records sent back as the editor's update does; ends with 1 or 3 (said) otherwise.
void update(Client& client, std::int16_t port);

// A port as the host sent it in a complete fetch, with what the editor's rules of showing it
// change beside it.
QJsonObject portJson(Client& client, std::int16_t port);

// Values for some fields of a port, each already checked to fit its field.
struct FieldValues {
    std::int16_t port;
    std::vector<std::pair<const RecordField*, FieldValue>> values;
};
// A value from JSON (an export, the record of changes): a number or text, as the field's kind
// wants; none when it is the other.
std::optional<FieldValue> valueFor(const RecordField& field, const QJsonValue& json);

// The ports of an export file (those of `only`, when given), every field checked before
// anything is sent; ends with 2 on the first fault.
std::vector<FieldValues> readExport(const QString& path, const std::vector<std::int16_t>& only = {});
// A port's values as FieldValues, the host's fields only; its identity (connection name, COM
// port) left out unless `identityToo`.
FieldValues valuesOf(std::int16_t port, const PortRecords& records, bool identityToo);
// Whether a field is one of a port's identity: its connection name or its COM port.
bool isIdentityField(std::string_view name);

// The values over the port's fresh fetch in `records`, each one that would change the record
// through its control's rule, in order: the same corrections, warnings and refusals as
// set-parms, said as they come. False, with why, when a rule refuses a value: nothing of the
// port may be sent then.
bool applyValues(Client& client, const FieldValues& wanted, PortRecords& records);

// The port's records made what an update would send: with --dry-run, the difference from what
// the host holds is printed (field, old -> new, those the rules changed marked) and nothing is
// sent; else the update goes.
void sendOrShow(Client& client, std::int16_t port, const PortRecords& records);

} // namespace corvane::cli
