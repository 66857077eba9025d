#pragma once

#include "runtime/DateTimeText.h"
#include "runtime/Places.h"

#include <functional>
#include <string>
#include <string_view>

namespace corvane {

// Takes a log line in the place of its file (the fuzz targets count lines rather than write
// millions of them); returns what the file's append would.
using LogWriter = std::function<int(const std::string& path, std::string_view line)>;

// The running program's places and clock, as its main or a test made them: what the logs, the
// user store and the record of changes go by. It is in force while it lives; one made while
// another is (the demo's throw-away folders, a test's) is in force until it goes, and then the
// one before it again. With none, the executable's folder, the system's store place, the
// system's clock.
class ProgramSetting {
public:
    explicit ProgramSetting(Places places, std::function<DateTime()> clock = {}, LogWriter writer = {});
    ~ProgramSetting();
    ProgramSetting(const ProgramSetting&) = delete;
    ProgramSetting& operator=(const ProgramSetting&) = delete;

    const Places& places() const { return places_; }
    const std::function<DateTime()>& clock() const { return clock_; }
    const LogWriter& writer() const { return writer_; }

private:
    Places places_;
    std::function<DateTime()> clock_;
    LogWriter writer_;
    ProgramSetting* before_;
};

// The places in force.
const Places& programPlaces();
// Where the logs and the record of changes go, without a trailing separator.
std::string programFolder();
// The writer in force in the place of the log files; none: the files.
const LogWriter& programLogWriter();
// The clock in force; none: the system's.
const std::function<DateTime()>& programClock();

} // namespace corvane
