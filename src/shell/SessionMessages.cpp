#include "shell/SessionMessages.h"

#include "runtime/Text.h"
#include "shell/VersionRules.h"

#include <initializer_list>

namespace corvane {
namespace message {
std::string alreadyConnected()
{
    return joinLines(
        {"Already connected.  To connect to a different ", "Host please disconnect the current host first."});
}

std::string alreadyConnectedDropDown()
{
    return joinLines(
        {"Already connected.  To connect to a different ", "Host please disconnect from the current Host."});
}

std::string noAddress()
{
    return joinLines({"No IP address is assigned.  Please select", "a Host with an assigned IP address."});
}

std::string undefinedHost()
{
    return "Please use the configuration menu to set the Host IP Address.";
}

std::string connectionTimeOut()
{
    return joinLines({"Connection Time Out.", "", "Another instance of Corvane Remote may be connected",
        "to your target Host.  If not, please check the following:", "",
        "Use the Configuration utility to set both the Host IP Address ",
        "and the Socket Port Number to match the configuration you",
        "assigned to the Corvane Host you are attempting to ", "connect to. Also, confirm that the Corvane Host is",
        "running with the Remote Socket option enabled."});
}

std::string fetchVersionTimeout()
{
    return joinLines({"Fetch Version Timeout.", "", "You must be connecting to Corvane ",
        "version " + std::string(MinimumHostVersion) + ".xx or later."});
}

std::string hostTooOld(std::string_view hostVersion)
{
    return joinLines({"You are attempting to connect to Corvane version ",
        std::string(hostVersion) + ".  This version of Corvane Remote requires",
        "Corvane version " + std::string(MinimumHostVersion) + ".xx or later."});
}

std::string upgradeAdvisory(std::string_view hostVersion, std::string_view minimumRemoteVersion)
{
    return joinLines({"The version of Corvane you are connected to",
        "-- version " + std::string(hostVersion) + ".xx -- is optimized for use with ",
        "Corvane Remote version " + std::string(minimumRemoteVersion) + ".xx.", "",
        "The version of Corvane Remote you are currently ",
        "using is " + ownVersionText() + ".xx.  You should upgrade this version", "of Corvane Remote.", "",
        "Ask the supplier of your DNC system for update information."});
}

std::string noSocketConnection()
{
    return "No Socket Connection.  Try To Connect Again";
}

std::string unsentEditKept(const std::string& path)
{
    return "Changes that were not sent are kept in " + path + " (corvane-remote-cli import sends them).";
}

std::string purgeQuestion()
{
    return joinLines({"This action will purge and reset the specified port.", "Do you want to continue?"});
}

std::string idleLogOff(std::int16_t idleMinutes)
{
    return joinLines(
        {"No User Activity For " + std::to_string(idleMinutes) + " Minutes. ", "Remote Connection Disconnected  "});
}

std::string insufficientRights()
{
    return joinLines({"You have insufficient computer rights to access this module.", "",
        "To run this module you need read/write access to ", "LOCAL_MACHINE registry values.", "",
        "This is a system restriction, not a Corvane restriction. ", "",
        "Contact your Systems Administrator if you need access ", "to this module."});
}

std::string accessDenied()
{
    return joinLines({"Password Security has been compromised.  ", "Reinstall CV Remote."});
}

std::string duplicatePort(std::string_view portText)
{
    return joinLines({"Port: " + std::string(portText) + " is already assigned to ",
        "another Host.  You must assign a unique number."});
}

} // namespace message

} // namespace corvane
