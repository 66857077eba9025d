#include "runtime/ProgramFolder.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>

#ifndef _WIN32
#include <unistd.h>
#endif

namespace corvane {
namespace {

std::string& registeredFolder()
{
    static std::string folder;
    return folder;
}

std::string strippedOfSeparator(std::string folder)
{
    while (folder.size() > 1 && (folder.back() == '/' || folder.back() == '\\'))
        folder.pop_back();
    return folder;
}

std::string executableFolder()
{
    if (!registeredFolder().empty())
        return registeredFolder();
    static const std::string found = [] {
        std::error_code ec;
        const auto exe = std::filesystem::read_symlink("/proc/self/exe", ec);
        if (!ec && exe.has_parent_path())
            return exe.parent_path().string();
        const auto here = std::filesystem::current_path(ec);
        return ec ? std::string(".") : here.string();
    }();
    return found;
}

// Installed (bin/ beside share/corvane-remote/, as in /usr) or in a folder the user cannot
// write, the program keeps its logs in the user's state folder instead:
// $XDG_STATE_HOME/corvane-remote, else ~/.local/state/corvane-remote. Where that cannot be made
// either, the executable's folder stands, and the logs' writing fails there as it would.
std::string writableFolder(const std::string& folder)
{
#ifdef _WIN32
    return folder;
#else
    static std::string lastFolder, lastChosen;
    if (folder == lastFolder)
        return lastChosen;
    std::string chosen = folder;
    std::error_code installed;
    if (std::filesystem::is_directory(folder + "/../share/corvane-remote", installed)
        || ::access(folder.c_str(), W_OK) != 0) {
        const char* state = std::getenv("XDG_STATE_HOME");
        const char* home = std::getenv("HOME");
        std::string own;
        if (state && *state)
            own = std::string(state) + "/corvane-remote";
        else if (home && *home)
            own = std::string(home) + "/.local/state/corvane-remote";
        std::error_code ec;
        if (!own.empty() && (std::filesystem::create_directories(own, ec) || std::filesystem::is_directory(own, ec)))
            chosen = own;
    }
    lastFolder = folder;
    lastChosen = chosen;
    return chosen;
#endif
}

} // namespace

std::string programFolder()
{
    if (const char* dir = std::getenv("CORVANE_PROGRAM_DIR"); dir && *dir)
        return strippedOfSeparator(dir);
    return writableFolder(strippedOfSeparator(executableFolder()));
}

void setExecutableFolder(std::string folder)
{
    registeredFolder() = std::move(folder);
}

} // namespace corvane
