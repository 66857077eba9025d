#pragma once

#include "shell/ClientVersion.h"

#include <string>
#include <string_view>

namespace corvane {

// The version as the windows show it: "1.02 (build 8)".
std::string clientVersionText();
// What --version prints, the program's version and the package's, each named, in the form of
// a first version line that man page tools read: "corvane-remote (Corvane Remote) program 1.02
// (build 8), package 1.2.8".
std::string versionLine(std::string_view program);
// Major and minor as plain integers, as the version rule reads them: 1.02 is "1.2".
std::string ownVersionText();

// The oldest host the terminal works with, printed as it stands in the messages.
inline constexpr std::string_view MinimumHostVersion = "4.12";

// A host older than 4.12 is refused; a version that is no number is refused too.
bool hostVersionAccepted(std::string_view hostVersion);
// The upgrade advisory: only when the host asks for more than the terminal's own version, read
// as major.minor with plain integers (1.02 reads as 1.2).
bool upgradeAdvised(std::string_view minimumRemoteVersion);

} // namespace corvane
