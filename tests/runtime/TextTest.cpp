#include "runtime/Text.h"
#include "runtime/DateTimeText.h"
#include "support/ScratchProgramFolder.h"

#include <gtest/gtest.h>

namespace corvane {
namespace {

using test::errorNumberRaisedBy;

TEST(Text, InStrCountsFromOneAndReturnsZeroPastTheEnd)
{
    struct Case {
        std::int64_t start;
        const char* text;
        const char* find;
        std::int64_t expected;
    } const cases[] = {{1, "abcabc", "bc", 2}, {3, "abcabc", "bc", 5}, {6, "abcabc", "bc", 0}, {7, "abc", "", 0},
        {2, "abc", "", 2}, {1, "", "", 0}, {1, "abc", "x", 0}};
    for (const auto& c : cases)
        EXPECT_EQ(inStr(c.start, c.text, c.find), c.expected) << c.start << " " << c.text << " " << c.find;
    EXPECT_EQ(errorNumberRaisedBy([] { inStr(0, "abc", "a"); }), err::InvalidProcedureCall);
}

TEST(Text, SubstringsCaseAndBlanksFollowTheRuntime)
{
    EXPECT_EQ(mid("abcdef", 5, 10), "ef");
    EXPECT_EQ(mid("abc", 10, 1), "");
    EXPECT_EQ(left("abc", 5), "abc");
    EXPECT_EQ(errorNumberRaisedBy([] { mid("abc", 0, 1); }), err::InvalidProcedureCall);
    EXPECT_EQ(errorNumberRaisedBy([] { left("abc", -1); }), err::InvalidProcedureCall);
    EXPECT_EQ(upperCase("Supervisor m\xFCller \xF7"), "SUPERVISOR M\xDCLLER \xF7");
    EXPECT_EQ(trimBlanks("  smith \t "), "smith \t");
    EXPECT_EQ(trimBlanks("   "), "");
}

TEST(DateTimeText, GeneralDateFollowsTheLocaleDefaults)
{
    struct Case {
        const char* locale;
        DateTime moment;
        const char* expected;
    } const cases[] = {
        {"en_US", {2026, 1, 5, 13, 5, 9}, "1/5/2026 1:05:09 PM"},
        {"en_US", {2026, 1, 5, 12, 0, 0}, "1/5/2026 12:00:00 PM"},
        {"C", {2026, 1, 5, 0, 0, 1}, "1/5/2026 12:00:01 AM"},
        {"POSIX", {2026, 1, 5, 0, 0, 0}, "1/5/2026"}, // midnight shows the date alone
        {"de_DE.UTF-8@euro", {2026, 11, 15, 2, 16, 36}, "15.11.2026 02:16:36"},
        {"en_GB.UTF-8", {2026, 11, 15, 14, 16, 36}, "15/11/2026 14:16:36"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(generalDateText(c.moment, dateTimeFormatFor(c.locale)), c.expected) << c.locale;
}

} // namespace
} // namespace corvane
