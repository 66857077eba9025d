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

// Why an existing path cannot take a whole-file write: a link or no regular file. Empty when it
// can, also when nothing is there yet.
std::string wholeFileRefusal(const std::string& path);

#ifndef _WIN32
// Writes all of `bytes` to the descriptor from `offset` on, through interruptions and short
// writes; 0, or the errno of the failure (ENOSPC when the disk took no more).
int writeAllAt(int fd, std::string_view bytes, long long offset);
#endif

} // namespace corvane
