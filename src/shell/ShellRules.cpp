#include "shell/ShellRules.h"

#include "runtime/Convert.h"
#include "runtime/RunTimeError.h"

#include <cmath>
#include <initializer_list>

namespace corvane {
namespace {

constexpr std::string_view CrLf = "\r\n";

std::string ownVersionText()
{
    return std::to_string(ClientMajor) + "." + std::to_string(ClientMinor);
}

} // namespace

std::string clientVersionText()
{
    return std::to_string(ClientMajor) + "." + (ClientMinor < 10 ? "0" : "") + std::to_string(ClientMinor) + " (build "
        + std::to_string(ClientBuild) + ")";
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

namespace message {
namespace {

// A message is its lines joined by CR LF; an empty piece is an empty line.
std::string lines(std::initializer_list<std::string_view> pieces)
{
    std::string text;
    bool first = true;
    for (std::string_view piece : pieces) {
        if (!first)
            text += CrLf;
        text += piece;
        first = false;
    }
    return text;
}

} // namespace

std::string alreadyConnected()
{
    return lines({"Already connected.  To connect to a different ", "Host please disconnect the current host first."});
}

std::string alreadyConnectedDropDown()
{
    return lines({"Already connected.  To connect to a different ", "Host please disconnect from the current Host."});
}

std::string noAddress()
{
    return lines({"No IP address is assigned.  Please select", "a Host with an assigned IP address."});
}

std::string undefinedHost()
{
    return "Please use the configuration menu to set the Host IP Address.";
}

std::string connectionTimeOut()
{
    return lines({"Connection Time Out.", "", "Another instance of Corvane Remote may be connected",
        "to your target Host.  If not, please check the following:", "",
        "Use the Configuration utility to set both the Host IP Address ",
        "and the Socket Port Number to match the configuration you",
        "assigned to the Corvane Host you are attempting to ", "connect to. Also, confirm that the Corvane Host is",
        "running with the Remote Socket option enabled."});
}

std::string fetchVersionTimeout()
{
    return lines({"Fetch Version Timeout.", "", "You must be connecting to Corvane ",
        "version " + std::string(MinimumHostVersion) + ".xx or later."});
}

std::string hostTooOld(std::string_view hostVersion)
{
    return lines({"You are attempting to connect to Corvane version ",
        std::string(hostVersion) + ".  This version of Corvane Remote requires",
        "Corvane version " + std::string(MinimumHostVersion) + ".xx or later."});
}

std::string upgradeAdvisory(std::string_view hostVersion, std::string_view minimumRemoteVersion)
{
    return lines({"The version of Corvane you are connected to",
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

std::string purgeQuestion()
{
    return lines({"This action will purge and reset the specified port.", "Do you want to continue?"});
}

std::string idleLogOff(std::int16_t idleMinutes)
{
    return lines(
        {"No User Activity For " + std::to_string(idleMinutes) + " Minutes. ", "Remote Connection Disconnected  "});
}

std::string insufficientRights()
{
    return lines({"You have insufficient computer rights to access this module.", "",
        "To run this module you need read/write access to ", "LOCAL_MACHINE registry values.", "",
        "This is a system restriction, not a Corvane restriction. ", "",
        "Contact your Systems Administrator if you need access ", "to this module."});
}

std::string accessDenied()
{
    return lines({"Password Security has been compromised.  ", "Reinstall CV Remote."});
}

std::string duplicatePort(std::string_view portText)
{
    return lines({"Port: " + std::string(portText) + " is already assigned to ",
        "another Host.  You must assign a unique number."});
}

} // namespace message

bool isFtpTypeMode(std::string_view status)
{
    return status == "FTP" || status == "Timer Folder" || status == "DC + FTP" || status == "DC + TMR FLDR";
}

std::int16_t bookmarkToRow(const std::optional<std::string>& bookmark, bool forward)
{
    if (!bookmark)
        return forward ? -1 : GridRows;
    double value = 0;
    try {
        value = std::trunc(textToDouble(*bookmark));
    } catch (const RunTimeError&) {
        return InvalidRow;
    }
    return value < 0 || value >= GridRows ? InvalidRow : static_cast<std::int16_t>(value);
}

std::string rowBookmark(int row)
{
    return std::to_string(row);
}

std::vector<int> unboundReadRows(const std::optional<std::string>& startBookmark, int count, bool forward)
{
    std::vector<int> rows;
    const std::int16_t start = bookmarkToRow(startBookmark, forward);
    if (start == InvalidRow)
        return rows;
    for (int row = start + (forward ? 1 : -1); static_cast<int>(rows.size()) < count; row += forward ? 1 : -1) {
        if (row < 0 || row >= GridRows)
            break;
        rows.push_back(row);
    }
    return rows;
}

std::string gridValue(const std::vector<PortStatusRecord>& table, int row, int column)
{
    if (column == 0)
        return std::to_string(row + 1);
    if (row < 0 || static_cast<std::size_t>(row) >= table.size())
        return {};
    const PortStatusRecord& r = table[static_cast<std::size_t>(row)];
    switch (column) {
    case 1:
        return r.WorkstationName;
    case 2:
        return r.FileName;
    case 3:
        return r.DNC_ID;
    case 4:
        return r.Status;
    case 5:
        return r.ByteCount;
    default:
        return {};
    }
}

FieldChange portFieldChanged(std::string_view text, const std::vector<std::string>& otherPortTexts)
{
    FieldChange change{std::string(text)};
    if (text.empty()) {
        change.text = "1";
        change.selectAll = true;
    } else {
        // Only digits reach the field; a run longer than any port is above 65535 all the same.
        const double value = text.size() > 9 ? 1e10 : textToDouble(text);
        if (value > 65535)
            change.text = "65535";
        else if (value < 1)
            change.text = "1";
    }
    for (const std::string& other : otherPortTexts)
        if (other == change.text)
            change.duplicate = true;
    return change;
}

FieldChange idleFieldChanged(std::string_view text)
{
    FieldChange change{std::string(text)};
    if (text.empty()) {
        change.text = "1";
        change.selectAll = true;
    } else if (text.size() > 2 || textToDouble(text) > 60) {
        change.text = "60";
    }
    return change;
}

bool acceptedDigitKey(char key)
{
    return (key >= '0' && key <= '9') || key == '\b';
}

} // namespace corvane
