// The parameters of members: inputs, outputs, what may be left out; and their way through
// DISPPARAMS.
#pragma once

#include "servers/kit/values.h"

#include <optional>
#include <utility>

namespace kit {

// An [out] parameter; assign to it. A failing member's outputs don't reach the caller.
template <class T>
struct Out {
    T& value;
    Out& operator=(T newValue) {
        value = std::move(newValue);
        return *this;
    }
};

// An [in, out] parameter; read `value` and assign to it.
template <class T>
struct InOut {
    T& value;
    InOut& operator=(T newValue) {
        value = std::move(newValue);
        return *this;
    }
};

// An [in, optional] parameter, empty when the caller leaves it out.
template <class T>
using Optional = std::optional<T>;

// One declared parameter's place among the arguments of a call.
struct Argument {
    DISPPARAMS& params;
    UINT index; // in rgvarg; cArgs when the caller gave too few

    // The argument. Raises ComFailure when there is none.
    VARIANTARG& need() const {
        if (index >= params.cArgs) throw ComFailure{DISP_E_BADPARAMCOUNT};
        return params.rgvarg[index];
    }

    // Whether the caller left it out, or put the marker for that in its place.
    bool missing() const {
        if (index >= params.cArgs) return true;
        const VARIANTARG& argument = params.rgvarg[index];
        return argument.vt == VT_ERROR && argument.scode == DISP_E_PARAMNOTFOUND;
    }
};

// The place of the parameter at `position` of `declared` ones. Of a put, rgvarg[0] is the last
// parameter, whatever else is given.
inline Argument argumentAt(DISPPARAMS& params, UINT position, UINT declared, bool isPut) {
    if (isPut && position + 1 == declared) return {params, 0};
    const UINT given = params.cArgs - (isPut && params.cArgs > 0 ? 1 : 0);
    return {params, position < given ? params.cArgs - 1 - position : params.cArgs};
}

// Makes `converted` a VARIANT of the kind `vt` from an argument. Raises ComFailure with `index`.
void coerce(VARIANTARG& argument, VARTYPE vt, VARIANT& converted, UINT index);

// Stores *value, which is given away, behind a by-reference argument of another kind than its own.
// Raises ComFailure with `index`.
void storeConverted(VARIANTARG& argument, VARIANT& value, UINT index);

// The kind that stands for all whose payloads are stored as those of `vt` are.
constexpr VARTYPE storageOf(VARTYPE vt) {
    switch (vt) {
    case VT_INT:
        return VT_I4;
    case VT_UINT:
        return VT_UI4;
    case VT_HRESULT:
        return VT_ERROR;
    default:
        return vt;
    }
}
constexpr bool storedAlike(VARTYPE a, VARTYPE b) { return storageOf(a) == storageOf(b); }

// What an argument was converted into, kept to the end of the call.
using Converted = platform::ScopedVariant;

// The payload of an argument as a T needs it, in place or in `converted`. Raises ComFailure.
template <class T>
typename ValueTraits<T>::Payload& locate(VARIANTARG& argument, Converted& converted, UINT index) {
    using Payload = typename ValueTraits<T>::Payload;
    constexpr VARTYPE vt = ValueTraits<T>::vt;
    if (argument.vt & VT_BYREF) {
        const auto base = static_cast<VARTYPE>(argument.vt & ~VT_BYREF);
        if (!argument.byref) throw ComFailure{DISP_E_TYPEMISMATCH, index};
        if (storedAlike(base, vt)) return *static_cast<Payload*>(argument.byref);
        if (base == VT_VARIANT && !(argument.pvarVal->vt & VT_BYREF))
            return locate<T>(*argument.pvarVal, converted, index);
    } else if (storedAlike(argument.vt, vt)) {
        return *payloadOf<Payload>(argument);
    }
    if constexpr (vt == VT_VARIANT) {
        return argument;
    } else {
        coerce(argument, vt, *converted.put(), index);
        return *payloadOf<Payload>(*converted.inOut());
    }
}

// Slot<P> carries one parameter of a member through a call: made from its argument, passed to the
// member, and, once the member has succeeded, committed.
template <class P>
class Slot {
  public:
    static constexpr WORD flags = PARAMFLAG_FIN;
    static TypeSpec type() { return ValueTraits<P>::type(); }

    explicit Slot(const Argument& argument)
        : value_(ValueTraits<P>::read(locate<P>(required(argument), converted_, argument.index))) {}
    P&& pass() { return std::move(value_); }
    void commit() {}

  private:
    static VARIANTARG& required(const Argument& argument) {
        // Two kinds may hold the marker itself.
        constexpr bool holdsMarker =
            ValueTraits<P>::vt == VT_VARIANT || ValueTraits<P>::vt == VT_ERROR;
        VARIANTARG& given = argument.need();
        if (!holdsMarker && argument.missing())
            throw ComFailure{DISP_E_PARAMNOTOPTIONAL, argument.index};
        return given;
    }

    Converted converted_;
    P value_;
};

template <class T>
class Slot<std::optional<T>> {
  public:
    static constexpr WORD flags = PARAMFLAG_FIN | PARAMFLAG_FOPT;
    static TypeSpec type() { return ValueTraits<T>::type(); }

    explicit Slot(const Argument& argument) {
        if (!argument.missing())
            value_.emplace(
                ValueTraits<T>::read(locate<T>(argument.need(), converted_, argument.index)));
    }
    std::optional<T>&& pass() { return std::move(value_); }
    void commit() {}

  private:
    Converted converted_;
    std::optional<T> value_;
};

// What outputs share: a by-reference argument and the value on its way there.
template <class T, bool replaces>
class OutputSlot {
  public:
    static TypeSpec type() { return pointerTo(ValueTraits<T>::type()); }

    explicit OutputSlot(const Argument& argument)
        : argument_(argument.need()), index_(argument.index) {
        if (!(argument_.vt & VT_BYREF) || !argument_.byref)
            throw ComFailure{DISP_E_TYPEMISMATCH, index_};
    }

    // The old content of an [in, out] argument is released; that of an [out] one is not looked at.
    void commit() {
        using Payload = typename ValueTraits<T>::Payload;
        const auto base = static_cast<VARTYPE>(argument_.vt & ~VT_BYREF);
        if (!storedAlike(base, ValueTraits<T>::vt)) {
            platform::ScopedVariant given = toVariant(std::move(value_));
            return storeConverted(argument_, *given.inOut(), index_);
        }
        Payload payload = ValueTraits<T>::give(std::move(value_));
        auto& target = *static_cast<Payload*>(argument_.byref);
        if constexpr (replaces) ValueTraits<T>::dispose(target);
        target = payload;
    }

  protected:
    VARIANTARG& argument_;
    UINT index_;
    T value_{};
};

template <class T>
class Slot<Out<T>> : public OutputSlot<T, false> {
  public:
    static constexpr WORD flags = PARAMFLAG_FOUT;
    using OutputSlot<T, false>::OutputSlot;
    Out<T> pass() { return {this->value_}; }
};

template <class T>
class Slot<InOut<T>> : public OutputSlot<T, true> {
  public:
    static constexpr WORD flags = PARAMFLAG_FIN | PARAMFLAG_FOUT;
    explicit Slot(const Argument& argument) : OutputSlot<T, true>(argument) {
        Converted converted;
        this->value_ = ValueTraits<T>::read(locate<T>(this->argument_, converted, this->index_));
    }
    InOut<T> pass() { return {this->value_}; }
};

} // namespace kit
