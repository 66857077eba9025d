#include "startup/StartupPlaces.h"

#include <cstdlib>
#include <optional>

namespace corvane {

Places placesFromEnvironment(const std::string& executableFolder)
{
    return placesFor(
        [](const char* name) -> std::optional<std::string> {
            const char* value = std::getenv(name);
            return value && *value ? std::optional<std::string>(value) : std::nullopt;
        },
        executableFolder);
}

} // namespace corvane
