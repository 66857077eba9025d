#include "runtime/ProgramFolder.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>

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

} // namespace

std::string programFolder()
{
    if (const char* dir = std::getenv("CORVANE_PROGRAM_DIR"); dir && *dir)
        return strippedOfSeparator(dir);
    return strippedOfSeparator(executableFolder());
}

void setExecutableFolder(std::string folder)
{
    registeredFolder() = std::move(folder);
}

} // namespace corvane
