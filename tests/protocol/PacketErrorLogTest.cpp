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
        const std::string old(c.currentSize, 'c');
        folder.write(Current, old);
        if (c.previousExists)
            folder.write(Previous, "old generation\r\n");

        Log_Packet_Error(folder.logs(), "Unknown packet.");

        const std::string line
            = "Packet Error Location 501 Unknown packet. " + test::ScratchProgramFolder::momentText() + "\r\n";
        EXPECT_EQ(folder.read(Current), c.rotates ? line : old + line) << c.currentSize << c.previousExists;
        EXPECT_EQ(folder.read(Previous), c.rotates ? old : "old generation\r\n") << c.currentSize << c.previousExists;
    }
}

// The host's text goes into the log with its control characters spelt out: a line break in it
// cannot split the line or forge another, an escape sequence cannot command a terminal that
// shows the log.
TEST(PacketErrorLog, TheHostsTextCannotSplitOrForgeALine)
{
    test::ScratchProgramFolder folder;
    Log_Packet_Error(folder.logs(), "ACK\r\nPacket Error Location 501 forged\x1b[2J\x02\x9b");
    EXPECT_EQ(folder.lines(Current),
        std::vector<std::string>{"Packet Error Location 501 ACK\\x0d\\x0aPacket Error Location 501 forged\\x1b[2J\\x02\\x9b "
            + test::ScratchProgramFolder::momentText()});
}

TEST(PacketErrorLog, AFaultOfTheLogGoesToTheFallbackLineAndTheMessageIsLost)
{
    test::ScratchProgramFolder folder;
    std::filesystem::create_directory(folder.file(Current)); // cannot be opened as a file

    Log_Packet_Error(folder.logs(), "Error finding start in packet.");

    const std::vector<std::string> expected
        = {"Error Location 201 Err = 75 " + test::ScratchProgramFolder::momentText()};
    EXPECT_EQ(folder.lines("error.log"), expected);
    EXPECT_FALSE(folder.exists(Previous));
    EXPECT_TRUE(std::filesystem::is_empty(folder.file(Current)));
}

TEST(PacketErrorLog, AMissingFolderFailsSilently)
{
    test::ScratchProgramFolder folder;
    Logs gone(folder.file("gone").string(), test::ScratchProgramFolder::clock());
    EXPECT_NO_THROW(Log_Packet_Error(gone, "Unknown packet."));
    EXPECT_FALSE(folder.exists("gone"));
}

} // namespace
} // namespace corvane
