#pragma once

#include "runtime/DateTimeText.h"

#include <functional>
#include <string>
#include <string_view>

namespace corvane {

// Takes a log line in the place of its file (the fuzz targets count lines rather than write
// millions of them); returns what the file's append would.
using LogWriter = std::function<int(const std::string& path, std::string_view line)>;
// Takes a line of the record of changes for the system's own log as well.
using SystemLog = std::function<void(std::string_view line)>;

// The program's logs and its record of changes: the folder they lie in, the clock and the
// locale their times are written by. A program's main makes one from its places and hands it to
// what writes a line; a test makes its own, with a clock that may stand still.
class Logs {
public:
    explicit Logs(std::string folder, Clock clock = systemClock, std::string_view timeLocale = "C",
        LogWriter writer = {});

    const std::string& folder() const { return folder_; }
    // A file of the folder.
    std::string file(std::string_view name) const;
    DateTime now() const { return clock_(); }
    // The present moment as the log lines write it; a burst of lines shares its second's text.
    const std::string& nowText();

    // Appends `line` and CR LF to the file at `path` (the writer's instead, when there is one).
    // Returns 0, or the runtime's file error number when it could not be written.
    int append(const std::string& path, std::string_view line) const;
    // False while the lines go to a writer rather than files: there are then no files to rotate.
    bool toFiles() const { return !writer_; }

    // The system's log, which stamps the account that sent each line, so that a line forged into
    // the record's file can be told apart; none (a test's logs): the file alone.
    void setSystemLog(SystemLog log) { systemLog_ = std::move(log); }
    void toSystemLog(std::string_view line) const
    {
        if (systemLog_)
            systemLog_(line);
    }

    // The last error line this program wrote, and how many times it has come again since (see
    // Log_Run_Time_Error).
    struct Repeats {
        std::string key;
        long long sizeAfter = -2;
        int count = 0;
    };
    Repeats& repeats() { return repeats_; }

private:
    std::string folder_;
    Clock clock_;
    DateTimeFormat format_;
    LogWriter writer_;
    SystemLog systemLog_;
    Repeats repeats_;
    DateTime shownMoment_{-1};
    std::string shownText_;
};

// Appends `line` and CR LF to the file in one write, opening it for this one line (never through
// a link: a link where the file should be is refused). Returns 0, or the runtime's file error
// number when the file could not be written.
int appendLogLine(const std::string& path, std::string_view line);

} // namespace corvane
