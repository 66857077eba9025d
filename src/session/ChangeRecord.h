#pragma once

#include "commparms/RecordFields.h"
#include "security/Rights.h"

#include <QDateTime>
#include <QJsonObject>
#include <QString>

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

class Logs;

class HostConfiguration;

// What a line of the record is about.
namespace change_kind {
inline constexpr std::string_view Update = "update"; // a port's parameters sent to a host
inline constexpr std::string_view Purge = "purge"; // a port purged and reset
inline constexpr std::string_view Revert = "revert"; // a port put back as it was before a change
inline constexpr std::string_view Copy = "copy"; // a port given another port's parameters
inline constexpr std::string_view UserAdmin = "user-admin"; // the user store changed
inline constexpr std::string_view Config = "config"; // the hosts or the idle minutes saved
} // namespace change_kind

// The kinds that send a port's parameters, each an update exchange.
inline bool isPortUpdate(std::string_view kind)
{
    return kind == change_kind::Update || kind == change_kind::Revert || kind == change_kind::Copy;
}

// How it ended. A change that needs no answer (a purge, a local change) is "sent" once done.
namespace change_outcome {
inline constexpr std::string_view Sent = "sent"; // an update: six sections acknowledged, the trailer sent
inline constexpr std::string_view NoAck = "no-ack"; // `section` was not acknowledged; nothing after it went
inline constexpr std::string_view ConnectionLost = "connection-lost"; // `section` and those after it never went
inline constexpr std::string_view Interrupted = "interrupted"; // the program ended the wait for `section`
inline constexpr std::string_view Uncertain = "uncertain"; // the host's answers do not tell
} // namespace change_outcome

// Who makes a change, and through which program.
struct ChangeActor {
    std::string via; // "desktop", "cli"
    std::string osUser; // the operating-system account running the program; empty when unknown
    std::string user; // logged in; empty before anyone is
    std::string authorisedBy; // whose rights allowed it, when not the logged-in user's own
};

// One field of a change. A value left out is not known or not told (a password's never is).
struct RecordedField {
    std::string name;
    std::optional<FieldValue> before;
    std::optional<FieldValue> after;
    std::string by = "user"; // or "rule": a correction the editor made on its own
    // An option no packet carries: kept by the desktop terminal, never sent to the host.
    bool keptByTerminal = false;
};

// One line of the record.
struct ChangeRecordEntry {
    std::string_view kind;
    ChangeActor actor;
    std::optional<QString> host; // the host's address and TCP port, where a host is concerned
    std::optional<int> hostPort;
    std::optional<int> port; // as the grid shows it, 1-128, where a port is concerned
    std::vector<RecordedField> fields;
    std::string_view outcome;
    // Updates only: the section where it stopped (none when it went whole) and how many went.
    std::optional<int> section;
    int sectionsSent = 0;
};

// parameter-changes.jsonl in the program folder, one JSON object a line, appended and never
// rewritten.
inline constexpr std::string_view ChangeRecordName = "parameter-changes.jsonl";
std::string changeRecordPath(const Logs& logs);
// Appends the entry, stamped with the present local time; 0, or the runtime's file error
// number when the line could not be written.
int appendChangeRecord(Logs& logs, const ChangeRecordEntry& entry);
// Appends the entry; a line that cannot be written is said on standard error and logged in
// error.log (location 312), never passed over in silence.
void recordChange(Logs& logs, const ChangeRecordEntry& entry);
// A change made on this computer (the user store, the configuration): recorded as sent, when
// anything changed at all.
void recordLocalChange(
    Logs& logs, std::string_view kind, const ChangeActor& actor, std::vector<RecordedField> fields);

// The fields of a port's records that an update changes.
std::vector<RecordedField> recordedFields(const std::vector<ChangedField>& changes);
// A user's entry before and after (none: added, or deleted): the name always, so that the line
// says whose; "Password" (no values) when it changed; "Rights.<right>" (1 granted, 0 not) for each
// right of the list that changed.
std::vector<RecordedField> userFields(
    const std::optional<UserEntry>& before, const std::optional<UserEntry>& after, const RightsList& rights);
// What a save of the configuration changes in the machine's settings, under their value names.
std::vector<RecordedField> configurationFields(const HostConfiguration& stored, const HostConfiguration& saved);
// The configuration form's Save, and the client's: written to the machine's settings and, when
// that went, recorded against what the settings held. False when it could not be saved.
bool saveConfiguration(HostConfiguration& config, Logs& logs, const ChangeActor& actor);

// Which lines a reader wants.
struct ChangeFilter {
    std::optional<int> port;
    std::optional<QString> user; // the logged-in user or the one who authorised, either case
    std::optional<QDateTime> since; // at or after
    std::optional<QDateTime> until; // at or before

    bool matches(const QJsonObject& entry) const;
};

// A line longer than this is no line of ours; it is passed over without being held whole.
inline constexpr std::size_t MaxChangeRecordLine = 1 << 20;

struct ChangeRecordScan {
    std::string error; // the record could not be read (not a regular file, ...); empty when read
    std::size_t passedOver = 0; // damaged lines, or lines too long
};
// Hands each well-formed line the filter matches to `each`, oldest first, reading one line at a
// time; `each` returns false to stop. A missing record has no lines.
ChangeRecordScan scanChangeRecord(
    const Logs& logs, const ChangeFilter& filter, const std::function<bool(const QJsonObject&)>& each);

QJsonValue jsonOf(const FieldValue& value);

} // namespace corvane
