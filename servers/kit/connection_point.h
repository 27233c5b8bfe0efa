// The connection point of an object's default source interface.
#pragma once

#include "platform/holders.h"

#include <vector>

namespace kit {

class DispatchObject;

// Part of its object, whose references it shares; an identity of its own all the same. Like the
// object it is used on one thread at a time.
class ConnectionPoint final : public IConnectionPoint {
  public:
    ConnectionPoint(DispatchObject& owner, const IID& iid) : owner_(owner), iid_(iid) {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;

    HRESULT STDMETHODCALLTYPE GetConnectionInterface(IID* iid) override;
    HRESULT STDMETHODCALLTYPE
    GetConnectionPointContainer(IConnectionPointContainer** container) override;
    HRESULT STDMETHODCALLTYPE Advise(IUnknown* sink, DWORD* cookie) override;
    HRESULT STDMETHODCALLTYPE Unadvise(DWORD cookie) override;
    // E_NOTIMPL: nobody needs to know who else listens.
    HRESULT STDMETHODCALLTYPE EnumConnections(IEnumConnections** connections) override;

    // Calls every sink that is connected at this moment. Gives S_OK, or what the last sink that
    // failed answered. Sinks expect IID_NULL as the interface.
    HRESULT fire(DISPID dispid, DISPPARAMS& params, const IID& iid = IID_NULL);

    std::size_t connections() const { return sinks_.size(); }

  private:
    struct Sink {
        DWORD cookie;
        platform::ComPtr<IDispatch> dispatch;
    };

    DispatchObject& owner_;
    const IID& iid_;
    std::vector<Sink> sinks_;
    DWORD lastCookie_ = 0;
};

} // namespace kit
