#pragma once

#include <string>
#include <string_view>

namespace corvane {

// Writes `bytes` as the whole new content of the file at `path`, so that a reader finds either
// the old file or the new one, never a part: a new file is created exclusively beside the target
// (in the same folder, never through a link), written, flushed to the disk, given the old file's
// mode and group, and renamed over the target. A target that is there but is no regular file (a
// link, a folder, a device) is refused and left as it is. On any failure the new file is
// removed, the old one is untouched, and the reason comes back; empty when it was written.
std::string writeWholeFile(const std::string& path, std::string_view bytes);

// How a whole-file write treats the file it replaces.
struct WholeFileWay {
    // The old file's owner is kept as well. Where it cannot be (another account's file, and this
    // process not root), or where the folder takes no new file, the file is rewritten in place
    // instead, through a descriptor that follows no link.
    bool keepOwner = false;
    // The mode of a file that was not there: `newMode` less the umask, or exactly `newMode`.
    unsigned newMode = 0666;
    bool exactNewMode = false;
};
// What putWholeFile gives back when what lies at the path is no regular file (left as it is).
inline constexpr int NoRegularFile = -1;
// writeWholeFile's way, the way given, and 0 or the errno of the failure (or NoRegularFile).
int putWholeFile(const std::string& path, std::string_view bytes, const WholeFileWay& way);

// Why an existing path cannot take a whole-file write: a link or no regular file. Empty when it
// can, also when nothing is there yet.
std::string wholeFileRefusal(const std::string& path);

} // namespace corvane
