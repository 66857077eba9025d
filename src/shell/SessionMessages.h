#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace corvane {

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
// After the idle log-off's own words: where a port's unsent changes were kept.
std::string unsentEditKept(const std::string& path);
std::string purgeQuestion();
std::string idleLogOff(std::int16_t idleMinutes);
std::string insufficientRights();
std::string accessDenied(); // the user store is missing or unusable
inline constexpr std::string_view AccessDeniedTitle = "Corvane Remote Access Denied";
std::string duplicatePort(std::string_view portText);
// The note under the grid for ports that have no serial line.
inline constexpr std::string_view NotFtpCaption = "Not for use with FTP or Timer Folder connections";
// Text from the host that is no packet; the one protocol fault the user is shown.
inline constexpr std::string_view NoPacketString = "No Packet String";
// The parameter editor's exchanges.
inline constexpr std::string_view FetchCommParmsTimeout = "Fetch Comm Parms Packet Response Time Exceeds Limit";
inline constexpr std::string_view FetchMachineTypeTimeout = "Fetch Machine Type Response Time Exceeds Limit";
inline constexpr std::string_view UpdateNoAck = "Update Packet No Ack Received";
inline constexpr std::string_view HelpContents = "Please refer to the Communications Parameters Help in Corvane.";
} // namespace message

} // namespace corvane
