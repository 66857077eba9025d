#pragma once

#include <string>

namespace corvane {

// A file the program reads whole (an import, a settings file): only a regular file, opened
// without waiting (a pipe nobody writes is refused at once, not waited on), and only up to
// `limit` bytes, so that memory stays small whatever lies at the path. `missing` tells a file
// that is not there from one that is refused.
struct BoundedRead {
    std::string bytes;
    std::string refusal; // empty when read; else why, in words
    bool missing = false;
    unsigned mode = 0; // the file's permission bits, where the system has them
};
// `followLinks` false: a link at the path is refused ("it is a symbolic link").
BoundedRead readBoundedFile(const std::string& path, long long limit, bool followLinks = true);

} // namespace corvane
