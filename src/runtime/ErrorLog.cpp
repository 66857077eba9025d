#include "runtime/ErrorLog.h"

#include "runtime/DateTimeText.h"
#include "runtime/ProgramFolder.h"
#include "runtime/RunTimeError.h"

#include <cerrno>
#include <cstdio>

namespace corvane {

std::string errorLogPath()
{
    return programFolder() + "/error.log";
}

std::string errorLogLine(int location, int errorNumber)
{
    std::string number = std::to_string(location);
    if (number.size() < 3)
        number.insert(0, 3 - number.size(), '0');
    return "Error Location " + number + " Err = " + std::to_string(errorNumber) + " " + generalDateText(now());
}

namespace {

LogWriter& logWriter()
{
    static LogWriter writer;
    return writer;
}

} // namespace

void setLogWriter(LogWriter writer)
{
    logWriter() = std::move(writer);
}

bool logWriterSet()
{
    return static_cast<bool>(logWriter());
}

int appendLogLine(const std::string& path, std::string_view line)
{
    if (const LogWriter& writer = logWriter())
        return writer(path, line);
    errno = 0;
    std::FILE* file = std::fopen(path.c_str(), "ab");
    if (!file)
        return fileErrorFromErrno(errno);
    const bool written
        = std::fwrite(line.data(), 1, line.size(), file) == line.size() && std::fwrite("\r\n", 1, 2, file) == 2;
    const int writeErrno = errno;
    const bool closed = std::fclose(file) == 0;
    if (!written || !closed)
        return fileErrorFromErrno(writeErrno ? writeErrno : errno);
    return 0;
}

void Log_Run_Time_Error(int location, int errorNumber)
{
    try {
        appendLogLine(errorLogPath(), errorLogLine(location, errorNumber));
    } catch (...) {
        // The log is the last resort: a failure to write it is not reported anywhere.
    }
}

} // namespace corvane
