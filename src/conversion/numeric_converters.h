// Converters of numbers and characters: those of parameters, and those of properties.
#pragma once

#include "conversion/arg_converter.h"
#include "conversion/variant_access.h"
#include "host/array.h"
#include "host/exception.h"
#include "host/message_ids.h"
#include "host/number_conversion.h"

#include <cstdint>
#include <type_traits>

namespace axlink2 {

// The value form of a number: the integer in the word, or the bit pattern of a double.
template <class T>
hos::HOSValue numberValue(T number) {
    if constexpr (std::is_floating_point_v<T>)
        return hos::HOSValue::ofDouble(number);
    else if constexpr (std::is_signed_v<T>)
        return hos::HOSValue::ofInteger(number);
    else
        return hos::HOSValue::ofUnsigned(number);
}

// A number of type `T` as a parameter or a result. The host has already made an integer of the
// declared width, so integers go out without a range check.
template <class T>
class ArgVLNumericConv : public ArgVarConverter {
  public:
    using ArgVarConverter::ArgVarConverter;

    hos::HOSValue fromVariant(const VARIANT& v) override {
        return numberValue(VariantField<T>::get(*ReadAs(v, VariantField<T>::vt)));
    }
    void toVariant(hos::HOSValue value, VARIANT* out, VARIANT* backing, bool byRef) override {
        placeValue(out, backing, byRef, [value](VARIANT& v) {
            if constexpr (std::is_floating_point_v<T>)
                VariantField<T>::set(v, static_cast<T>(value.number()));
            else
                VariantField<T>::set(v, static_cast<T>(value.word()));
        });
    }
};

template <>
class ArgVLNumericConv<bool> : public ArgVarConverter {
  public:
    using ArgVarConverter::ArgVarConverter;

    hos::HOSValue fromVariant(const VARIANT& v) override {
        const ReadAs read(v, VT_BOOL);
        // What the server gave counts as true when it isn't zero; what was made here is exact.
        const bool isTrue = read.wasChanged() ? read->boolVal == VARIANT_TRUE : read->boolVal != 0;
        return hos::HOSValue::ofUnsigned(isTrue ? 1 : 0);
    }
    void toVariant(hos::HOSValue value, VARIANT* out, VARIANT* backing, bool byRef) override {
        placeValue(out, backing, byRef, [value](VARIANT& v) {
            v.vt = VT_BOOL;
            v.boolVal = value.isNull() ? VARIANT_FALSE : VARIANT_TRUE;
        });
    }
};

// A number of type `T` as a property: a double on the host's side. `T` is of at most 32 bits.
template <class T>
class PropVLNumericConv : public ArgVarConverter {
  public:
    explicit PropVLNumericConv(VARTYPE vartype) : ArgVarConverter(vartype, "double scalar") {}

    hos::HOSValue fromVariant(const VARIANT& v) override {
        return hos::HOSValue::ofDouble(VariantField<T>::get(*ReadAs(v, readType)));
    }
    void toVariant(hos::HOSValue value, VARIANT* out, VARIANT* backing, bool byRef) override {
        placeValue(out, backing, byRef, [value](VARIANT& v) {
            if constexpr (std::is_same_v<T, float>)
                VariantField<float>::set(v, static_cast<float>(value.number()));
            else
                VariantField<T>::set(v, velmar::convertNumber<T>(value.number()));
            // Servers take the signed type for the unsigned one of 32 bits, bit by bit.
            if constexpr (std::is_same_v<T, std::uint32_t>) v.vt = VT_I4;
        });
    }

  private:
    static constexpr VARTYPE readType = std::is_same_v<T, std::int32_t>    ? VARTYPE{VT_INT}
                                        : std::is_same_v<T, std::uint32_t> ? VARTYPE{VT_UINT}
                                                                           : VariantField<T>::vt;
};

// A byte, which is a character on the host's side. A number is taken as well, rounded and
// saturated.
template <class T>
class ArgVLCharConv : public ArgVarConverter {
  public:
    explicit ArgVLCharConv(VARTYPE vartype) : ArgVarConverter(vartype, "char") {}

    hos::HOSValue fromVariant(const VARIANT& v) override {
        const T byte = VariantField<T>::get(*ReadAs(v, VariantField<T>::vt));
        constexpr std::size_t scalar[] = {1, 1};
        auto array =
            harray::from_velmar(harray::detail::do_create_numeric(2, scalar, hxCHAR_CLASS, hxREAL));
        *static_cast<char16_t*>(hxGetWritableData(array.get())) = static_cast<char16_t>(byte);
        return hos::HOSValue::ofPointer(harray::to_velmar(std::move(array)));
    }
    void toVariant(hos::HOSValue value, VARIANT* out, VARIANT* backing, bool byRef) override {
        if (!value.array() || !hxIsScalar(value.array()))
            hmsgcore::raise("VELMAR:class:MustBeScalar",
                            VELMAR::COM::COMException(std::string("Parameter must be scalar.")));
        placeValue(out, backing, byRef,
                   [value](VARIANT& v) { VariantField<T>::set(v, byteOf(value.array())); });
    }

  private:
    // Of a character, its low byte.
    static T byteOf(const hxArray* array) {
        if (hxGetClassID(array) == hxCHAR_CLASS) return *static_cast<const T*>(hxGetData(array));
        return velmar::convertNumber<T>(hxGetScalar(array));
    }
};

} // namespace axlink2
