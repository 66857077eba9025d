#include "shell/VersionRules.h"

#include "runtime/Convert.h"
#include "runtime/RunTimeError.h"
#include "shell/PackageVersion.h"

namespace corvane {

std::string clientVersionText()
{
    return std::to_string(ClientMajor) + "." + (ClientMinor < 10 ? "0" : "") + std::to_string(ClientMinor) + " (build "
        + std::to_string(ClientBuild) + ")";
}

std::string versionLine(std::string_view program)
{
    return std::string(program) + " (Corvane Remote) program " + clientVersionText() + ", package "
        + std::string(PackageVersion);
}

std::string ownVersionText()
{
    return std::to_string(ClientMajor) + "." + std::to_string(ClientMinor);
}

bool hostVersionAccepted(std::string_view hostVersion)
{
    try {
        return textToDouble(hostVersion) >= textToDouble(MinimumHostVersion);
    } catch (const RunTimeError&) {
        return false;
    }
}

bool upgradeAdvised(std::string_view minimumRemoteVersion)
{
    try {
        return textToDouble(minimumRemoteVersion) > textToDouble(ownVersionText());
    } catch (const RunTimeError&) {
        return false;
    }
}

} // namespace corvane
