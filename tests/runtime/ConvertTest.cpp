#include "runtime/Convert.h"
#include "support/ScratchProgramFolder.h"

#include <gtest/gtest.h>

#include <limits>

namespace corvane {
namespace {

using test::errorNumberRaisedBy;

struct IntCase {
    const char* text;
    int expected;
};

TEST(Convert, TextToInt16AcceptsWhatTheRuntimeAccepts)
{
    // How fractions round, and where they stop fitting, is checked with the floating values below.
    const IntCase cases[]
        = {{"-1", -1}, {" 42 ", 42}, {"\t7", 7}, {"+7", 7}, {"32767", 32767}, {"-32768", -32768}, {"2.5", 2},
            {"1e3", 1000}, {"1D2", 100}, {"&HFFFF", -1}, {"&h7f", 127}, {"&O17", 15}, {"True", -1}, {"false", 0}};
    for (const auto& c : cases)
        EXPECT_EQ(textToInt16(c.text), c.expected) << '"' << c.text << '"';
}

TEST(Convert, BadTextRaisesTypeMismatchAndLargeValuesOverflow)
{
    for (const char* bad : {"", "   ", "abc", "12abc", "1 2", "-", ".", "1e", "&HG"})
        EXPECT_EQ(errorNumberRaisedBy([&] { textToInt16(bad); }), err::TypeMismatch) << '"' << bad << '"';
    for (const char* large : {"32768", "-32769", "1e10", "&H10000", "1e999"})
        EXPECT_EQ(errorNumberRaisedBy([&] { textToInt16(large); }), err::Overflow) << '"' << large << '"';
}

TEST(Convert, BooleansAreSixteenBitWithTrueAllBitsSet)
{
    const IntCase cases[] = {{"True", -1}, {"FALSE", 0}, {" true ", -1}, {"0", 0}, {"2", -1}, {"-1", -1}, {"0.0", 0}};
    for (const auto& c : cases)
        EXPECT_EQ(textToBool(c.text), c.expected) << '"' << c.text << '"';
    for (const char* bad : {"", "yes", "T", "Truee"})
        EXPECT_EQ(errorNumberRaisedBy([&] { textToBool(bad); }), err::TypeMismatch) << '"' << bad << '"';
    EXPECT_EQ(boolText(1), "True") << "any value but 0 is true";
}

TEST(Convert, Int32AndDoublesAndNarrowing)
{
    EXPECT_EQ(textToInt32("100000"), 100000);
    EXPECT_EQ(textToInt32("-2147483648"), INT32_MIN);
    EXPECT_EQ(textToInt32("&HFFFFFFFF"), -1);
    EXPECT_EQ(errorNumberRaisedBy([] { textToInt32("2147483648"); }), err::Overflow);
    EXPECT_DOUBLE_EQ(textToDouble("1e-999"), 0.0);
    EXPECT_EQ(errorNumberRaisedBy([] { textToDouble("4.12.1"); }), err::TypeMismatch);
    EXPECT_EQ(errorNumberRaisedBy([] { toInt16(32768); }), err::Overflow);
    EXPECT_EQ(errorNumberRaisedBy([] { toInt32(INT64_C(1) << 31); }), err::Overflow);
}

// Every floating value that becomes an integer is rounded as the runtime assigns it, and one
// beyond the target is an overflow, never a bare cast's undefined result.
TEST(Convert, FloatingValuesNarrowWithTheirEdges)
{
    struct Case {
        double value;
        int int16; // 0 with `overflows16`
        bool overflows16;
    } const cases[] = {{2.5, 2, false}, {3.5, 4, false}, {-2.5, -2, false}, {32767.4, 32767, false}, {32767.5, 0, true},
        {-32768.5, -32768, false}, {-32768.6, 0, true}, {1e300, 0, true},
        {std::numeric_limits<double>::infinity(), 0, true}, {std::numeric_limits<double>::quiet_NaN(), 0, true}};
    for (const auto& c : cases) {
        if (c.overflows16)
            EXPECT_EQ(errorNumberRaisedBy([&] { roundToInt16(c.value); }), err::Overflow) << c.value;
        else
            EXPECT_EQ(roundToInt16(c.value), c.int16) << c.value;
    }
    EXPECT_EQ(roundToInt32(2147483647.4), 2147483647);
    EXPECT_EQ(errorNumberRaisedBy([] { roundToInt32(2147483647.5); }), err::Overflow);
    // Val reads leniently and assigns strictly: a SECTION= of junk is 0, one of 99999 overflows.
    EXPECT_EQ(valToInt16("E=120"), 0);
    EXPECT_EQ(valToInt16(" 12abc"), 12);
    EXPECT_EQ(textVal("-3.5x"), -3.5);
    EXPECT_EQ(errorNumberRaisedBy([] { valToInt16("99999"); }), err::Overflow);
}

} // namespace
} // namespace corvane
