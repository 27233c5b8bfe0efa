// The C++ types that members may use, and what each is to COM.
#pragma once

#include "platform/holders.h"
#include "platform/text.h"
#include "servers/kit/errors.h"
#include "servers/kit/type_spec.h"

#include <concepts>
#include <cstring>
#include <span>
#include <type_traits>
#include <vector>

namespace kit {

// A value whose kind its C++ type alone doesn't tell.
template <VARTYPE kind, class T>
struct Tagged {
    T value{};
};

using Int = Tagged<VT_INT, INT>;
using UInt = Tagged<VT_UINT, UINT>;
using Date = Tagged<VT_DATE, DATE>; // days since 30 December 1899
using ErrorCode = Tagged<VT_ERROR, SCODE>;
using HResult = Tagged<VT_HRESULT, HRESULT>; // a HRESULT as a value, not as a call's result

// A SAFEARRAY of T that the caller owns, of any shape.
template <class T>
struct ArrayView {
    SAFEARRAY* array = nullptr;
};

// The same, owned; may be empty.
template <class T>
struct Array {
    platform::ScopedSafeArray array;
};

// ValueTraits<T> gives
//   vt           the kind of a VARIANT that holds a T,
//   Payload      what such a VARIANT stores, and what VT_BYREF | vt points at,
//   type()       T as a type library declares it,
//   read(p)      a T from a payload that stays its owner's,
//   give(value)  a payload for a new owner,
//   dispose(p)   the end of a payload that is about to be overwritten.
template <class T>
struct ValueTraits;

template <VARTYPE kind, class T>
struct PlainValue {
    static constexpr VARTYPE vt = kind;
    using Payload = T;
    static TypeSpec type() { return kind; }
    static T read(const T& payload) { return payload; }
    static T give(const T& value) { return value; }
    static void dispose(T&) {}
};

template <class T>
constexpr VARTYPE integerKind() {
    constexpr VARTYPE signedKinds[] = {VT_I1, VT_I2, VT_I4, VT_I8};
    constexpr VARTYPE unsignedKinds[] = {VT_UI1, VT_UI2, VT_UI4, VT_UI8};
    constexpr int row = sizeof(T) == 1 ? 0 : sizeof(T) == 2 ? 1 : sizeof(T) == 4 ? 2 : 3;
    return std::is_signed_v<T> ? signedKinds[row] : unsignedKinds[row];
}

template <std::integral T>
struct ValueTraits<T> : PlainValue<integerKind<T>(), T> {};
template <>
struct ValueTraits<float> : PlainValue<VT_R4, float> {};
template <>
struct ValueTraits<double> : PlainValue<VT_R8, double> {};
template <>
struct ValueTraits<CY> : PlainValue<VT_CY, CY> {};
template <>
struct ValueTraits<DECIMAL> : PlainValue<VT_DECIMAL, DECIMAL> {};

template <>
struct ValueTraits<bool> : PlainValue<VT_BOOL, VARIANT_BOOL> {
    static bool read(VARIANT_BOOL payload) { return payload != VARIANT_FALSE; }
    static VARIANT_BOOL give(bool value) { return value ? VARIANT_TRUE : VARIANT_FALSE; }
};

template <VARTYPE kind, class T>
struct ValueTraits<Tagged<kind, T>> : PlainValue<kind, T> {
    static Tagged<kind, T> read(const T& payload) { return {payload}; }
    static T give(Tagged<kind, T> value) { return value.value; }
};

// The key of a C++ enumeration in type descriptions.
template <class Enum>
inline constexpr char enumerationKey = 0;

template <class Enum>
requires std::is_enum_v<Enum>
struct ValueTraits<Enum> : PlainValue<VT_I4, LONG> {
    static TypeSpec type() {
        TypeSpec result(VT_USERDEFINED);
        result.cppType = &enumerationKey<Enum>;
        return result;
    }
    static Enum read(LONG payload) { return static_cast<Enum>(payload); }
    static LONG give(Enum value) { return static_cast<LONG>(value); }
};

// Text. An OleView is for inputs only and lasts as long as the call.
struct TextValue : PlainValue<VT_BSTR, BSTR> {
    static void dispose(BSTR& payload) { SysFreeString(payload); }
};
template <>
struct ValueTraits<platform::OleView> : TextValue {
    static platform::OleView read(BSTR payload) { return platform::viewOf(payload); }
};
template <>
struct ValueTraits<platform::OleString> : TextValue {
    static platform::OleString read(BSTR payload) {
        return platform::OleString(platform::viewOf(payload));
    }
    static BSTR give(platform::OleView value) { return platform::makeBstr(value).detach(); }
};
// The BSTR itself, for text that may be null.
template <>
struct ValueTraits<platform::ScopedBstr> : TextValue {
    static platform::ScopedBstr read(BSTR payload) { return platform::ScopedBstr::borrow(payload); }
    static BSTR give(platform::ScopedBstr&& value) { return value.detach(); }
};

// Objects. A raw pointer is for inputs only and lasts as long as the call.
template <VARTYPE kind, class Interface>
struct ObjectValue : PlainValue<kind, Interface*> {
    static void dispose(Interface*& payload) {
        (void)platform::ComPtr<Interface>::adopt(std::exchange(payload, nullptr));
    }
};
template <>
struct ValueTraits<IDispatch*> : ObjectValue<VT_DISPATCH, IDispatch> {};
template <>
struct ValueTraits<IUnknown*> : ObjectValue<VT_UNKNOWN, IUnknown> {};
template <class Interface>
struct ValueTraits<platform::ComPtr<Interface>> : ValueTraits<Interface*> {
    static platform::ComPtr<Interface> read(Interface* payload) {
        return platform::ComPtr<Interface>::borrow(payload);
    }
    static Interface* give(platform::ComPtr<Interface> value) { return value.detach(); }
};

// Any value. A VARIANT is for inputs only and belongs to the caller.
struct AnyValue : PlainValue<VT_VARIANT, VARIANT> {
    static void dispose(VARIANT& payload) { VariantClear(&payload); }
};
template <>
struct ValueTraits<VARIANT> : AnyValue {};
template <>
struct ValueTraits<platform::ScopedVariant> : AnyValue {
    static platform::ScopedVariant read(const VARIANT& payload) {
        platform::ScopedVariant copy;
        check(VariantCopyInd(copy.put(), &payload));
        return copy;
    }
    static VARIANT give(platform::ScopedVariant&& value) { return value.detach(); }
};

// Arrays.
template <class T>
struct ArrayValue : PlainValue<static_cast<VARTYPE>(VT_ARRAY | ValueTraits<T>::vt), SAFEARRAY*> {
    static TypeSpec type() { return safeArrayOf(ValueTraits<T>::type()); }
    static void dispose(SAFEARRAY*& payload) { SafeArrayDestroy(std::exchange(payload, nullptr)); }
};
template <class T>
struct ValueTraits<ArrayView<T>> : ArrayValue<T> {
    static ArrayView<T> read(SAFEARRAY* payload) { return {payload}; }
};
template <class T>
struct ValueTraits<Array<T>> : ArrayValue<T> {
    static Array<T> read(SAFEARRAY* payload) {
        return {platform::ScopedSafeArray::borrow(payload)};
    }
    static SAFEARRAY* give(Array<T>&& value) { return value.array.detach(); }
};

// The elements of an array, first index fastest, as long as it lives and isn't redimensioned. Null
// has none.
template <class Payload>
std::span<Payload> elementsOf(SAFEARRAY* array) {
    if (!array) return {};
    std::size_t count = 1;
    for (UINT dim = 0; dim < array->cDims; ++dim)
        count *= array->rgsabound[dim].cElements;
    return {static_cast<Payload*>(array->pvData), count};
}

// A std::vector is a one-dimensional array from 0 as output; as input, all elements of any shape.
template <class T>
struct ValueTraits<std::vector<T>> : ArrayValue<T> {
    using Element = typename ValueTraits<T>::Payload;

    static std::vector<T> read(SAFEARRAY* payload) {
        std::vector<T> result;
        const auto elements = elementsOf<Element>(payload);
        result.reserve(elements.size());
        for (const auto& element : elements)
            result.push_back(ValueTraits<T>::read(element));
        return result;
    }
    static SAFEARRAY* give(std::vector<T> values) {
        auto array = platform::ScopedSafeArray::adopt(
            SafeArrayCreateVector(ValueTraits<T>::vt, 0, static_cast<ULONG>(values.size())));
        if (!array) throw std::bad_alloc();
        auto target = elementsOf<Element>(array.get()).begin();
        for (auto& value : values)
            *target++ = ValueTraits<T>::give(std::move(value));
        return array.detach();
    }
};

// Where a VARIANT of the kind of T stores its payload.
template <class Payload>
Payload* payloadOf(VARIANT& variant) {
    if constexpr (std::is_same_v<Payload, VARIANT>)
        return &variant;
    else if constexpr (std::is_same_v<Payload, DECIMAL>)
        return &variant.decVal;
    else
        return static_cast<Payload*>(static_cast<void*>(&variant.llVal));
}

// Puts a value into `variant`, whose old content is not looked at.
template <class T>
void putValue(VARIANT& variant, T&& value) {
    using Traits = ValueTraits<std::remove_cvref_t<T>>;
    using Payload = typename Traits::Payload;
    *payloadOf<Payload>(variant) = Traits::give(std::forward<T>(value));
    if constexpr (!std::is_same_v<Payload, VARIANT>) variant.vt = Traits::vt;
}

// A copy of a value, also of holders that are never copied by accident.
template <class T>
T copyOf(const T& value) {
    if constexpr (std::is_copy_constructible_v<T>)
        return value;
    else
        return T::borrow(value.get());
}

// A value as a VARIANT of its own.
template <class T>
platform::ScopedVariant toVariant(T&& value) {
    platform::ScopedVariant result;
    putValue(*result.inOut(), std::forward<T>(value));
    return result;
}

} // namespace kit
