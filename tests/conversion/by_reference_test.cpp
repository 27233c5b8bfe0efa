// By-reference views.
#include "conversion/arg_converter.h"
#include "platform/holders.h"

#include <gtest/gtest.h>

namespace {

using namespace axlink2;

TEST(ByReferenceView, PointsAtThePayloadOfEveryTypeThatHasOne) {
    const VARTYPE withPayload[] = {
        VT_I2,
        VT_I4,
        VT_R4,
        VT_R8,
        VT_CY,
        VT_DATE,
        VT_BSTR,
        VT_DISPATCH,
        VT_ERROR,
        VT_BOOL,
        VT_UNKNOWN,
        VT_I1,
        VT_UI1,
        VT_UI2,
        VT_UI4,
        VT_I8,
        VT_UI8,
        VT_INT,
        VT_UINT,
        VT_HRESULT,
        VT_INT_PTR,
        VT_UINT_PTR,
        VT_ARRAY | VT_R8,
        VT_ARRAY | VT_VARIANT,
    };
    for (const VARTYPE vt : withPayload) {
        VARIANT out{};
        VARIANT backing{};
        backing.vt = vt;
        makeByRefVariant(&out, &backing);
        EXPECT_EQ(out.vt, vt | VT_BYREF);
        EXPECT_EQ(out.byref, static_cast<void*>(&backing.llVal)) << vt;
    }
}

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
