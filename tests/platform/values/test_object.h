// A counted object whose default property is 42.
#pragma once

#include "platform/holders.h"

#include <gtest/gtest.h>

namespace values_test {

class TestObject : public IDispatch {
  public:
    static inline int alive = 0;

    static platform::ComPtr<IDispatch> make() {
        return platform::ComPtr<IDispatch>::adopt(new TestObject);
    }

    STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
        *object = iid == IID_IUnknown || iid == IID_IDispatch ? this : nullptr;
        if (*object) AddRef();
        return *object ? S_OK : E_NOINTERFACE;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return ++references_; }
    STDMETHODIMP_(ULONG) Release() override {
        const ULONG left = --references_;
        if (left == 0) delete this;
        return left;
    }
    STDMETHODIMP GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
        return E_NOTIMPL;
    }
    STDMETHODIMP Invoke(DISPID member, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* result, EXCEPINFO*,
                        UINT*) override {
        if (member != DISPID_VALUE) return DISP_E_MEMBERNOTFOUND;
        result->vt = VT_I4;
        result->lVal = 42;
        return S_OK;
    }

    ULONG references() const { return references_; }

  private:
    TestObject() { ++alive; }
    virtual ~TestObject() { --alive; }
    ULONG references_ = 1;
};

inline ULONG referencesOf(const platform::ComPtr<IDispatch>& object) {
    return static_cast<TestObject*>(object.get())->references();
}

// Fails when a test leaves objects behind.
class ValuesTest : public ::testing::Test {
  protected:
    void TearDown() override { EXPECT_EQ(TestObject::alive, 0); }
};

} // namespace values_test
