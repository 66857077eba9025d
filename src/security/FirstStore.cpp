#include "security/FirstStore.h"

#include "runtime/RunTimeError.h"
#include "security/UserStore.h"

#include <cstdio>
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

    UserStore store(path);
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

int createFirstUserStoreCommand(const char* program, const std::string& path, std::FILE* out, std::FILE* err)
{
    try {
        if (createFirstUserStore(path) == FirstStore::AlreadyThere) {
            std::fprintf(err,
                "%s: a user store already exists at %s; it was left untouched.\n"
                "Remove it first to start again with a new one.\n",
                program, path.c_str());
            return 1;
        }
    } catch (const RunTimeError& e) {
        std::fprintf(err, "%s: could not create the user store at %s: %s (error %d).\n", program, path.c_str(),
            errorDescription(e.number()).c_str(), e.number());
        return 2;
    }
    std::fprintf(out,
        "Created the user store at %s\n"
        "with the users SUPERVISOR and GUEST, both without password and without rights.\n"
        "Log in as SUPERVISOR and give it a password to activate security.\n",
        path.c_str());
    return 0;
}

} // namespace corvane
