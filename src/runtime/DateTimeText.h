#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace corvane {

struct DateTime {
    int year = 1970;
    int month = 1; // 1-12
    int day = 1; // 1-31
    int hour = 0; // 0-23
    int minute = 0;
    int second = 0;
};

// The system's default short-date and long-time patterns, in the tokens d dd M MM yy yyyy
// h hh H HH m mm s ss tt (tt is AM/PM); other characters stand as they are.
struct DateTimeFormat {
    std::string datePattern;
    std::string timePattern;
};

// The default format of a locale name such as "en_US.UTF-8" or "de_DE"; the C/POSIX locale and
// locales we do not know fall back to the United States format ("M/d/yyyy", "h:mm:ss tt").
DateTimeFormat dateTimeFormatFor(std::string_view localeName);

// The general date-and-time text of a moment: date, one blank, time; a moment at exactly
// midnight shows the date alone, as the runtime's general date text does.
std::string generalDateText(const DateTime& moment, const DateTimeFormat& format);

// What the logs take their time from: the system's, or a test's that may stand still.
using Clock = std::function<DateTime()>;
// The present local time, by the system.
DateTime systemClock();

} // namespace corvane
