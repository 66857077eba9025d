#include "runtime/BoundedRead.h"
#include "runtime/WholeFile.h"
#include "support/ScratchProgramFolder.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace corvane {
namespace {

namespace fs = std::filesystem;

// Every byte value, line ends and the old end-of-file mark among them: the bytes written whole
// are the bytes read back, on every system (no line-end translation anywhere).
TEST(BoundedRead, BytesComeBackAsTheyWereWritten)
{
    test::ScratchProgramFolder folder;
    std::string all;
    for (int round = 0; round < 2; ++round)
        for (int byte = 0; byte < 256; ++byte)
            all += static_cast<char>(byte);
    all += "\r\n\n\r\x1a";
    const std::string path = folder.file("bytes").string();
    ASSERT_EQ(writeWholeFile(path, all), "");
    EXPECT_EQ(fs::file_size(path), all.size());
    const BoundedRead read = readBoundedFile(path, static_cast<long long>(all.size()));
    EXPECT_EQ(read.refusal, "");
    EXPECT_EQ(read.bytes, all);
}

// Only a regular file within the limit is read; anything else says why and gives no bytes.
TEST(BoundedRead, OnlyARegularFileWithinTheLimit)
{
    test::ScratchProgramFolder folder;
    folder.write("four", "1234");
    fs::create_directory(folder.file("folder"));
#ifdef _WIN32
    const std::string device = "NUL";
#else
    const std::string device = "/dev/null";
#endif
    struct Case {
        std::string path;
        long long limit;
        const char* bytes;
        const char* refusal;
        bool missing;
    } const cases[] = {
        {folder.file("four").string(), 4, "1234", "", false},
        {folder.file("four").string(), 3, "", "it holds more than 3 bytes", false},
        {folder.file("none").string(), 4, "", "No such file or directory", true},
        {folder.file("no folder/none").string(), 4, "", "No such file or directory", true},
        {folder.file("folder").string(), 4, "", "it is no regular file", false},
        {device, 4, "", "it is no regular file", false},
    };
    for (const auto& c : cases) {
        const BoundedRead read = readBoundedFile(c.path, c.limit);
        EXPECT_EQ(read.bytes, c.bytes) << c.path;
        EXPECT_EQ(read.refusal, c.refusal) << c.path;
        EXPECT_EQ(read.missing, c.missing) << c.path;
    }
}

TEST(BoundedRead, ALinkIsRefusedOnlyWhenLinksAreNotFollowed)
{
    if (!test::symbolicLinksCanBeMade())
        GTEST_SKIP() << "this system lets the test make no symbolic link";
    test::ScratchProgramFolder folder;
    folder.write("target", "kept");
    fs::create_symlink(folder.file("target"), folder.file("link"));
    EXPECT_EQ(readBoundedFile(folder.file("link").string(), 4).bytes, "kept");
    const BoundedRead refused = readBoundedFile(folder.file("link").string(), 4, false);
    EXPECT_EQ(refused.refusal, "it is a symbolic link");
    EXPECT_EQ(refused.bytes, "");
}

} // namespace
} // namespace corvane
