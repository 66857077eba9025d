#pragma once

#include "commparms/RecordFields.h"

#include <QJsonObject>
#include <QString>

#include <optional>
#include <string>
#include <vector>

namespace corvane {

// One parameter update sent to a host, from the desktop editor or the command-line client: who,
// to which host and port, what differs from what was fetched, and how far it got.
struct ChangeRecordEntry {
    std::string user;
    QString host;
    int hostPort = 0;
    int port = 0; // as the grid shows it, 1-128
    std::vector<ChangedField> changes;
    // "complete" (six sections acknowledged, the trailer sent); else where it stopped, at
    // `section`: "no acknowledgement", "connection lost" (that section and those after it were
    // never sent), "called off" (the program ended the wait); "trailer not sent" when the six
    // were acknowledged and the connection went before the trailer.
    std::string outcome;
    int section = 0;
    int sectionsSent = 0;
};

// parameter-changes.jsonl in the program folder, one JSON object a line.
std::string changeRecordPath();
// Appends the entry, stamped with the present time; 0, or the runtime's file error number when
// the line could not be written.
int appendChangeRecord(const ChangeRecordEntry& entry);
// The entries as written, oldest first; those of one port (1-128) when it is given. Lines that
// are no JSON object are passed over.
std::vector<QJsonObject> readChangeRecord(std::optional<int> port = std::nullopt);

QJsonValue jsonOf(const FieldValue& value);

} // namespace corvane
