#include "runtime/Logs.h"

#include <tuple>

namespace corvane {

Logs::Logs(std::string folder, Clock clock, std::string_view timeLocale, LogWriter writer)
    : folder_(std::move(folder))
    , clock_(clock ? std::move(clock) : Clock(systemClock))
    , format_(dateTimeFormatFor(timeLocale))
    , writer_(std::move(writer))
{
}

std::string Logs::file(std::string_view name) const
{
    std::string path = folder_;
    path += '/';
    path += name;
    return path;
}

const std::string& Logs::nowText()
{
    const DateTime moment = now();
    const auto key = [](const DateTime& m) { return std::tie(m.year, m.month, m.day, m.hour, m.minute, m.second); };
    if (key(moment) != key(shownMoment_)) {
        shownText_ = generalDateText(moment, format_);
        shownMoment_ = moment;
    }
    return shownText_;
}

int Logs::append(const std::string& path, std::string_view line) const
{
    return writer_ ? writer_(path, line) : appendLogLine(path, line);
}

} // namespace corvane
