// Scoped owners of COM's resources: interface pointers, BSTR, VARIANT, SAFEARRAY.
#pragma once

#include "platform/com.h"
#include "platform/text.h"
#include "platform/variant_calls.h"

#include <memory>
#include <new>
#include <stdexcept>
#include <type_traits>
#include <utility>

namespace platform {

// Owns one Traits::Value and closes it at the end. Traits gives
//   Value                  what is owned,
//   empty()                the value that owns nothing,
//   isEmpty(value)         whether a value owns nothing,
//   close(value)           the release,
//   duplicate(value)       an own copy of what somebody else holds; may raise,
//   copyable               whether copying the holder is cheap and so allowed.
template <class Traits>
class Holder {
  public:
    using Value = typename Traits::Value;
    static constexpr bool holdsPointer = std::is_pointer_v<Value>;

    Holder() noexcept : value_(Traits::empty()) {}
    Holder(Holder&& other) noexcept : value_(other.detach()) {}
    Holder(const Holder& other) requires(Traits::copyable)
        : value_(Traits::duplicate(other.value_)) {}
    Holder& operator=(Holder other) noexcept {
        std::swap(value_, other.value_);
        return *this;
    }
    ~Holder() { Traits::close(value_); }

    // Takes over a value that the caller owns.
    static Holder adopt(Value value) noexcept {
        Holder holder;
        holder.value_ = value;
        return holder;
    }

    // Holds an own copy, or a further reference, of a value that stays its owner's.
    static Holder borrow(const Value& value) { return adopt(Traits::duplicate(value)); }

    // Gives the value away; the holder is empty afterwards.
    [[nodiscard]] Value detach() noexcept { return std::exchange(value_, Traits::empty()); }

    void reset() noexcept { Holder().swap(*this); }
    void swap(Holder& other) noexcept { std::swap(value_, other.value_); }

    // The value, still owned by the holder.
    const Value& get() const noexcept { return value_; }

    // Address for an out-parameter: releases first.
    Value* put() noexcept {
        reset();
        return std::addressof(value_);
    }

    // The same for an untyped out-parameter, such as QueryInterface's.
    void** putVoid() noexcept requires holdsPointer { return reinterpret_cast<void**>(put()); }

    // Address for a parameter that is read and replaced by a callee who releases the old value.
    Value* inOut() noexcept { return std::addressof(value_); }

    // Members of what a pointer points at, or of the value itself.
    auto operator->() noexcept {
        if constexpr (holdsPointer)
            return value_;
        else
            return std::addressof(value_);
    }
    auto operator->() const noexcept {
        if constexpr (holdsPointer)
            return value_;
        else
            return std::addressof(value_);
    }

    explicit operator bool() const noexcept { return !Traits::isEmpty(value_); }

    friend bool operator==(const Holder& a, const Holder& b) noexcept requires holdsPointer {
        return a.value_ == b.value_;
    }

  private:
    Value value_;
};

// What the traits of pointers share.
template <class Pointer>
struct PointerTraits {
    using Value = Pointer;
    static constexpr bool copyable = false;
    static Value empty() noexcept { return nullptr; }
    static bool isEmpty(Value value) noexcept { return value == nullptr; }
};

template <class Interface>
struct InterfaceTraits : PointerTraits<Interface*> {
    static constexpr bool copyable = true;
    static void close(Interface* object) noexcept {
        if (object) object->Release();
    }
    static Interface* duplicate(Interface* object) noexcept {
        if (object) object->AddRef();
        return object;
    }
};

struct BstrTraits : PointerTraits<BSTR> {
    static void close(BSTR text) noexcept { SysFreeString(text); }
    // Raises std::bad_alloc.
    static BSTR duplicate(BSTR text);
};

struct SafeArrayTraits : PointerTraits<SAFEARRAY*> {
    static void close(SAFEARRAY* array) noexcept {
        if (array) destroyArray(array);
    }
    // Raises std::bad_alloc, std::invalid_argument for what can't be copied.
    static SAFEARRAY* duplicate(SAFEARRAY* array);
};

// Whether a VARIANT of that type owns something that VariantClear gives back. Numbers don't, nor
// references; clearing them would be a call into the system for nothing.
constexpr bool ownsContent(VARTYPE vt) noexcept {
    if (vt < VT_BSTR || (vt & VT_BYREF)) return false;
    return vt > VT_UINT || vt == VT_BSTR || vt == VT_DISPATCH || vt == VT_UNKNOWN ||
           vt == VT_VARIANT;
}

struct VariantTraits {
    using Value = VARIANT;
    static constexpr bool copyable = false;
    static VARIANT empty() noexcept { return VARIANT{}; }
    static bool isEmpty(const VARIANT& value) noexcept { return value.vt == VT_EMPTY; }
    static void close(VARIANT& value) noexcept {
        if (ownsContent(value.vt)) clearVariant(value);
    }
    // Raises std::bad_alloc, std::invalid_argument for what can't be copied.
    static VARIANT duplicate(const VARIANT& value);
};

// A counted reference to a COM object; copying adds a reference.
template <class Interface>
using ComPtr = Holder<InterfaceTraits<Interface>>;

using ScopedBstr = Holder<BstrTraits>;
using ScopedSafeArray = Holder<SafeArrayTraits>;

// A VARIANT that is cleared at the end; `->` reaches its fields.
using ScopedVariant = Holder<VariantTraits>;

// Another interface of an object; empty when the object is null or doesn't offer it.
template <class Interface, class From>
ComPtr<Interface> queryInterface(From* object, REFIID iid) {
    ComPtr<Interface> result;
    if (object && FAILED(object->QueryInterface(iid, result.putVoid())))
        (void)result.detach(); // an out-parameter of a failed call is not to be trusted
    return result;
}

// A new BSTR with the text. Raises std::bad_alloc.
ScopedBstr makeBstr(OleView text);

} // namespace platform
