#pragma once

#include "runtime/DateTimeText.h"
#include "runtime/Logs.h"
#include "runtime/Places.h"
#include "runtime/RunTimeError.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <random>
#include <sstream>
#include <string>
#include <vector>

namespace corvane::test {

// Sets an environment variable of this process, or removes it when `value` is null.
inline void setVariable(const char* name, const char* value)
{
#ifdef _WIN32
    _putenv_s(name, value ? value : ""); // an empty value removes it there
#else
    if (value)
        setenv(name, value, 1);
    else
        unsetenv(name);
#endif
}

// A throw-away program folder and a clock stopped at a known moment, for the terminals and logs a
// test makes, so that the lines it provokes land in a folder of its own with predictable times.
// The programs a test starts find the same folder through the environment (CORVANE_PROGRAM_DIR,
// CORVANE_ROOT), as they would at a user's.
class ScratchProgramFolder {
public:
    static constexpr DateTime Moment{2026, 11, 15, 2, 16, 36};

    ScratchProgramFolder()
        : path_(std::filesystem::temp_directory_path() / ("corvane-test-" + std::to_string(std::random_device{}())))
        , places_{(path_ / "BRELLWICK" / "BWKXBIDS.DAT").string(), path_.string(), {}, "C"}
        , logs_(places_.programFolder, clock())
    {
        std::filesystem::create_directories(path_);
        setVariable("CORVANE_PROGRAM_DIR", path_.string().c_str());
    }
    ~ScratchProgramFolder()
    {
        setVariable("CORVANE_PROGRAM_DIR", nullptr);
        setVariable("CORVANE_ROOT", nullptr);
        std::error_code ec;
        std::filesystem::remove_all(path_, ec);
    }
    ScratchProgramFolder(const ScratchProgramFolder&) = delete;
    ScratchProgramFolder& operator=(const ScratchProgramFolder&) = delete;

    const std::filesystem::path& path() const { return path_; }

    // Makes this folder the root the user store lies under for the programs a test starts
    // (CORVANE_ROOT; a terminal the test makes looks there from the start) and returns the
    // store's path, its BRELLWICK folder created.
    std::filesystem::path useAsStoreRoot() const
    {
        setVariable("CORVANE_ROOT", path_.string().c_str());
        std::filesystem::create_directories(path_ / "BRELLWICK");
        return places_.storeFile;
    }
    // Where a terminal of the test keeps what it keeps: this folder, and the store as set.
    const Places& places() const { return places_; }
    // The test's own logs in this folder, by the stopped clock.
    Logs& logs() { return logs_; }
    static Clock clock()
    {
        return [] { return Moment; };
    }
    std::filesystem::path file(const std::string& name) const { return path_ / name; }
    bool exists(const std::string& name) const { return std::filesystem::exists(file(name)); }

    std::string read(const std::string& name) const
    {
        std::ifstream in(file(name), std::ios::binary);
        std::ostringstream text;
        text << in.rdbuf();
        return text.str();
    }

    void write(const std::string& name, const std::string& content) const
    {
        std::ofstream(file(name), std::ios::binary) << content;
    }

    // The file's lines, each of which must end in CR LF.
    std::vector<std::string> lines(const std::string& name) const
    {
        const std::string text = read(name);
        std::vector<std::string> out;
        std::size_t from = 0;
        for (std::size_t at = text.find("\r\n"); at != std::string::npos; at = text.find("\r\n", from)) {
            out.push_back(text.substr(from, at - from));
            from = at + 2;
        }
        EXPECT_EQ(from, text.size()) << name << " has text after its last CR LF";
        return out;
    }

    static std::string momentText() { return generalDateText(Moment, dateTimeFormatFor("C")); }

private:
    std::filesystem::path path_;
    Places places_;
    Logs logs_;
};

// Whether a test may make symbolic links here: Windows gives them only to a user with the
// privilege for them, and wine makes none.
inline bool symbolicLinksCanBeMade()
{
#ifdef _WIN32
    static const bool can = [] {
        const auto folder = std::filesystem::temp_directory_path() / ("corvane-link-" + std::to_string(std::random_device{}()));
        std::error_code ec;
        std::filesystem::create_directories(folder, ec);
        std::filesystem::create_symlink(folder / "nowhere", folder / "link", ec);
        const bool made = !ec;
        std::filesystem::remove_all(folder, ec);
        return made;
    }();
    return can;
#else
    return true;
#endif
}

// Runs `body` and returns the run-time error number it raised, or 0 when it raised none.
template <typename Body> int errorNumberRaisedBy(Body&& body)
{
    try {
        body();
    } catch (const RunTimeError& e) {
        return e.number();
    }
    return 0;
}

} // namespace corvane::test
