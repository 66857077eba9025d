#include "session/LastUser.h"

#include "platform/Latin1.h"
#include "platform/Registry.h"

namespace corvane {
namespace {

const QString UserKey = QStringLiteral("Software\\Brellwick\\CorvaneRemote\\User");
const QString LastUserValue = QStringLiteral("Last User");

} // namespace

std::string Get_Last_User(Registry& registry)
{
    if (!registry.keyExists(Hive::User, UserKey))
        return {};
    return toLatin1Bytes(registry.readText(Hive::User, UserKey, LastUserValue));
}

void Save_Last_User(Registry& registry, const std::string& userName)
{
    registry.createKey(Hive::User, UserKey);
    registry.writeText(Hive::User, UserKey, LastUserValue, fromLatin1Bytes(userName));
}

} // namespace corvane
