// Logicals of any number, so that no lane and no remainder of a vectorised loop is left out.
#include "conversion/logical_copy.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace {

using namespace axlink2;

TEST(LogicalCopy, MapsEveryElementAlikeAndWritesNoFurther) {
    for (std::size_t count = 0; count < 70; ++count) {
        std::vector<unsigned char> bytes;
        std::vector<VARIANT_BOOL> words;
        for (std::size_t i = 0; i < count; ++i) {
            bytes.push_back(static_cast<unsigned char>(i % 3 == 2 ? 254 + i % 2 : i % 3));
            words.push_back(i % 3 == 0 ? VARIANT_TRUE : static_cast<VARIANT_BOOL>(i % 3 - 1));
        }
        std::vector<VARIANT_BOOL> sent(count + 1, 7);
        copyLogicals(bytes.data(), sent.data(), count);
        const auto received = std::make_unique<bool[]>(count + 1);
        copyLogicals(words.data(), received.get(), count);
        for (std::size_t i = 0; i < count; ++i) {
            EXPECT_EQ(sent[i], bytes[i] == 1 ? VARIANT_TRUE : VARIANT_FALSE)
                << i << " of " << count;
            EXPECT_EQ(received[i], i % 3 == 0) << i << " of " << count;
        }
        EXPECT_EQ(sent[count], 7);
        EXPECT_FALSE(received[count]);
    }
}

} // namespace
