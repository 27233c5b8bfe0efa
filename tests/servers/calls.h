// Calls through IDispatch, and a fixture after which nothing is left alive.
#pragma once

#include "servers/kit/kit.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <string>

namespace server_tests {

using platform::ComPtr;
using platform::OleString;
using platform::OleView;
using platform::ScopedBstr;
using platform::ScopedVariant;

// What a call answered.
struct Outcome {
    HRESULT hr = E_UNEXPECTED;
    ScopedVariant result;
    EXCEPINFO excepInfo{};
    UINT argumentError = 99;

    Outcome() = default;
    Outcome(Outcome&& other) noexcept
        : hr(other.hr), result(std::move(other.result)),
          excepInfo(std::exchange(other.excepInfo, {})), argumentError(other.argumentError) {}
    ~Outcome() {
        for (BSTR text : {excepInfo.bstrSource, excepInfo.bstrDescription, excepInfo.bstrHelpFile})
            SysFreeString(text);
    }

    // The result in a form that compares: its kind and its text.
    std::string text() {
        ScopedVariant asText;
        if (FAILED(VariantChangeType(asText.put(), result.inOut(), VARIANT_ALPHABOOL, VT_BSTR)))
            return std::to_string(result->vt) + ":?";
        return std::to_string(result->vt) + ":" +
               platform::toNarrow(platform::viewOf(asText->bstrVal));
    }
};

// Invoke with borrowed arguments, the first one first; puts name their value.
inline Outcome invoke(IDispatch* object, DISPID dispid, WORD flags,
                      std::vector<VARIANT> arguments) {
    Outcome outcome;
    std::ranges::reverse(arguments);
    DISPID named = DISPID_PROPERTYPUT;
    const bool isPut = flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF);
    DISPPARAMS params{arguments.data(), isPut ? &named : nullptr,
                      static_cast<UINT>(arguments.size()), isPut ? 1u : 0u};
    outcome.hr = object->Invoke(dispid, IID_NULL, LOCALE_USER_DEFAULT, flags, &params,
                                outcome.result.put(), &outcome.excepInfo, &outcome.argumentError);
    return outcome;
}

inline DISPID dispidOf(IDispatch* object, const OLECHAR* name) {
    OleString text = name;
    LPOLESTR pointer = text.data();
    DISPID dispid = DISPID_UNKNOWN;
    object->GetIDsOfNames(IID_NULL, &pointer, 1, LOCALE_USER_DEFAULT, &dispid);
    return dispid;
}

// The same by name, with C++ values.
template <class... Args>
Outcome call(IDispatch* object, const OLECHAR* name, WORD flags, Args&&... args) {
    std::array<ScopedVariant, sizeof...(Args)> owned{kit::toVariant(std::forward<Args>(args))...};
    std::vector<VARIANT> arguments;
    for (const auto& value : owned)
        arguments.push_back(value.get());
    return invoke(object, dispidOf(object, name), flags, std::move(arguments));
}
template <class... Args>
Outcome method(IDispatch* object, const OLECHAR* name, Args&&... args) {
    return call(object, name, DISPATCH_METHOD, std::forward<Args>(args)...);
}
template <class... Args>
Outcome get(IDispatch* object, const OLECHAR* name, Args&&... args) {
    return call(object, name, DISPATCH_PROPERTYGET, std::forward<Args>(args)...);
}
template <class... Args>
Outcome put(IDispatch* object, const OLECHAR* name, Args&&... args) {
    return call(object, name, DISPATCH_PROPERTYPUT, std::forward<Args>(args)...);
}

// A by-reference argument.
template <class Payload>
VARIANT byReference(VARTYPE vt, Payload* target) {
    VARIANT result{};
    result.vt = static_cast<VARTYPE>(vt | VT_BYREF);
    result.byref = target;
    return result;
}

inline VARIANT missing() {
    VARIANT result{};
    result.vt = VT_ERROR;
    result.scode = DISP_E_PARAMNOTFOUND;
    return result;
}

// The checks come last: once the members of the test itself have let go.
class ServerTest : public ::testing::Test {
  protected:
    ServerTest() { EXPECT_EQ(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), S_OK); }
    ~ServerTest() override {
        EXPECT_EQ(kit::liveObjectNames(), std::vector<std::string>());
        CoUninitialize();
    }
};

} // namespace server_tests
