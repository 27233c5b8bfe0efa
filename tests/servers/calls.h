// Calls through IDispatch with C++ values.
#pragma once

#include "servers/kit/kit.h"

#include <algorithm>
#include <string>

namespace server_tests {

using platform::ComPtr;
using platform::OleString;
using platform::ScopedBstr;
using platform::ScopedVariant;

// A call's arguments, the first one first: C++ values, text in UTF-8, or a VARIANT that stays the
// caller's.
class Arguments {
  public:
    template <class... Args>
    explicit Arguments(Args&&... args) {
        (add(std::forward<Args>(args)), ...);
    }
    const std::vector<VARIANT>& get() const { return values_; }

  private:
    template <class T>
    void add(T&& value) {
        if constexpr (std::is_same_v<std::remove_cvref_t<T>, VARIANT>)
            values_.push_back(value);
        else if constexpr (std::is_convertible_v<T, const char*>)
            add(platform::toOle(value));
        else
            values_.push_back(owned_.emplace_back(kit::toVariant(std::forward<T>(value))).get());
    }

    std::vector<ScopedVariant> owned_;
    std::vector<VARIANT> values_;
};

inline DISPID dispidOf(IDispatch* object, const std::string& name) {
    OleString text = platform::toOle(name);
    LPOLESTR pointer = text.data();
    DISPID dispid = DISPID_UNKNOWN;
    object->GetIDsOfNames(IID_NULL, &pointer, 1, LOCALE_USER_DEFAULT, &dispid);
    return dispid;
}

// What a call answered.
struct Outcome {
    HRESULT hr;
    ScopedVariant result;
    EXCEPINFO excepInfo{};
    UINT argumentError = 99;

    // Invokes a member; puts name their value.
    Outcome(IDispatch* object, const std::string& name, WORD flags, const Arguments& arguments) {
        std::vector<VARIANT> reversed(arguments.get().rbegin(), arguments.get().rend());
        DISPID named = DISPID_PROPERTYPUT;
        const bool isPut = flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF);
        DISPPARAMS params{reversed.data(), isPut ? &named : nullptr,
                          static_cast<UINT>(reversed.size()), isPut ? 1u : 0u};
        hr = object->Invoke(dispidOf(object, name), IID_NULL, LOCALE_USER_DEFAULT, flags, &params,
                            result.put(), &excepInfo, &argumentError);
    }
    Outcome(const Outcome&) = delete;
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

template <class... Args>
Outcome method(IDispatch* object, const std::string& name, Args&&... args) {
    return Outcome(object, name, DISPATCH_METHOD, Arguments(std::forward<Args>(args)...));
}
template <class... Args>
Outcome get(IDispatch* object, const std::string& name, Args&&... args) {
    return Outcome(object, name, DISPATCH_PROPERTYGET, Arguments(std::forward<Args>(args)...));
}
template <class... Args>
Outcome put(IDispatch* object, const std::string& name, Args&&... args) {
    return Outcome(object, name, DISPATCH_PROPERTYPUT, Arguments(std::forward<Args>(args)...));
}

// A by-reference argument.
template <class Payload>
VARIANT byReference(VARTYPE vt, Payload* target) {
    VARIANT result{};
    result.vt = static_cast<VARTYPE>(vt | VT_BYREF);
    result.byref = target;
    return result;
}

} // namespace server_tests
