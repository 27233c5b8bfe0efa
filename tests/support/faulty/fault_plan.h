// Faulty fronts of COM objects: they pass every call on to the real object, but the n-th.
#pragma once

#include "platform/holders.h"
#include "support/com_double.h"

#include <cstring>

namespace axlink2::test {

// How all faulty fronts of one test behave, and what they have counted.
struct FaultPlan {
    enum Kind {
        Fail,        // E_FAIL, outputs untouched
        Garbage,     // E_FAIL, outputs pointing nowhere
        EmptySuccess // S_OK, outputs null
    };
    Kind kind = Fail;
    int failingCall = -1;       // counted from 0 over all objects; negative for none
    int calls = 0;              // how many calls that can fail there were
    bool always = false;        // every call fails
    bool counting = true;       // calls that don't count don't fail either
    const char* only = nullptr; // the one call that counts; null for all
    void (*onFailure)(const char* call) = nullptr; // runs inside the failing call
    void (*onOwnWork)(bool begins) = nullptr;      // around what only the fronts themselves do
    int outstanding = 0;                           // descriptions handed out and not taken back
    UINT lyingCount = 0;          // when set, what TYPEATTR and ITypeLib say of their counts
    bool lyingParameters = false; // functions claim parameters and give none

    // Whether this call is the one that fails.
    bool fails(const char* call) {
        if (!counting || (only && std::strcmp(only, call) != 0)) return false;
        if (calls++ != failingCall && !always) return false;
        if (onFailure) onFailure(call);
        return true;
    }
    // What the failing call answers, with `*out`, if there is one, as the plan says.
    template <class T>
    HRESULT answer(T** out) const {
        if (out && kind == Garbage) *out = reinterpret_cast<T*>(0x10);
        if (out && kind == EmptySuccess) *out = nullptr;
        return answer();
    }
    HRESULT answer() const { return kind == EmptySuccess ? S_OK : E_FAIL; }
};

// While it lives, a front works for itself.
class OwnWork {
  public:
    explicit OwnWork(const FaultPlan& plan) : notify_(plan.onOwnWork) {
        if (notify_) notify_(true);
    }
    OwnWork(const OwnWork&) = delete;
    ~OwnWork() {
        if (notify_) notify_(false);
    }

  private:
    void (*notify_)(bool);
};

// The part of every front: the real object and the plan. What else the front derives from answers
// where it says nothing itself. A front that belongs to another one shares its identity and keeps
// it alive.
template <class Interface, class Base = Interface>
class Faulty : public Counted<Base> {
  public:
    Faulty(Interface* real, const IID& iid, FaultPlan& plan, IUnknown* identity = nullptr)
        : Counted<Base>("front"), real_(platform::ComPtr<Interface>::borrow(real)), plan_(plan),
          iid_(iid), identity_(platform::ComPtr<IUnknown>::borrow(identity)) {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override {
        const bool isOwn = iid == iid_ || (iid == IID_IUnknown && !identity_);
        if (!isOwn && identity_) return identity_->QueryInterface(iid, out);
        return this->offer(isOwn, this, out);
    }

  protected:
    // The plan's answer to this call, or what `call` gives.
    template <class T, class Call>
    HRESULT orFails(const char* name, T** out, Call&& call) {
        return plan_.fails(name) ? plan_.answer(out) : call();
    }
    template <class Call>
    HRESULT orFails(const char* name, Call&& call) {
        return plan_.fails(name) ? plan_.answer() : call();
    }

    platform::ComPtr<Interface> real_;
    FaultPlan& plan_;

  private:
    const IID& iid_;
    platform::ComPtr<IUnknown> identity_;
};

} // namespace axlink2::test
