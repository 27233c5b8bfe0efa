// The base of every server object: IDispatch, connection points and class information.
#pragma once

#include "platform/counted.h"
#include "servers/kit/call_log.h"
#include "servers/kit/class_builder.h"
#include "servers/kit/connection_point.h"
#include "servers/kit/live_objects.h"

#include <array>

namespace kit {

// A class derives from this, hands its definition to the constructor, and writes its members as
// ordinary member functions. An object starts with one reference, the creator's.
class DispatchObject
    : public platform::Counted<IDispatch, IConnectionPointContainer, IProvideClassInfo2>,
      public LiveObject {
  public:
    explicit DispatchObject(const ClassDefinition& definition);

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID lcid, ITypeInfo** info) override;
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID riid, LPOLESTR* names, UINT count, LCID lcid,
                                            DISPID* dispids) override;
    // Arguments of another kind than declared go through VariantChangeType. Exceptions other than
    // ServerError, ComFailure and std::bad_alloc leave it.
    HRESULT STDMETHODCALLTYPE Invoke(DISPID dispid, REFIID riid, LCID lcid, WORD flags,
                                     DISPPARAMS* params, VARIANT* result, EXCEPINFO* excepInfo,
                                     UINT* argumentError) override;

    // E_NOTIMPL: clients ask by name.
    HRESULT STDMETHODCALLTYPE EnumConnectionPoints(IEnumConnectionPoints** points) override;
    HRESULT STDMETHODCALLTYPE FindConnectionPoint(REFIID iid, IConnectionPoint** point) override;

    HRESULT STDMETHODCALLTYPE GetClassInfo(ITypeInfo** info) override;
    HRESULT STDMETHODCALLTYPE GetGUID(DWORD kind, GUID* guid) override;

    // Sends an event to every sink, with C++ values as arguments; what sinks answer is dropped.
    template <class... Args>
    void fire(DISPID dispid, Args&&... args) {
        if (events_.connections() == 0) return;
        std::array<platform::ScopedVariant, sizeof...(Args)> values{
            toVariant(std::forward<Args>(args))...};
        std::array<VARIANT, sizeof...(Args)> reversed;
        for (std::size_t i = 0; i < values.size(); ++i)
            reversed[values.size() - 1 - i] = values[i].get();
        DISPPARAMS params{reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
        fireRaw(dispid, params);
    }
    // The same with arguments and an interface as they are; gives what ConnectionPoint::fire does.
    HRESULT fireRaw(DISPID dispid, DISPPARAMS& params, const IID& iid = IID_NULL) {
        return events_.fire(dispid, params, iid);
    }

    // The connection point of the default source interface.
    ConnectionPoint& events() { return events_; }
    const ClassDefinition& definition() const { return definition_; }

  protected:
    ~DispatchObject() override;

    // For interfaces beyond the base's: the pointer, without a reference, or null.
    virtual void* findInterface(REFIID iid);

  private:
    const ClassDefinition& definition_;
    ConnectionPoint events_;
};

// A new object for its creator.
template <class Class, class... Args>
platform::ComPtr<Class> create(Args&&... args) {
    return platform::ComPtr<Class>::adopt(new Class(std::forward<Args>(args)...));
}

// A new object as its IDispatch.
template <class Class, class... Args>
platform::ComPtr<IDispatch> createDispatch(Args&&... args) {
    return platform::ComPtr<IDispatch>::adopt(new Class(std::forward<Args>(args)...));
}

} // namespace kit
