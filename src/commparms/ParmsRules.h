#pragma once

#include "commparms/PortParms.h"
#include "runtime/MessageStyle.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

// The parameter editor's rules: each takes the shown port's record and what the user did to one
// control, corrects the record at once, and says what to tell the user and what the edited
// field now shows. The desktop editor's handlers and the command-line client call these very
// functions; neither holds a rule of its own.

// The editor's state that decides whether a rule may warn.
struct EditorFlags {
    bool IsActivated = false; // the form has been activated
    bool IsLoading = false; // SetDataValues is filling the controls
    bool IsSwitchingPort = false; // the form loads or moves to another port
    // A rule warns only once the form is up and while it is not filling its controls from a
    // record; its correction of the record happens in any case.
    bool warns() const { return IsActivated && !IsLoading; }
};

// A message box a rule raises: plain information unless the rule names a style.
struct RuleMessage {
    RuleMessage(std::string text_, std::int16_t style_ = msg::Information, std::string title_ = {})
        : text(std::move(text_))
        , style(style_)
        , title(std::move(title_))
    {
    }
    std::string text;
    std::int16_t style; // msg::Information, or msg::Critical
    std::string title; // empty: the application's title

    bool operator==(const RuleMessage&) const = default;
};

struct RuleOutcome {
    std::vector<RuleMessage> messages;
    std::optional<std::string> text; // what the edited field shows now, when the rule changed it

    bool operator==(const RuleOutcome&) const = default;
};

// Baud rate chosen: the index is stored; the purge time is raised to the rate's minimum (and
// the minimum stored with it) but never lowered; 56000, 128000 and 256000 warn.
RuleOutcome BaudRates_Click(PortCommParms& p, std::int16_t index, const EditorFlags& flags);

// The least purge time for a baud index: round-to-even(truncate(10000 / rate) * 4), at least
// 10; 4800 counts as 2400. An index beyond the list has rate 0: "Division by zero".
std::int16_t minimumPurgeSeconds(std::int16_t baudIndex);

// The purge time field, on leaving it: empty reads "1"; below the minimum the minimum goes
// back with a message. Digits only reach the field; more than 16 bits hold reads as 32767.
RuleOutcome purgeSecondsLeft(PortCommParms& p, std::string_view text, const EditorFlags& flags);

// The purge check box: -1 or 0 in bPurgeIfInactive (the field's state follows, see below).
void ckPurgeIfInactive_Click(PortCommParms& p, bool ticked);

inline constexpr std::int32_t LeastSegmentLength = 50;
inline constexpr std::int32_t MostSegmentLength = 1000;
// The maximum segment length, on leaving it: stored first, then below 50 reads "50" and
// above 1000 reads "1000", each with its message.
RuleOutcome segmentLengthLeft(DataCollectionParms& d, std::string_view text, const EditorFlags& flags);

// End-of-block nulls, on each change: above 64 reads "64" with a message; stored rounded.
inline constexpr std::int16_t MostEobNulls = 64;
RuleOutcome eobNullsChanged(PortCommParms& p, std::string_view text, const EditorFlags& flags);

// An ASCII value, 0-255. Empty, one blank or negative: refused without a word; not a number
// or out of range: refused with a critical message. The outcome is the value, or none.
struct AsciiCheck {
    std::optional<std::int16_t> value;
    std::optional<RuleMessage> message;
};
AsciiCheck ValidateAsciiValue(std::string_view text);
// An ASCII field left: an accepted value is stored; anything else stores -1 ("none") and
// empties the field.
RuleOutcome asciiFieldLeft(std::int16_t& field, std::string_view text, const EditorFlags& flags);
// How a stored ASCII value shows: -1 (none) shows empty.
std::string asciiFieldText(std::int16_t value);

// Data type chosen: ISO forces even parity and 7 bits; EIA no parity and 8 bits, with a
// warning; BINARY no parity, 8 bits and no end-of-block conversion, with a warning. The
// serial settings are shown again afterwards.
RuleOutcome DataType_Click(PortCommParms& p, std::int16_t index, const EditorFlags& flags);
// End of block chosen: CR with Heidenhain, Bridgeport or GE 2000 warns.
RuleOutcome EndofBlock_Click(PortCommParms& p, std::int16_t index, const EditorFlags& flags);
// Handshake chosen: Xon warns unless the protocol is GE 2000.
RuleOutcome Handshake_Click(PortCommParms& p, std::int16_t index, const EditorFlags& flags);
// Key pad chosen: QSI with no feed string and no redirect code takes "#" and "+".
RuleOutcome KeyPad_Click(PortCommParms& p, std::int16_t index, const EditorFlags& flags);
// Redirect code changed: empty or one blank is 0, else the first character's code.
void RedirectCode_Change(PortCommParms& p, std::string_view text);
// How the redirect code shows: its character, empty for 0.
std::string redirectCodeText(std::int16_t code);
// No-wait read: -1 or 0; true when the notice about it is to be shown.
inline constexpr std::string_view NoWaitReadNotice
    = "DO NOT use No Wait Read if your Remote Request program, including "
      "\"Tape Leader and Trailer\"  is greater than 500 characters.";
bool ckEnableNoWaitRead_Click(PortCommParms& p, bool ticked, const EditorFlags& flags);
// Specific protocol chosen: non-General protocols untick (and disable) the purge option;
// when the user made the change, the protocol's fixed settings are applied, each through its
// control's own rule (so GE 2000's binary data type warns, and its 4800 baud raises the purge time).
RuleOutcome SpecificProtocols_Click(PortCommParms& p, std::int16_t index, const EditorFlags& flags);
// Strip outgoing header: cleared, it unticks the EOB box and clears the six values to -1.
void StripOutgoingHeader_Click(PortCommParms& p, bool ticked);

// The rules that belong to showing a record, run wherever a record is shown or modelled so that
// what the form shows is what the record holds is what Update sends: a protocol other than
// General leaves the purge option unticked (the protocol's rule), and a header that is not
// stripped holds no EOB box and no values (the header's rule). The record is corrected in place.
void applyShowRules(PortCommParms& p);

// A number field (COM port, occurrence counts): its digits as stored, empty as 0, more than
// 16 bits hold as 32767.
std::int16_t numberFieldValue(std::string_view digits);

// A plain check box: -1 ticked, 0 cleared.
constexpr std::int16_t flagOf(bool ticked)
{
    return ticked ? -1 : 0;
}

// Protocol codes that some rules look at.
namespace protocol {
inline constexpr std::int16_t General = 0;
inline constexpr std::int16_t Heidenhain = 2;
inline constexpr std::int16_t Bridgeport = 3;
inline constexpr std::int16_t Ge2000 = 4;
} // namespace protocol

// Which of the editor's controls are enabled, from the shown record alone.
struct CommControlStates {
    bool purgeSeconds; // txtPurgeIfInactiveSeconds: with the purge option (the purge check box's rule)
    bool purgeOption; // ckPurgeIfInactive: General protocol only (the protocol's rule)
    bool doNotUseNote; // lblDoNotUse: stands greyed unless the purge option is ticked
    bool handshakeFrame; // not for GE 2000, whose Xon is fixed (the protocol's rule)
    bool ignoreIncomingData; // IgnoreIncomingData: with software flow control only (Handshaking not 1)
    bool outgoingHeader; // the label, the EOB box and the six values (the header's rule)

    bool operator==(const CommControlStates&) const = default;
};
CommControlStates commControlStates(const PortCommParms& p);

// The notice shown the first time in a run that the user steps to another port.
std::string portSpinNotice();

} // namespace corvane
