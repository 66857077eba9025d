#include "commparms/ParmsRules.h"

#include "runtime/Convert.h"
#include "runtime/RunTimeError.h"
#include "runtime/Text.h"

#include <array>
#include <cmath>

namespace corvane {
namespace {

using msg::Critical;

void warn(RuleOutcome& outcome, const EditorFlags& flags, std::string text)
{
    if (flags.warns())
        outcome.messages.push_back({std::move(text)});
}

bool onlyDigits(std::string_view text)
{
    for (char c : text)
        if (c < '0' || c > '9')
            return false;
    return true;
}

// The rates the purge rule reckons with: the baud list, but 4800 counts as 2400.
constexpr std::array<std::int32_t, 15> PurgeRates
    = {110, 300, 600, 1200, 2400, 2400, 9600, 14400, 19200, 38400, 56000, 57600, 115200, 128000, 256000};

} // namespace

std::int16_t minimumPurgeSeconds(std::int16_t baudIndex)
{
    const std::int32_t rate
        = baudIndex >= 0 && static_cast<std::size_t>(baudIndex) < PurgeRates.size() ? PurgeRates[baudIndex] : 0;
    if (rate == 0)
        raise(err::DivisionByZero);
    const std::int16_t minimum = roundToInt16(std::trunc(10000.0 / rate) * 4);
    return minimum < 10 ? std::int16_t{10} : minimum;
}

RuleOutcome BaudRates_Click(PortCommParms& p, std::int16_t index, const EditorFlags& flags)
{
    RuleOutcome outcome;
    p.Baud = index;
    const std::int16_t minimum = minimumPurgeSeconds(index);
    if (p.iPurgeIfInactiveSeconds < minimum) {
        p.iPurgeIfInactiveSeconds = minimum;
        p.iMinimumPurgeSeconds = minimum;
    }
    if (index == 10 || index == 13 || index == 14)
        warn(outcome, flags,
            joinLines({"Some communications ports or devices cannot use the baud rates 56,000 ",
                "128,000 or 256,000.  Performance problems may occur such as ports not loading",
                "or the port going into send standby but never sending.  Please confirm ",
                "comunications with another baud rate before using the selected rate."}));
    return outcome;
}

std::int16_t numberFieldValue(std::string_view digits)
{
    if (!onlyDigits(digits))
        raise(err::TypeMismatch);
    if (digits.size() > 5)
        return 32767;
    return roundToInt16(std::min(textVal(digits), 32767.0));
}

RuleOutcome purgeSecondsLeft(PortCommParms& p, std::string_view text, const EditorFlags& flags)
{
    RuleOutcome outcome;
    if (text.empty()) {
        text = "1";
        outcome.text = "1";
    }
    const std::int16_t seconds = numberFieldValue(text);
    if (seconds < p.iMinimumPurgeSeconds) {
        warn(outcome, flags,
            "Based on the selected Baud rate the minimumn value for this option is "
                + std::to_string(p.iMinimumPurgeSeconds) + " seconds.");
        outcome.text = std::to_string(p.iMinimumPurgeSeconds);
        p.iPurgeIfInactiveSeconds = p.iMinimumPurgeSeconds;
    } else {
        p.iPurgeIfInactiveSeconds = seconds;
        if (seconds == 32767 && text != "32767")
            outcome.text = "32767"; // more than the field's 16 bits hold
    }
    return outcome;
}

void ckPurgeIfInactive_Click(PortCommParms& p, bool ticked)
{
    p.bPurgeIfInactive = flagOf(ticked);
}

RuleOutcome segmentLengthLeft(DataCollectionParms& d, std::string_view text, const EditorFlags& flags)
{
    RuleOutcome outcome;
    const double length = textVal(text);
    d.MaxDataSegment = roundToInt32(length);
    if (length < LeastSegmentLength) {
        warn(outcome, flags, "The minimum segment length is 50.");
        outcome.text = std::to_string(LeastSegmentLength);
        d.MaxDataSegment = LeastSegmentLength;
    }
    if (length > MostSegmentLength) {
        warn(outcome, flags, "The maximum segment length is 1000.");
        outcome.text = std::to_string(MostSegmentLength);
        d.MaxDataSegment = MostSegmentLength;
    }
    return outcome;
}

RuleOutcome eobNullsChanged(PortCommParms& p, std::string_view text, const EditorFlags& flags)
{
    RuleOutcome outcome;
    double nulls = textVal(text);
    if (nulls > MostEobNulls) {
        warn(outcome, flags, "64 is the maximum number of End Of Block Nulls characters.");
        outcome.text = std::to_string(MostEobNulls);
        nulls = MostEobNulls;
    }
    p.EobNullNumber = roundToInt16(nulls);
    return outcome;
}

AsciiCheck ValidateAsciiValue(std::string_view text)
{
    if (text.empty() || text == " ")
        return {};
    const std::string_view word = trimBlanks(text);
    double value = 0;
    bool numeric = upperCase(word) != "TRUE" && upperCase(word) != "FALSE";
    try {
        value = textToDouble(text);
    } catch (const RunTimeError&) {
        numeric = false;
    }
    if (!numeric)
        return {std::nullopt, RuleMessage{"Value must be numeric.", Critical, "Not ASCII Value"}};
    if (value < 0)
        return {};
    const double rounded = std::nearbyint(value);
    if (rounded > 255)
        return {std::nullopt, RuleMessage{"Value must be between 0 - 255", Critical, "Value out of Range."}};
    return {roundToInt16(rounded), std::nullopt};
}

RuleOutcome asciiFieldLeft(std::int16_t& field, std::string_view text, const EditorFlags& flags)
{
    RuleOutcome outcome;
    const AsciiCheck check = ValidateAsciiValue(text);
    if (check.message && flags.warns())
        outcome.messages.push_back(*check.message);
    if (check.value) {
        field = *check.value;
    } else {
        field = -1;
        outcome.text = "";
    }
    return outcome;
}

std::string asciiFieldText(std::int16_t value)
{
    return value < 0 ? std::string() : std::to_string(value);
}

RuleOutcome DataType_Click(PortCommParms& p, std::int16_t index, const EditorFlags& flags)
{
    RuleOutcome outcome;
    p.DataType = index;
    switch (index) {
    case 0: // ISO
        p.Parity = 1;
        p.DataBits = 0;
        break;
    case 1: // EIA
        p.Parity = 0;
        p.DataBits = 1;
        warn(outcome, flags,
            "If you intend to Receive in EIA mode (from the control to the PC), you must use Hardware Handshaking.");
        break;
    case 3: // BINARY
        p.Parity = 0;
        p.DataBits = 1;
        p.EobConversion = 5;
        warn(outcome, flags,
            "If you intend to Receive in Binary mode (from the control to the PC), you must use Hardware Handshaking.");
        break;
    default: // ASCII
        break;
    }
    return outcome;
}

RuleOutcome EndofBlock_Click(PortCommParms& p, std::int16_t index, const EditorFlags& flags)
{
    RuleOutcome outcome;
    p.EobConversion = index;
    const std::int16_t proto = p.SpecificProtocol;
    if (index == 2 && (proto == protocol::Heidenhain || proto == protocol::Bridgeport || proto == protocol::Ge2000))
        warn(outcome, flags, "Using CR End of Block with Heidenhain, Bridgeport DNC or GE 2000 is NOT Recommended!");
    return outcome;
}

RuleOutcome Handshake_Click(PortCommParms& p, std::int16_t index, const EditorFlags& flags)
{
    RuleOutcome outcome;
    p.Handshaking = index;
    if (index == 2 && p.SpecificProtocol != protocol::Ge2000)
        warn(outcome, flags, "Do not use this option for Drip Feeding.  Flow Control is disabled.");
    return outcome;
}

RuleOutcome KeyPad_Click(PortCommParms& p, std::int16_t index, const EditorFlags& flags)
{
    RuleOutcome outcome;
    p.Remote_Req = index;
    constexpr std::int16_t QsiTerminal = 2;
    if (p.ContinuousFeedString.empty() && index == QsiTerminal && p.RedirectCode == 0) {
        p.RedirectCode = '#';
        p.ContinuousFeedString = "+";
        warn(outcome, flags, "QSI requires a '#' Redirect Code");
    }
    return outcome;
}

void RedirectCode_Change(PortCommParms& p, std::string_view text)
{
    p.RedirectCode = text.empty() || text == " " ? 0 : static_cast<unsigned char>(text.front());
}

std::string redirectCodeText(std::int16_t code)
{
    return code > 0 && code < 256 ? std::string(1, static_cast<char>(code)) : std::string();
}

bool ckEnableNoWaitRead_Click(PortCommParms& p, bool ticked, const EditorFlags& flags)
{
    p.bEnableNoWaitRead = flagOf(ticked);
    return ticked && !flags.IsLoading && !flags.IsSwitchingPort;
}

RuleOutcome SpecificProtocols_Click(PortCommParms& p, std::int16_t index, const EditorFlags& flags)
{
    RuleOutcome outcome;
    p.SpecificProtocol = index;
    if (index != protocol::General)
        ckPurgeIfInactive_Click(p, false);
    if (!flags.IsActivated || flags.IsSwitchingPort || flags.IsLoading)
        return outcome; // a record is being shown: its settings stand as they are
    // Each fixed setting is shown in its control, whose own rule then runs as a click would.
    const auto add = [&outcome](RuleOutcome more) {
        outcome.messages.insert(outcome.messages.end(), more.messages.begin(), more.messages.end());
    };
    if (index == protocol::Heidenhain || index == protocol::Bridgeport) {
        add(DataType_Click(p, 0, flags));
        p.DataBits = 0;
        p.Parity = 1;
        p.StopBits = 1;
        add(EndofBlock_Click(p, 5, flags));
    } else if (index == protocol::Ge2000) {
        add(BaudRates_Click(p, 5, flags));
        add(DataType_Click(p, 3, flags));
        p.DataBits = 1;
        p.Parity = 0;
        p.StopBits = 0;
        add(EndofBlock_Click(p, 5, flags));
        add(Handshake_Click(p, 2, flags));
    }
    return outcome;
}

void StripOutgoingHeader_Click(PortCommParms& p, bool ticked)
{
    p.StripOutgoingHeader = flagOf(ticked);
    if (ticked)
        return;
    p.OutHdrEobVal = 0;
    for (std::int16_t* value :
        {&p.OutHdrVal1, &p.OutHdrVal2, &p.OutHdrVal3, &p.OutHdrVal4, &p.OutHdrVal5, &p.OutHdrVal6})
        *value = -1;
}

void applyShowRules(PortCommParms& p)
{
    if (p.SpecificProtocol != protocol::General)
        ckPurgeIfInactive_Click(p, false);
    if (p.StripOutgoingHeader == 0)
        StripOutgoingHeader_Click(p, false);
}

CommControlStates commControlStates(const PortCommParms& p)
{
    return {
        .purgeSeconds = p.bPurgeIfInactive != 0,
        .purgeOption = p.SpecificProtocol == protocol::General,
        .doNotUseNote = p.bPurgeIfInactive != 0,
        .handshakeFrame = p.SpecificProtocol != protocol::Ge2000,
        .ignoreIncomingData = p.Handshaking != 1,
        .outgoingHeader = p.StripOutgoingHeader != 0,
    };
}

std::string portSpinNotice()
{
    return joinLines({"With Remote Terminal you may view/save communications parameters for each connection/machine,",
        "but the save function applies only to the connection/machine currently being viewed.",
        "If you wish to save the parameters for a selected connection/machine to the DNC host computer, ",
        "you must do so before selecting another connection.",
        "This message will be shown once per Remote Terminal Session. "});
}

} // namespace corvane
