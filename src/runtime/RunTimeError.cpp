#include "runtime/RunTimeError.h"

#include <cerrno>
#include <new>

namespace corvane {

std::string errorDescription(int number)
{
    switch (number) {
    case err::InvalidProcedureCall:
        return "Invalid procedure call or argument";
    case err::Overflow:
        return "Overflow";
    case err::SocketBadState:
        return "Wrong protocol or connection state for the requested transaction or request";
    case err::OutOfMemory:
        return "Out of memory";
    case err::SubscriptOutOfRange:
        return "Subscript out of range";
    case err::DivisionByZero:
        return "Division by zero";
    case err::TypeMismatch:
        return "Type mismatch";
    case err::InternalError:
        return "Internal error";
    case err::BadFileNameOrNumber:
        return "Bad file name or number";
    case err::FileNotFound:
        return "File not found";
    case err::BadFileMode:
        return "Bad file mode";
    case err::FileAlreadyOpen:
        return "File already open";
    case err::DeviceIoError:
        return "Device I/O error";
    case err::FileAlreadyExists:
        return "File already exists";
    case err::DiskFull:
        return "Disk full";
    case err::InputPastEndOfFile:
        return "Input past end of file";
    case err::TooManyFiles:
        return "Too many files";
    case err::DeviceUnavailable:
        return "Device unavailable";
    case err::PermissionDenied:
        return "Permission denied";
    case err::DiskNotReady:
        return "Disk not ready";
    case err::PathFileAccessError:
        return "Path/File access error";
    case err::PathNotFound:
        return "Path not found";
    default:
        return "Application-defined or object-defined error";
    }
}

int fileErrorFromErrno(int osError)
{
    switch (osError) {
    case EACCES:
    case EPERM:
    case EROFS:
        return err::PermissionDenied;
    case ENOENT:
    case ENOTDIR:
        return err::PathNotFound;
    case EEXIST:
        return err::FileAlreadyExists;
    case ENOSPC:
        return err::DiskFull;
    case EMFILE:
    case ENFILE:
        return err::TooManyFiles;
    case EISDIR:
    case ELOOP: // a link where no link may be
    case EBUSY:
    case ETXTBSY:
        return err::PathFileAccessError;
    case ENAMETOOLONG:
    case EINVAL:
        return err::BadFileNameOrNumber;
    default:
        return err::DeviceIoError;
    }
}

RunTimeError::RunTimeError(int number)
    : std::runtime_error("Run-time error '" + std::to_string(number) + "': " + errorDescription(number))
    , number_(number)
{
}

void raise(int number)
{
    throw RunTimeError(number);
}

int errorNumberOf(const std::exception& e) noexcept
{
    if (const auto* own = dynamic_cast<const RunTimeError*>(&e))
        return own->number();
    if (dynamic_cast<const std::bad_alloc*>(&e) || dynamic_cast<const std::length_error*>(&e))
        return err::OutOfMemory;
    if (dynamic_cast<const std::out_of_range*>(&e))
        return err::SubscriptOutOfRange;
    return err::InternalError;
}

} // namespace corvane
