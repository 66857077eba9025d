#include "platform/SystemLog.h"

#include <string>

#ifndef _WIN32
#include <syslog.h>
#endif

namespace corvane {

SystemLog systemLog()
{
#ifdef _WIN32
    return {};
#else
    return [](std::string_view line) {
        static const bool opened = [] {
            ::openlog("corvane", LOG_PID, LOG_USER);
            return true;
        }();
        (void)opened;
        const std::string text(line);
        ::syslog(LOG_NOTICE, "%s", text.c_str());
    };
#endif
}

} // namespace corvane
