// By-reference views.
#include "conversion/arg_converter.h"
#include "platform/holders.h"

#include <gtest/gtest.h>

namespace {

using namespace axlink2;

TEST(ByReferenceView, OfAVariantIsEmptyAndOfADecimalIsTheWholeVariant) {
    VARIANT out{};
    VARIANT backing{};
    backing.vt = VT_VARIANT;
    makeByRefVariant(&out, &backing);
    EXPECT_EQ(out.vt, VT_VARIANT | VT_BYREF);
    EXPECT_EQ(out.pvarVal, &backing);
    EXPECT_EQ(backing.vt, VT_EMPTY);

    backing.vt = VT_DECIMAL;
    makeByRefVariant(&out, &backing);
    EXPECT_EQ(out.vt, VT_DECIMAL | VT_BYREF);
    EXPECT_EQ(static_cast<void*>(out.pdecVal), static_cast<void*>(&backing));
}

TEST(ByReferenceView, LeavesThePointerAloneForOtherTypes) {
    for (const VARTYPE vt : {VT_EMPTY, VT_NULL, VT_VOID, VT_PTR, VT_LPWSTR, VT_RECORD}) {
        VARIANT out{};
        VARIANT backing{};
        out.byref = &out;
        backing.vt = vt;
        makeByRefVariant(&out, &backing);
        EXPECT_EQ(out.vt, vt | VT_BYREF);
        EXPECT_EQ(out.byref, &out) << vt;
    }
}

} // namespace
