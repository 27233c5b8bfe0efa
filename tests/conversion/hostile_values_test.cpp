// Values whose objects fail while they are copied, changed and ended.
#include "platform/guarded_call.h"
#include "platform/variant_calls.h"
#include "support/com_double.h"
#include "support/server_fixture.h"

namespace {

using namespace axlink2;
using namespace axlink2::test;

// Fails in every call, when the count is done.
class Hostile : public Counted<Silent<IDispatch>> {
  public:
    Hostile() : Counted("hostile") {}
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void**) override { throw 1; }
    ULONG STDMETHODCALLTYPE AddRef() override {
        Counted::AddRef();
        throw 1;
    }
    ULONG STDMETHODCALLTYPE Release() override {
        Counted::Release();
        throw 1;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                     UINT*) override {
        throw 1;
    }
};

struct HostileValues : AliveCheck {
    static VARIANT object() {
        VARIANT v{};
        v.vt = VT_DISPATCH;
        v.pdispVal = new Hostile;
        return v;
    }
};

TEST_F(HostileValues, EndWithAllThatTheyHold) {
    for (const VARTYPE vt : {VT_DISPATCH, VT_UNKNOWN, VT_VARIANT}) {
        ScopedSafeArray array = safeArray(vt, {{3}});
        for (int i = 0; i < 3; ++i) {
            if (vt == VT_VARIANT)
                static_cast<VARIANT*>(array->pvData)[i] = object();
            else
                static_cast<IUnknown**>(array->pvData)[i] = object().punkVal;
        }
        ScopedSafeArray outer = safeArray(VT_VARIANT, {{2}});
        static_cast<VARIANT*>(outer->pvData)[0] = variantOf(vt, std::move(array)).detach();
        static_cast<VARIANT*>(outer->pvData)[1] = object();
        const ScopedVariant value = variantOf(VT_VARIANT, std::move(outer));
    }
    VARIANT alone = object();
    platform::clearVariant(alone);
    EXPECT_EQ(alone.vt, VT_EMPTY);
}

TEST_F(HostileValues, ThatCannotBeCopiedOrChangedLeaveNothing) {
    const auto held = ScopedVariant::adopt(object());
    VARIANT reference{};
    reference.vt = VT_BYREF | VT_DISPATCH;
    reference.ppdispVal = const_cast<IDispatch**>(&held->pdispVal);
    VARIANT to{};
    EXPECT_EQ(platform::copyVariant(to, held.get()), E_FAIL);
    EXPECT_EQ(to.vt, VT_EMPTY);
    EXPECT_EQ(platform::copyReferred(to, reference), E_FAIL);
    EXPECT_EQ(to.vt, VT_EMPTY);
    EXPECT_TRUE(FAILED(platform::changeVariant(to, held.get(), VT_I4)));
    EXPECT_EQ(to.vt, VT_EMPTY);
    // What was counted before it failed; how often differs between systems.
    const auto& counted = *static_cast<const Hostile*>(held->pdispVal);
    while (counted.references() > 1)
        platform::guarded([&] { held->pdispVal->Release(); });
}

} // namespace
