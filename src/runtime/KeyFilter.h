#pragma once

namespace corvane {

// What a field's key filter lets through of the characters typed into it. Keys that type no
// character (Tab, arrows, Enter, Escape, Delete) are not typing and always keep their work.
enum class TypedKeys {
    DigitsAndBackspace,
    DigitsOnly, // Backspace too is dropped
};

bool typedCharacterDiscarded(char32_t typed, TypedKeys keys = TypedKeys::DigitsAndBackspace);

} // namespace corvane
