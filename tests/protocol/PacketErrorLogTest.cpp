#include "protocol/PacketErrorLog.h"
#include "support/ScratchProgramFolder.h"

#include <gtest/gtest.h>

namespace corvane {
namespace {

const char* const Current = "PacketError-Current.log";
const char* const Previous = "PacketError-Previous.log";

TEST(PacketErrorLog, RotatesOnlyAboveTenThousandBytes)
{
    struct Case {
        std::size_t currentSize;
        bool previousExists;
        bool rotates;
    } const cases[] = {{10000, true, false}, {10001, false, true}, {10001, true, true}};
    for (const auto& c : cases) {
        test::ScratchProgramFolder folder;
        folder.write(Current, std::string(c.currentSize, 'c'));
        if (c.previousExists)
            folder.write(Previous, "old generation\r\n");

        Log_Packet_Error("Unknown packet.");

        const std::string line
            = "Packet Error Location 501 Unknown packet. " + test::ScratchProgramFolder::momentText() + "\r\n";
        const auto label = std::to_string(c.currentSize) + (c.previousExists ? " with previous" : "");
        if (c.rotates) {
            EXPECT_EQ(folder.read(Previous), std::string(c.currentSize, 'c')) << label;
            EXPECT_EQ(folder.read(Current), line) << label;
        } else {
            EXPECT_EQ(folder.read(Current), std::string(c.currentSize, 'c') + line) << label;
            EXPECT_EQ(folder.exists(Previous), c.previousExists) << label;
        }
    }
}

TEST(PacketErrorLog, AFaultOfTheLogGoesToTheFallbackLineAndTheMessageIsLost)
{
    test::ScratchProgramFolder folder;
    std::filesystem::create_directory(folder.file(Current)); // cannot be opened as a file

    Log_Packet_Error("Error finding start in packet.");

    const std::vector<std::string> expected
        = {"Error Location 201 Err = 75 " + test::ScratchProgramFolder::momentText()};
    EXPECT_EQ(folder.lines("error.log"), expected);
    EXPECT_FALSE(folder.exists(Previous));
    EXPECT_TRUE(std::filesystem::is_empty(folder.file(Current)));
}

TEST(PacketErrorLog, AMissingFolderFailsSilently)
{
    test::ScratchProgramFolder folder;
    setenv("CORVANE_PROGRAM_DIR", folder.file("gone").c_str(), 1);
    EXPECT_NO_THROW(Log_Packet_Error("Unknown packet."));
    EXPECT_FALSE(folder.exists("gone"));
}

TEST(PacketErrorLog, FileExistsSeesOrdinaryFilesOnly)
{
    test::ScratchProgramFolder folder;
    folder.write("a.log", "x");
    std::filesystem::create_directory(folder.file("dir"));
    EXPECT_EQ(File_Exists(folder.file("a.log").string()), TrueValue);
    EXPECT_EQ(File_Exists(folder.file("dir").string()), FalseValue);
    EXPECT_EQ(File_Exists(folder.file("none.log").string()), FalseValue);
    EXPECT_EQ(File_Exists(""), FalseValue);
}

} // namespace
} // namespace corvane
