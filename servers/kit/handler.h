// Member functions and variables as something that IDispatch::Invoke can call.
#pragma once

#include "servers/kit/parameters.h"

#include <functional>
#include <tuple>
#include <type_traits>

namespace kit {

class DispatchObject;

// One call of IDispatch::Invoke.
struct Call {
    WORD flags;
    LCID lcid;
    DISPPARAMS& params;
    VARIANT* result; // null when the caller wants none
    EXCEPINFO* excepInfo;
    UINT* argumentError;
    bool isPut; // the handler called is a put or putref one
};

// What a member does. May raise ServerError and ComFailure; what run() answers, Invoke answers.
class Handler {
  public:
    virtual ~Handler() = default;
    virtual HRESULT run(DispatchObject& object, Call& call) const = 0;
};

// The result and the parameters of a member function.
template <class R, class... Ps>
struct Signature {
    using Result = R;
    static constexpr UINT count = sizeof...(Ps);

    // The parameters as the type library declares them, without names.
    static std::vector<ParamSpec> params() {
        return {ParamSpec{
            {}, Slot<std::remove_cvref_t<Ps>>::type(), Slot<std::remove_cvref_t<Ps>>::flags}...};
    }

    template <class Function, class Class>
    static void call(Function function, Class& object, Call& call) {
        if (call.params.cArgs > count) throw ComFailure{DISP_E_BADPARAMCOUNT};
        callWith(function, object, call, std::make_integer_sequence<UINT, count>());
    }

  private:
    template <class Function, class Class, UINT... positions>
    static void callWith(Function function, Class& object, Call& call,
                         std::integer_sequence<UINT, positions...>) {
        std::tuple<Slot<std::remove_cvref_t<Ps>>...> slots(
            argumentAt(call.params, positions, count, call.isPut)...);
        if constexpr (std::is_void_v<R>) {
            std::invoke(function, object, std::get<positions>(slots).pass()...);
            (std::get<positions>(slots).commit(), ...);
        } else {
            R result = std::invoke(function, object, std::get<positions>(slots).pass()...);
            (std::get<positions>(slots).commit(), ...);
            if (call.result) putValue(*call.result, std::move(result));
        }
    }
};

// The Signature of a pointer to a member function.
template <class C, class R, class... Ps>
Signature<std::remove_cvref_t<R>, Ps...> signatureOf(R (C::*)(Ps...));
template <class C, class R, class... Ps>
Signature<std::remove_cvref_t<R>, Ps...> signatureOf(R (C::*)(Ps...) const);
template <class Function>
using SignatureOf = decltype(signatureOf(std::declval<Function>()));

// A member function of Class, or of a base of it.
template <class Class, class Function>
class FunctionHandler final : public Handler {
  public:
    explicit FunctionHandler(Function function) : function_(function) {}
    HRESULT run(DispatchObject& object, Call& call) const override {
        SignatureOf<Function>::call(function_, static_cast<Class&>(object), call);
        return S_OK;
    }

  private:
    Function function_;
};

// A data member of Class, read and written.
template <class Class, class T>
class VariableHandler final : public Handler {
  public:
    explicit VariableHandler(T Class::*variable) : variable_(variable) {}
    HRESULT run(DispatchObject& object, Call& call) const override {
        T& variable = static_cast<Class&>(object).*variable_;
        auto get = [&](Class&) { return copyOf(variable); };
        auto put = [&](Class&, T value) { variable = std::move(value); };
        if (call.isPut)
            Signature<void, T>::call(put, static_cast<Class&>(object), call);
        else
            Signature<T>::call(get, static_cast<Class&>(object), call);
        return S_OK;
    }

  private:
    T Class::*variable_;
};

// Whatever a server's author wants to do with a call.
template <class Class>
class RawHandler final : public Handler {
  public:
    using Function = std::function<HRESULT(Class&, Call&)>;
    explicit RawHandler(Function function) : function_(std::move(function)) {}
    HRESULT run(DispatchObject& object, Call& call) const override {
        return function_(static_cast<Class&>(object), call);
    }

  private:
    Function function_;
};

} // namespace kit
