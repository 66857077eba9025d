#include "runtime/Places.h"

#include <filesystem>
#include <system_error>

#ifndef _WIN32
#include <unistd.h>
#endif

namespace corvane {
namespace {

std::string strippedOfSeparator(std::string folder)
{
    while (folder.size() > 1 && (folder.back() == '/' || folder.back() == '\\'))
        folder.pop_back();
    return folder;
}

std::string variable(const EnvironmentLookup& environment, const char* name)
{
    const std::optional<std::string> value = environment(name);
    return value ? *value : std::string();
}

std::string writableFolder(
    const std::string& folder, const EnvironmentLookup& environment, const std::string& machineLogFolder)
{
#ifdef _WIN32
    (void)environment;
    (void)machineLogFolder;
    return folder;
#else
    std::error_code installed;
    const bool isInstalled = std::filesystem::is_directory(folder + "/../share/corvane-remote", installed);
    if (!isInstalled && ::access(folder.c_str(), W_OK) == 0)
        return folder;
    std::error_code shared;
    if (isInstalled && std::filesystem::is_directory(machineLogFolder, shared)
        && ::access(machineLogFolder.c_str(), W_OK) == 0)
        return machineLogFolder;
    std::string own;
    if (const std::string state = variable(environment, "XDG_STATE_HOME"); !state.empty())
        own = state + "/corvane-remote";
    else if (const std::string home = variable(environment, "HOME"); !home.empty())
        own = home + "/.local/state/corvane-remote";
    std::error_code ec;
    if (!own.empty() && (std::filesystem::create_directories(own, ec) || std::filesystem::is_directory(own, ec)))
        return own;
    return folder;
#endif
}

} // namespace

std::string chooseStorePlace(const std::string& newPlace, const std::string& oldPlace)
{
    std::error_code ec;
    if (std::filesystem::exists(std::filesystem::symlink_status(newPlace, ec)))
        return newPlace;
    return std::filesystem::exists(std::filesystem::symlink_status(oldPlace, ec)) ? oldPlace : newPlace;
}

Places placesFor(
    const EnvironmentLookup& environment, const std::string& executableFolder, const std::string& machineLogFolder)
{
    Places places;
    if (const std::string dir = variable(environment, "CORVANE_PROGRAM_DIR"); !dir.empty())
        places.programFolder = strippedOfSeparator(dir);
    else
        places.programFolder = writableFolder(strippedOfSeparator(executableFolder), environment, machineLogFolder);

    if (const std::string root = variable(environment, "CORVANE_ROOT"); !root.empty()) {
        const std::string base = strippedOfSeparator(root);
#ifdef _WIN32
        places.storeFile = base + "\\BRELLWICK\\BWKXBIDS.DAT";
#else
        places.storeFile = (base == "/" ? "" : base) + "/BRELLWICK/BWKXBIDS.DAT";
#endif
    } else {
#ifdef _WIN32
        places.storeFile = places.programFolder.substr(0, 2) + "\\BRELLWICK\\BWKXBIDS.DAT";
#else
        places.storeFile = chooseStorePlace(DefaultStorePlace, OldStorePlace);
#endif
    }

    places.registryFolder = variable(environment, "CORVANE_REGISTRY_DIR");
    for (const char* name : {"LC_ALL", "LC_TIME", "LANG"})
        if (const std::string locale = variable(environment, name); !locale.empty()) {
            places.timeLocale = locale;
            break;
        }
    return places;
}

} // namespace corvane
