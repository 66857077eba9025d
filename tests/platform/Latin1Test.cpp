#include "platform/Latin1.h"

#include <gtest/gtest.h>

namespace corvane {
namespace {

TEST(Latin1, EveryByteCrossesToQtAndBackUnchanged)
{
    std::string bytes;
    for (int b = 0; b < 256; ++b)
        bytes += static_cast<char>(b);
    const QString text = fromLatin1Bytes(bytes);
    EXPECT_EQ(text.size(), 256);
    EXPECT_EQ(text.at(0xE9), QChar(0xE9));
    EXPECT_EQ(toLatin1Bytes(text), bytes);
    EXPECT_EQ(toBytes(toByteArray(bytes)), bytes);
}

} // namespace
} // namespace corvane
