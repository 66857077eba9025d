#pragma once

#include "runtime/Logs.h"
#include "runtime/RunTimeError.h"

#include <exception>
#include <functional>
#include <string>
#include <string_view>

namespace corvane {

// Trapped run-time errors go to "error.log" in the program folder, one line each:
// "Error Location " + three-digit location + " " + "Err = " + number + " " + date and time.
// A log that cannot be written is passed over silently. So that an error a host provokes with
// every packet cannot fill the disk, the same location and error again and again in a row are
// written once, then counted: the count goes in with the next other line, or every
// ErrorLogRepeatsCounted repeats ("Error Location 155 Err = 9 repeated 1000 more times ...");
// and above ErrorLogRotateAbove bytes the log becomes "error-Previous.log" (one older
// generation, as the packet log keeps) before the next line is written.

// Location numbers of the routines that trap.
namespace location {
inline constexpr int SharedModule = 143;
inline constexpr int PacketDispatch = 155;
inline constexpr int RequestSender = 201;
inline constexpr int CommParmsUpdate = 311; // the parameter editor's update
inline constexpr int ChangeRecord = 312; // the record of parameter changes
} // namespace location

inline constexpr long long ErrorLogRotateAbove = 1 << 20; // bytes
inline constexpr int ErrorLogRepeatsCounted = 1000;
inline constexpr std::string_view ErrorLogName = "error.log";
inline constexpr std::string_view PreviousErrorLogName = "error-Previous.log";
std::string errorLogLine(Logs& logs, int location, int errorNumber);
void Log_Run_Time_Error(Logs& logs, int location, int errorNumber);

// Runs `body` under an error trap: a run-time error (or any other exception) leaves one line in
// the error log with this location and the routine is left. Returns whether `body` finished.
template <typename Body> bool runTrapped(Logs& logs, int location, Body&& body) noexcept
{
    try {
        body();
        return true;
    } catch (const std::exception& e) {
        Log_Run_Time_Error(logs, location, errorNumberOf(e));
        return false;
    }
}

} // namespace corvane
