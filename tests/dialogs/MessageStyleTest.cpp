#include "dialogs/MessageStyle.h"

#include <gtest/gtest.h>

namespace corvane {
namespace {

TEST(MessageStyle, ButtonsIconsAndDefaultsOfEveryStyle)
{
    struct Case {
        std::int16_t style;
        std::vector<std::string> captions;
        std::vector<std::int16_t> results;
        std::int16_t icon;
        int defaultButton;
    } const cases[] = {
        {0, {"OK"}, {1}, 0, 0}, {1 + 32, {"OK", "Cancel"}, {1, 2}, 32, 0},
        {2 + 256, {"Abort", "Retry", "Ignore"}, {3, 4, 5}, 0, 1},
        {3 + 512 + 64, {"Yes", "No", "Cancel"}, {6, 7, 2}, 64, 2}, {52, {"Yes", "No"}, {6, 7}, 48, 0},
        {5 + 16, {"Retry", "Cancel"}, {4, 2}, 16, 0}, {6, {"RESET"}, {8}, 0, 0},
        {7, {"Convert", "Cancel"}, {9, 2}, 0, 0}, {8, {}, {}, 0, 0}, {14 + 80, {}, {}, 0, 0}, // 80 is no icon value
    };
    for (const auto& c : cases) {
        const auto buttons = messageButtons(c.style);
        std::vector<std::string> captions;
        std::vector<std::int16_t> results;
        for (const auto& b : buttons) {
            captions.push_back(b.caption);
            results.push_back(b.result);
        }
        EXPECT_EQ(captions, c.captions) << c.style;
        EXPECT_EQ(results, c.results) << c.style;
        EXPECT_EQ(messageIcon(c.style), c.icon) << c.style;
        EXPECT_EQ(defaultButtonIndex(c.style), c.defaultButton) << c.style;
    }
    const std::vector<MessageButton> custom = {{"Keep", 20, false}, {"Replace", 21, true}};
    EXPECT_EQ(messageButtons(15, custom), custom);
    EXPECT_TRUE(isNewerDisplayGeneration(3.95));
    EXPECT_FALSE(isNewerDisplayGeneration(3.94));
}

} // namespace
} // namespace corvane
