#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace corvane {

// The program's message box takes a style built like the system box's: bits 0-3 the buttons,
// bits 4-6 the icon, bits 8-9 the default button. Results are the system's usual numbers.
namespace msg {
inline constexpr std::int16_t OkOnly = 0;
inline constexpr std::int16_t OkCancel = 1;
inline constexpr std::int16_t AbortRetryIgnore = 2;
inline constexpr std::int16_t YesNoCancel = 3;
inline constexpr std::int16_t YesNo = 4;
inline constexpr std::int16_t RetryCancel = 5;
inline constexpr std::int16_t Reset = 6;
inline constexpr std::int16_t ConvertCancel = 7;
inline constexpr std::int16_t Custom = 15;

inline constexpr std::int16_t Critical = 16;
inline constexpr std::int16_t Question = 32;
inline constexpr std::int16_t Exclamation = 48;
inline constexpr std::int16_t Information = 64;

inline constexpr std::int16_t DefaultButton2 = 256;
inline constexpr std::int16_t DefaultButton3 = 512;

inline constexpr std::int16_t ResultOk = 1;
inline constexpr std::int16_t ResultCancel = 2;
inline constexpr std::int16_t ResultAbort = 3;
inline constexpr std::int16_t ResultRetry = 4;
inline constexpr std::int16_t ResultIgnore = 5;
inline constexpr std::int16_t ResultYes = 6;
inline constexpr std::int16_t ResultNo = 7;
inline constexpr std::int16_t ResultReset = 8;
inline constexpr std::int16_t ResultConvert = 9;
} // namespace msg

struct MessageButton {
    std::string caption;
    std::int16_t result = 0;
    bool flag = false; // custom buttons only; carried, not acted on

    bool operator==(const MessageButton&) const = default;
};

// The buttons of a style, left to right; style 15 takes the caller's list; 8-14 have none.
std::vector<MessageButton> messageButtons(std::int16_t style, const std::vector<MessageButton>& customButtons = {});

// What Escape and the close box answer: Cancel, else No, else the only button; nothing for a
// box that must be answered with a button (Abort/Retry/Ignore, several custom buttons). Never
// an earlier box's answer.
std::optional<std::int16_t> cancelAnswer(const std::vector<MessageButton>& buttons);

// 16, 32, 48 or 64 (critical, question, exclamation, information), or 0 for no icon.
std::int16_t messageIcon(std::int16_t style);

// 0 for the first button, 1 for the second, 2 for the third (bits 8 and 9).
int defaultButtonIndex(std::int16_t style);

// The system's version, major.minor, at or above 3.95 is the newer display generation (8-point
// text and its icon set); below, the older one (10-point text).
inline constexpr double NewerDisplayGeneration = 3.95;
bool isNewerDisplayGeneration(double systemVersion);

} // namespace corvane
