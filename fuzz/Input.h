#pragma once
// What every fuzz target shares: the input as text, split into the chunks the socket would have
// delivered (a 0xFF byte marks where one chunk ends), and a scratch folder for the files the
// code under test writes, emptied now and then so that a long run does not fill the disk.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include <unistd.h>

#include "runtime/DateTimeText.h"
#include "protocol/PacketErrorLog.h"
#include "runtime/Logs.h"
#include "runtime/ErrorLog.h"

namespace corvane::fuzz {

inline constexpr char ChunkEnd = '\xff';

inline std::string_view text(const std::uint8_t* data, std::size_t size)
{
    return {reinterpret_cast<const char*>(data), size};
}

inline std::vector<std::string_view> chunks(std::string_view input)
{
    std::vector<std::string_view> out;
    std::size_t from = 0;
    for (std::size_t at = input.find(ChunkEnd); at != std::string_view::npos; at = input.find(ChunkEnd, from)) {
        out.push_back(input.substr(from, at - from));
        from = at + 1;
    }
    out.push_back(input.substr(from));
    return out;
}

// A folder for the files a target reads and writes (the user store, the settings, the save
// folder's probe): on a RAM disk where there is one, made once for the run.
inline const std::filesystem::path& scratchFolder()
{
    static const std::filesystem::path folder = [] {
        const std::filesystem::path shm = "/dev/shm";
        const auto base = std::filesystem::is_directory(shm) ? shm : std::filesystem::temp_directory_path();
        auto path = base / ("corvane-fuzz-" + std::to_string(static_cast<unsigned long>(::getpid())));
        std::filesystem::create_directories(path / "BRELLWICK");
        return path;
    }();
    // Registered once the path is whole, so at exit it runs before the path is destroyed.
    [[maybe_unused]] static const bool removedAtExit = [] {
        std::atexit([] {
            std::error_code ec;
            std::filesystem::remove_all(folder, ec);
        });
        return true;
    }();
    return folder;
}

// The user store's place in the folder.
inline std::string storePath()
{
    return (scratchFolder() / "BRELLWICK" / "BWKXBIDS.DAT").string();
}

// The logs of the run, in the folder. Their lines are built as ever, at a fixed moment, but not
// written: a fuzzed packet can cost hundreds of them, and writing and rotating the logs is the
// tests' business. So a run reaches its millions of inputs.
inline Logs& logs()
{
    static Logs logs(
        scratchFolder().string(), [] { return DateTime{2026, 11, 15, 2, 16, 36}; }, "C",
        [](const std::string&, std::string_view) { return 0; });
    return logs;
}

// The codec's faults, to the packet log of the run.
inline const PacketFaults& packetFaults()
{
    static const PacketFaults faults = packetLogOf(logs());
    return faults;
}

} // namespace corvane::fuzz
