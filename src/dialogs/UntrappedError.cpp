#include "dialogs/UntrappedError.h"

#include "runtime/ErrorLog.h"
#include "runtime/RunTimeError.h"

namespace corvane {
namespace {

// Not a routine of its own: the line says where it was caught, at no location.
constexpr int UntrappedLocation = 0;

} // namespace

void reportUntrappedError(Logs& logs, MessageBoxes& boxes, const std::exception& error) noexcept
{
    const int number = errorNumberOf(error);
    Log_Run_Time_Error(logs, UntrappedLocation, number);
    try {
        boxes.untrappedError(number);
    } catch (...) {
        // Nothing is left to tell it with; the log line stands.
    }
}

} // namespace corvane
