#include "runtime/DateTimeText.h"


#include <cstdlib>
#include <ctime>
#include <functional>
#include <map>
#include <string>
#include <tuple>

namespace corvane {
namespace {

std::string twoDigits(int value)
{
    std::string s = std::to_string(value);
    return s.size() < 2 ? "0" + s : s;
}

std::string token(char letter, std::size_t count, const DateTime& t)
{
    const int hour12 = t.hour % 12 == 0 ? 12 : t.hour % 12;
    switch (letter) {
    case 'd':
        return count >= 2 ? twoDigits(t.day) : std::to_string(t.day);
    case 'M':
        return count >= 2 ? twoDigits(t.month) : std::to_string(t.month);
    case 'y':
        return count >= 3 ? std::to_string(t.year) : twoDigits(t.year % 100);
    case 'h':
        return count >= 2 ? twoDigits(hour12) : std::to_string(hour12);
    case 'H':
        return count >= 2 ? twoDigits(t.hour) : std::to_string(t.hour);
    case 'm':
        return count >= 2 ? twoDigits(t.minute) : std::to_string(t.minute);
    case 's':
        return count >= 2 ? twoDigits(t.second) : std::to_string(t.second);
    case 't':
        return count >= 2 ? (t.hour < 12 ? "AM" : "PM") : (t.hour < 12 ? "A" : "P");
    default:
        return std::string(count, letter);
    }
}

std::string formatted(const DateTime& t, std::string_view pattern)
{
    std::string out;
    for (std::size_t i = 0; i < pattern.size();) {
        const char c = pattern[i];
        std::size_t n = 1;
        while (i + n < pattern.size() && pattern[i + n] == c)
            ++n;
        out += token(c, n, t);
        i += n;
    }
    return out;
}

} // namespace

DateTimeFormat dateTimeFormatFor(std::string_view localeName)
{
    // Language and territory, as in "de_DE" of "de_DE.UTF-8@euro".
    const std::string_view name = localeName.substr(0, localeName.find_first_of(".@"));
    const std::string_view language = name.substr(0, name.find('_'));
    if (name == "en_GB" || name == "en_IE" || name == "en_AU" || name == "en_NZ" || language == "fr"
        || language == "it")
        return {"dd/MM/yyyy", "HH:mm:ss"};
    if (language == "es" || language == "pt")
        return {"dd/MM/yyyy", "H:mm:ss"};
    if (language == "de" || language == "pl" || language == "ru" || language == "cs" || language == "fi")
        return {"dd.MM.yyyy", "HH:mm:ss"};
    if (language == "nl")
        return {"d-M-yyyy", "HH:mm:ss"};
    if (language == "sv" || name == "en_CA")
        return {"yyyy-MM-dd", "HH:mm:ss"};
    if (language == "ja" || language == "zh")
        return {"yyyy/MM/dd", "H:mm:ss"};
    return {"M/d/yyyy", "h:mm:ss tt"};
}

std::string generalDateText(const DateTime& moment, const DateTimeFormat& format)
{
    std::string text = formatted(moment, format.datePattern);
    if (moment.hour != 0 || moment.minute != 0 || moment.second != 0)
        text += ' ' + formatted(moment, format.timePattern);
    return text;
}

DateTime systemClock()
{
    const std::time_t seconds = std::time(nullptr);
    std::tm local{};
#ifdef _WIN32
    localtime_s(&local, &seconds);
#else
    localtime_r(&seconds, &local);
#endif
    return {local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec};
}

} // namespace corvane
