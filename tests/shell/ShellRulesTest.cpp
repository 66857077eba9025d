#include "runtime/KeyFilter.h"
#include "shell/ConfigurationRules.h"
#include "shell/GridRules.h"
#include "shell/SessionMessages.h"
#include "shell/VersionRules.h"

#include <gtest/gtest.h>

namespace corvane {
namespace {

TEST(ShellRules, VersionRuleAndAdvisory)
{
    for (const char* accepted : {"4.12", "4.2", "5.0", "10"})
        EXPECT_TRUE(hostVersionAccepted(accepted)) << accepted;
    for (const char* refused : {"4.11", "4.1", "3.99", "abc", ""})
        EXPECT_FALSE(hostVersionAccepted(refused)) << refused;
    // The terminal is 1.02, read as 1.2: the advisory only for strictly more.
    for (const char* advised : {"1.21", "1.3", "2"})
        EXPECT_TRUE(upgradeAdvised(advised)) << advised;
    for (const char* quiet : {"1.02", "1.2", "1.03", "1.1", "x"})
        EXPECT_FALSE(upgradeAdvised(quiet)) << quiet;
}

// The messages that are put together from the values they report.
TEST(ShellRules, MessagesTakeTheirValues)
{
    const std::pair<std::string, const char*> cases[] = {
        {message::hostTooOld("4.11"), "version \r\n4.11.  "},
        {message::upgradeAdvisory("4.12", "1.3"), "-- version 4.12.xx --"},
        {message::upgradeAdvisory("4.12", "1.3"), "using is 1.2.xx."}, // this terminal, read as the host reads it
        {message::idleLogOff(7), "For 7 Minutes"},
        {message::duplicatePort("100"), "Port: 100 is"},
    };
    for (const auto& [text, value] : cases)
        EXPECT_NE(text.find(value), std::string::npos) << value;
}

TEST(ShellRules, BookmarksAndGridValues)
{
    struct Case {
        std::optional<std::string> bookmark;
        bool forward;
        std::int16_t row;
    } const cases[] = {
        {std::nullopt, true, -1}, {std::nullopt, false, 128}, {"0", true, 0}, {"127", true, 127},
        {"5.7", true, 5}, // truncated
        {"128", true, InvalidRow}, {"-1", true, InvalidRow}, {"128", false, InvalidRow}, {"abc", true, InvalidRow},
        {"1e300", true, InvalidRow}, // no bare cast of a value far beyond 16 bits
    };
    for (const auto& c : cases)
        EXPECT_EQ(bookmarkToRow(c.bookmark, c.forward), c.row) << c.bookmark.value_or("null");

    std::vector<PortStatusRecord> table(2, PortStatusRecord{"M", "P", "S", "9", "ID"});
    const std::vector<std::string> row = {gridValue(table, 1, 0), gridValue(table, 1, 1), gridValue(table, 1, 2),
        gridValue(table, 1, 3), gridValue(table, 1, 4), gridValue(table, 1, 5)};
    EXPECT_EQ(row, (std::vector<std::string>{"2", "M", "P", "ID", "S", "9"}));
    EXPECT_EQ(gridValue(table, 5, 0), "6");
    EXPECT_EQ(gridValue(table, 5, 1), "");
}

TEST(ShellRules, ConfigurationFieldsAndFtpModes)
{
    struct Case {
        std::string typed;
        std::vector<std::string> others;
        std::string text;
        bool selectAll, duplicate;
    } const ports[] = {
        {"", {}, "1", true, false},
        {"70000", {}, "65535", false, false},
        {"0", {}, "1", false, false},
        {"100", {"100"}, "100", false, true},
        {"0100", {"100"}, "0100", false, false}, // textual comparison
        {"0", {"1"}, "1", false, true},
        {"99999999999", {}, "65535", false, false},
    };
    for (const auto& c : ports) {
        const FieldChange change = portFieldChanged(c.typed, c.others);
        EXPECT_EQ(change.text, c.text) << c.typed;
        EXPECT_EQ(change.selectAll, c.selectAll) << c.typed;
        EXPECT_EQ(change.duplicate, c.duplicate) << c.typed;
    }
    EXPECT_EQ(idleFieldChanged("75").text, "60");
    EXPECT_EQ(idleFieldChanged("").text, "1");
    EXPECT_EQ(idleFieldChanged("0").text, "0");
    // Typed characters other than digits go; keys that type no character keep their work.
    for (char32_t kept : {U'7', U'0', U'\b', U'\t', U'\r', U'\x1b', U'\x7f'})
        EXPECT_FALSE(typedCharacterDiscarded(kept)) << static_cast<int>(kept);
    for (char32_t discarded : {U'a', U'-', U' ', U'\u00e9', U'\u0663'})
        EXPECT_TRUE(typedCharacterDiscarded(discarded)) << static_cast<int>(discarded);

    for (const char* mode : {"FTP", "Timer Folder", "DC + FTP", "DC + TMR FLDR"})
        EXPECT_TRUE(isFtpTypeMode(mode));
    for (const char* other : {"ftp", "FTP ", "Sending", ""})
        EXPECT_FALSE(isFtpTypeMode(other));
}

} // namespace
} // namespace corvane
