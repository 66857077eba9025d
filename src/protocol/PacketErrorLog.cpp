#include "protocol/PacketErrorLog.h"

#include "runtime/DateTimeText.h"
#include "runtime/ErrorLog.h"
#include "runtime/RunTimeError.h"
#include "runtime/Text.h"

#include <filesystem>
#include <system_error>

namespace corvane {
namespace {

void check(const std::error_code& ec)
{
    if (ec)
        raise(fileErrorFromErrno(ec.value()));
}

void rotateIfFull(const std::string& current, const std::string& previous)
{
    if (!File_Exists(current))
        return;
    std::error_code ec;
    const auto size = std::filesystem::file_size(current, ec);
    check(ec);
    if (size <= static_cast<std::uintmax_t>(PacketLogRotateAbove))
        return;
    if (File_Exists(previous)) {
        std::filesystem::remove(previous, ec);
        check(ec);
    }
    std::filesystem::rename(current, previous, ec);
    check(ec);
}

} // namespace

void Log_Packet_Error(Logs& logs, std::string_view message)
{
    try {
        const std::string current = logs.file(CurrentPacketLogName);
        if (logs.toFiles())
            rotateIfFull(current, logs.file(PreviousPacketLogName));
        std::string line = "Packet Error Location " + std::to_string(PacketLogLocation) + " ";
        line.append(escapedControls(message)); // the host's text, which may hold anything
        line += ' ';
        line += logs.nowText();
        if (const int error = logs.append(current, line))
            raise(error);
    } catch (const std::exception& e) {
        Log_Run_Time_Error(logs, location::RequestSender, errorNumberOf(e));
    }
}

PacketFaults packetLogOf(Logs& logs)
{
    return [&logs](std::string_view message) { Log_Packet_Error(logs, message); };
}

Bool16 File_Exists(const std::string& path)
{
    std::error_code ec;
    return toBool16(std::filesystem::is_regular_file(path, ec));
}

} // namespace corvane
