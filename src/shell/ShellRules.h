#pragma once

#include "protocol/Replies.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

// The terminal's own version: 1.02, build 8.
inline constexpr int ClientMajor = 1;
inline constexpr int ClientMinor = 2;
inline constexpr int ClientBuild = 8;
std::string clientVersionText(); // "1.02 (build 8)"

// The oldest host the terminal works with, printed as it stands in the messages.
inline constexpr std::string_view MinimumHostVersion = "4.12";

// A host older than 4.12 is refused; a version that is no number is refused too.
bool hostVersionAccepted(std::string_view hostVersion);
// The upgrade advisory: only when the host asks for more than the terminal's own version, read
// as major.minor with plain integers (1.02 reads as 1.2).
bool upgradeAdvised(std::string_view minimumRemoteVersion);

// The messages of the host session, word for word (lines joined by CR LF).
namespace message {
std::string alreadyConnected(); // connect while connected
std::string alreadyConnectedDropDown(); // host picker opened while connected
std::string noAddress();
std::string undefinedHost();
std::string connectionTimeOut();
std::string fetchVersionTimeout();
std::string hostTooOld(std::string_view hostVersion);
std::string upgradeAdvisory(std::string_view hostVersion, std::string_view minimumRemoteVersion);
std::string noSocketConnection();
std::string purgeQuestion();
std::string idleLogOff(std::int16_t idleMinutes);
std::string insufficientRights();
std::string accessDenied(); // the user store is missing or unusable
inline constexpr std::string_view AccessDeniedTitle = "Corvane Remote Access Denied";
std::string duplicatePort(std::string_view portText);
} // namespace message

// Ports whose status names one of these modes have no serial line.
bool isFtpTypeMode(std::string_view status);
inline constexpr std::string_view NotFtpCaption = "Not for use with FTP or Timer Folder connections";

// The port grid: 128 rows, bookmarks are the row numbers as text.
inline constexpr int GridRows = 128;
inline constexpr int GridColumns = 6;
inline constexpr std::int16_t InvalidRow = -9999;
// A null bookmark is before the first row reading forward and after the last reading backward;
// otherwise its value, truncated; outside 0-127 it is invalid.
std::int16_t bookmarkToRow(const std::optional<std::string>& bookmark, bool forward);
std::string rowBookmark(int row);
// The rows an unbound read returns: up to `count` from the start bookmark, one step at a time.
std::vector<int> unboundReadRows(const std::optional<std::string>& startBookmark, int count, bool forward);
// The six values of a grid row: port number, machine, program, ID, status, byte count.
std::string gridValue(const std::vector<PortStatusRecord>& table, int row, int column);

// The configuration form's typing rules.
struct FieldChange {
    std::string text;
    bool selectAll = false; // the field was emptied and now reads "1"
    bool duplicate = false; // another host has this port: the message, then the stored value
};
inline constexpr int HostCount = 5;
// A port field after a change, against the other four port fields (compared as text).
FieldChange portFieldChanged(std::string_view text, const std::vector<std::string>& otherPortTexts);
// The idle field after a change: empty reads "1", above 60 reads "60".
FieldChange idleFieldChanged(std::string_view text);
// Port and idle fields take the digits and backspace; every other key is discarded.
bool acceptedDigitKey(char key);

} // namespace corvane
