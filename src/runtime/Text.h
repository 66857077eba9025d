#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

namespace corvane {

// The runtime's string functions, with positions counted from 1.

// Position of the first `find` at or after `start`: 0 when there is none or when `start` lies
// past the end, `start` itself for an empty `find`. A start below 1 is "Invalid procedure call".
std::int64_t inStr(std::int64_t start, std::string_view text, std::string_view find);

// `length` characters from `start`; fewer when the text ends first, none when `start` lies
// past the end. A start below 1 or a negative length is "Invalid procedure call".
std::string_view mid(std::string_view text, std::int64_t start, std::int64_t length);

std::string_view left(std::string_view text, std::int64_t length);
std::string_view right(std::string_view text, std::int64_t length);

// Upper case as the runtime makes it for single-byte text: a-z and the Latin-1 letters.
std::string upperCase(std::string_view text);

// The text without leading and trailing blanks (blanks only, not tabs).
std::string_view trimBlanks(std::string_view text);

// The text padded with blanks or cut to exactly `width` characters (a fixed-length string).
std::string fixedWidth(std::string_view text, std::size_t width);

// A message's lines joined by CR LF; an empty piece is an empty line.
// The text with every control character (C0, DEL, C1) written as \xNN, so that text from the
// host can neither split a line of a log nor command a terminal that shows it.
std::string escapedControls(std::string_view text);

std::string joinLines(std::initializer_list<std::string_view> lines);

} // namespace corvane
