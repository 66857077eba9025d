#include "runtime/KeyFilter.h"

namespace corvane {

bool typedCharacterDiscarded(char32_t typed, TypedKeys keys)
{
    if (typed >= U'0' && typed <= U'9')
        return false;
    if (typed == U'\b')
        return keys == TypedKeys::DigitsOnly;
    const bool control = typed < 0x20 || typed == 0x7F || (typed >= 0x80 && typed < 0xA0);
    return !control;
}

} // namespace corvane
