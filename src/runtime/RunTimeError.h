#pragma once

#include <stdexcept>
#include <string>

namespace corvane {

// Run-time error numbers of the 16-bit runtime the terminal's behaviour is defined against.
// A routine with an error trap catches RunTimeError and logs its number (see ErrorLog.h).
namespace err {
inline constexpr int InvalidProcedureCall = 5;
inline constexpr int Overflow = 6;
inline constexpr int OutOfMemory = 7;
inline constexpr int SubscriptOutOfRange = 9;
inline constexpr int DivisionByZero = 11;
inline constexpr int TypeMismatch = 13;
inline constexpr int InternalError = 51;
inline constexpr int BadFileNameOrNumber = 52;
inline constexpr int FileNotFound = 53;
inline constexpr int BadFileMode = 54;
inline constexpr int FileAlreadyOpen = 55;
inline constexpr int DeviceIoError = 57;
inline constexpr int FileAlreadyExists = 58;
inline constexpr int DiskFull = 61;
inline constexpr int InputPastEndOfFile = 62;
inline constexpr int TooManyFiles = 67;
inline constexpr int DeviceUnavailable = 68;
inline constexpr int PermissionDenied = 70;
inline constexpr int DiskNotReady = 71;
inline constexpr int PathFileAccessError = 75;
inline constexpr int PathNotFound = 76;
// The socket control's own: a send on a socket that is not connected.
inline constexpr int SocketBadState = 40006;
} // namespace err

// The runtime's own description of an error number ("Overflow", "Type mismatch", ...).
std::string errorDescription(int number);

// Maps an operating-system errno from a failed file operation to the runtime's file error.
int fileErrorFromErrno(int osError);

// One exception type for every run-time error; it carries the runtime's error number.
class RunTimeError : public std::runtime_error {
public:
    explicit RunTimeError(int number);
    int number() const noexcept { return number_; }

private:
    int number_;
};

[[noreturn]] void raise(int number);

// The error number a trap records for any exception: our own RunTimeError keeps its number;
// exhausted memory is "Out of memory"; a standard range error is "Subscript out of range";
// anything else is an "Internal error".
int errorNumberOf(const std::exception& e) noexcept;

} // namespace corvane
