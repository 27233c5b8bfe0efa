// One value of every kind that Automation knows: given back, and kept as a property.
#pragma once

#include "servers/kit/dispatch_object.h"

namespace sample {

enum class Color : LONG { Crimson = -1, Red, Green, Blue };

// The part of the sample server that is alike for every kind of value.
class Echoes : public kit::DispatchObject {
  public:
    using DispatchObject::DispatchObject;

    template <class T>
    T echo(T value) {
        return value;
    }
    template <class T, T Echoes::*member>
    T get() {
        return kit::copyOf(this->*member);
    }
    template <class T, T Echoes::*member>
    void set(T value) {
        this->*member = std::move(value);
    }

    // Declares Echo... and Prop... of every kind.
    template <class Class>
    static void declare(kit::ClassBuilder<Class>& builder);

  private:
    // Names a member below as a type.
    template <class T, T Echoes::*member>
    struct Kept {};

    signed char i1_ = 0;
    BYTE ui1_ = 0;
    SHORT i2_ = 0;
    USHORT ui2_ = 0;
    LONG i4_ = 0;
    ULONG ui4_ = 0;
    LONGLONG i8_ = 0;
    ULONGLONG ui8_ = 0;
    kit::Int int_;
    kit::UInt uint_;
    float r4_ = 0;
    double r8_ = 0;
    CY currency_{};
    kit::Date date_;
    platform::OleString bstr_;
    bool bool_ = false;
    DECIMAL decimal_{};
    kit::ErrorCode error_;
    kit::HResult hresult_;
    platform::ScopedVariant variant_;
    platform::ComPtr<IDispatch> dispatch_;
    platform::ComPtr<IUnknown> unknown_;
    Color color_ = Color::Red;
};

template <class Class>
void Echoes::declare(kit::ClassBuilder<Class>& builder) {
    auto kind = [&]<class T, T Echoes::*member>(const std::string& name, Kept<T, member>) {
        builder.method("Echo" + name, &Echoes::echo<T>, {"value"})
            .property("Prop" + name, &Echoes::get<T, member>, &Echoes::set<T, member>);
    };
    kind("I1", Kept<signed char, &Echoes::i1_>());
    kind("UI1", Kept<BYTE, &Echoes::ui1_>());
    kind("I2", Kept<SHORT, &Echoes::i2_>());
    kind("UI2", Kept<USHORT, &Echoes::ui2_>());
    kind("I4", Kept<LONG, &Echoes::i4_>());
    kind("UI4", Kept<ULONG, &Echoes::ui4_>());
    kind("I8", Kept<LONGLONG, &Echoes::i8_>());
    kind("UI8", Kept<ULONGLONG, &Echoes::ui8_>());
    kind("Int", Kept<kit::Int, &Echoes::int_>());
    kind("UInt", Kept<kit::UInt, &Echoes::uint_>());
    kind("R4", Kept<float, &Echoes::r4_>());
    kind("R8", Kept<double, &Echoes::r8_>());
    kind("Currency", Kept<CY, &Echoes::currency_>());
    kind("Date", Kept<kit::Date, &Echoes::date_>());
    kind("BSTR", Kept<platform::OleString, &Echoes::bstr_>());
    kind("Bool", Kept<bool, &Echoes::bool_>());
    kind("Decimal", Kept<DECIMAL, &Echoes::decimal_>());
    kind("Error", Kept<kit::ErrorCode, &Echoes::error_>());
    kind("HResult", Kept<kit::HResult, &Echoes::hresult_>());
    kind("Variant", Kept<platform::ScopedVariant, &Echoes::variant_>());
    kind("Dispatch", Kept<platform::ComPtr<IDispatch>, &Echoes::dispatch_>());
    kind("Unknown", Kept<platform::ComPtr<IUnknown>, &Echoes::unknown_>());
    kind("Color", Kept<Color, &Echoes::color_>());
}

} // namespace sample
