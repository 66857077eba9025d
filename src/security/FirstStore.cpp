#include "security/FirstStore.h"

#include "runtime/RunTimeError.h"
#include "security/UserStore.h"

#include <filesystem>
#include <system_error>

namespace corvane {

FirstStore createFirstUserStore(const std::string& path)
{
    std::error_code ec;
    if (std::filesystem::exists(path, ec))
        return FirstStore::AlreadyThere;
    const auto folder = std::filesystem::path(path).parent_path();
    if (!folder.empty()) {
        std::filesystem::create_directories(folder, ec);
        if (ec)
            raise(fileErrorFromErrno(ec.value()));
    }

    UserStore store;
    store.path = path;
    UserEntry supervisor;
    supervisor.UserName = std::string(SupervisorName);
    supervisor.IsSupervisor = 1;
    UserEntry guest;
    guest.UserName = std::string(GuestName);
    store.users = {supervisor, guest};
    store.Save_User_Record(0);
    store.Save_User_Record(1);
    return FirstStore::Created;
}

} // namespace corvane
