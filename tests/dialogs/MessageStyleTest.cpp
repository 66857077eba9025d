#include "runtime/MessageStyle.h"

#include <gtest/gtest.h>

namespace corvane {
namespace {

// The style's bits, each read from its own place (the captions are the box's test).
TEST(MessageStyle, BitsSelectButtonsIconAndDefault)
{
    struct Case {
        std::int16_t style;
        std::size_t buttons;
        std::int16_t icon;
        int defaultButton;
    } const cases[] = {
        {0, 1, 0, 0}, {1 + 32, 2, 32, 0}, {2 + 256, 3, 0, 1}, {3 + 512 + 64, 3, 64, 2}, {52, 2, 48, 0}, {8, 0, 0, 0},
        {14 + 80, 0, 0, 0}, // 8-14 have no buttons; 80 is no icon value
    };
    for (const auto& c : cases) {
        EXPECT_EQ(messageButtons(c.style).size(), c.buttons) << c.style;
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
