// Class names from ProgIDs and back.
#include "comruntime/class_names.h"

#include <gtest/gtest.h>

namespace {

using namespace axlink2;

struct Row {
    const char* progId;
    const char* className;
    const char* decoded; // what comes back
};

constexpr Row rows[] = {
    {"Sample.Server.1", "Sample_Server_1", "Sample.Server.1"},
    {"Sample_One.Server", "Sample__One_Server", "Sample_One.Server"},
    {"A-B", "A___B", "A-B"},
    {"A B", "A____B", "A B"},
    {"A&B", "A_____B", "A&B"},
    {"", "", ""},
    // Neighbours run together.
    {"A.-B", "A____B", "A B"},
    {"A..B", "A__B", "A_B"},
    {"A__B", "A____B", "A B"},
    {"A&.B", "A______B", "A&.B"},
    // The word that stands for an underscore while decoding.
    {"xTAXSPHACKONUNDERSCOREy", "xTAXSPHACKONUNDERSCOREy", "x_y"},
};

TEST(ClassNames, FollowTheProgIdAndLeadBackUnlessSeparatorsStandSideBySide) {
    for (const Row& row : rows) {
        EXPECT_EQ(encodeClassName(row.progId), row.className);
        EXPECT_EQ(decodeClassName(row.className), row.decoded);
    }
}

} // namespace
