#include "runtime/Places.h"
#include "support/ScratchProgramFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <memory>

namespace corvane {
namespace {

// The places a start-up finds, for the environments a program meets: the variables that name a
// place win; an installed program or a folder it cannot write keeps its logs in the user's state
// folder; the time locale is the first of the locale variables set.
TEST(Places, FromTheEnvironmentAndTheExecutablesFolder)
{
#ifdef _WIN32
    GTEST_SKIP() << "on Windows the logs stay beside the program and the store's path is the Windows one";
#endif
    test::ScratchProgramFolder scratch;
    const std::string base = scratch.path().string();
    std::filesystem::create_directories(scratch.file("plain"));
    std::filesystem::create_directories(scratch.file("usr/bin"));
    std::filesystem::create_directories(scratch.file("usr/share/corvane-remote"));
    struct Case {
        const char* name;
        std::map<std::string, std::string> environment;
        std::string executableFolder;
        std::string programFolder, storeFile, registryFolder, timeLocale;
        std::string machineLogFolder = "/nonexistent/corvane";
    } const cases[] = {
        {"named folders",
            {{"CORVANE_PROGRAM_DIR", base + "/logs/"}, {"CORVANE_ROOT", base + "/root/"},
                {"CORVANE_REGISTRY_DIR", base + "/reg"}, {"LANG", "de_DE.UTF-8"}},
            base + "/plain", base + "/logs", base + "/root/BRELLWICK/BWKXBIDS.DAT", base + "/reg", "de_DE.UTF-8"},
        {"the root as the store's root", {{"CORVANE_ROOT", "/"}, {"LC_ALL", "fr_FR"}, {"LANG", "de_DE"}},
            base + "/plain", base + "/plain", "/BRELLWICK/BWKXBIDS.DAT", "", "fr_FR"},
        {"installed, with a state folder", {{"XDG_STATE_HOME", base + "/state"}, {"HOME", base + "/home"}},
            base + "/usr/bin", base + "/state/corvane-remote", "", "", "C"},
        {"installed, with a home only", {{"HOME", base + "/home"}, {"LC_TIME", "en_GB"}}, base + "/usr/bin",
            base + "/home/.local/state/corvane-remote", "", "", "en_GB"},
        {"installed, with neither", {}, base + "/usr/bin", base + "/usr/bin", "", "", "C"},
        {"installed, with the machine's log folder", {{"HOME", base + "/home"}}, base + "/usr/bin", base + "/var-log",
            "", "", "C", base + "/var-log"},
        {"not installed: beside the program, whatever the machine has", {}, base + "/plain", base + "/plain", "", "",
            "C", base + "/var-log"},
    };
    std::filesystem::create_directories(scratch.file("var-log"));
    for (const Case& c : cases) {
        const Places places = placesFor(
            [&](const char* name) -> std::optional<std::string> {
                const auto found = c.environment.find(name);
                return found == c.environment.end() ? std::nullopt : std::optional(found->second);
            },
            c.executableFolder, c.machineLogFolder);
        EXPECT_EQ(places.programFolder, c.programFolder) << c.name;
        EXPECT_TRUE(c.storeFile.empty() || places.storeFile == c.storeFile) << c.name << ": " << places.storeFile;
        EXPECT_EQ(places.registryFolder, c.registryFolder) << c.name;
        EXPECT_EQ(places.timeLocale, c.timeLocale) << c.name;
        EXPECT_TRUE(
            c.programFolder.find("/state") == std::string::npos || std::filesystem::is_directory(places.programFolder))
            << c.name << ": the state folder is made when missing";
    }
}

} // namespace
} // namespace corvane
