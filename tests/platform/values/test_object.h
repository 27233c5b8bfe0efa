// A counted object whose default property is 42.
#pragma once

#include "servers/kit/kit.h"

#include <gtest/gtest.h>

namespace values_test {

struct TestObject final : kit::DispatchObject {
    TestObject() : DispatchObject(definition()) {}
    LONG value() { return 42; }
    static platform::ComPtr<IDispatch> make() { return kit::createDispatch<TestObject>(); }

  private:
    static const kit::ClassDefinition& definition() {
        static const auto made = kit::ClassBuilder<TestObject>("TestObject", CLSID{}, IID{})
                                     .property("Value", &TestObject::value)
                                     .dispid(DISPID_VALUE)
                                     .withoutTypeInfo()
                                     .build();
        return *made;
    }
};

inline ULONG referencesOf(const platform::ComPtr<IDispatch>& object) {
    return static_cast<TestObject*>(object.get())->references();
}

// Fails when a test leaves objects behind.
class ValuesTest : public ::testing::Test {
  protected:
    void TearDown() override { EXPECT_EQ(kit::liveObjects(), 0); }
};

} // namespace values_test
