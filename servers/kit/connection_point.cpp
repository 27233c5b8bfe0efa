// Keeping sinks and calling them.
#include "servers/kit/connection_point.h"

#include "servers/kit/dispatch_object.h"

#include <algorithm>

namespace kit {

HRESULT ConnectionPoint::QueryInterface(REFIID iid, void** object) {
    if (!object) return E_POINTER;
    *object = nullptr;
    if (iid != IID_IUnknown && iid != IID_IConnectionPoint) return E_NOINTERFACE;
    AddRef();
    *object = static_cast<IConnectionPoint*>(this);
    return S_OK;
}

ULONG ConnectionPoint::AddRef() { return owner_.AddRef(); }
ULONG ConnectionPoint::Release() { return owner_.Release(); }

HRESULT ConnectionPoint::GetConnectionInterface(IID* iid) {
    if (!iid) return E_POINTER;
    *iid = iid_;
    return S_OK;
}

HRESULT ConnectionPoint::GetConnectionPointContainer(IConnectionPointContainer** container) {
    if (!container) return E_POINTER;
    *container = platform::ComPtr<IConnectionPointContainer>::borrow(&owner_).detach();
    return S_OK;
}

HRESULT ConnectionPoint::Advise(IUnknown* sink, DWORD* cookie) {
    if (!sink || !cookie) return E_POINTER;
    *cookie = 0;
    auto dispatch = platform::queryInterface<IDispatch>(sink, iid_);
    if (!dispatch) dispatch = platform::queryInterface<IDispatch>(sink, IID_IDispatch);
    if (!dispatch) return CONNECT_E_CANNOTCONNECT;
    sinks_.push_back({++lastCookie_, std::move(dispatch)});
    *cookie = lastCookie_;
    return S_OK;
}

HRESULT ConnectionPoint::Unadvise(DWORD cookie) {
    const auto found = std::ranges::find(sinks_, cookie, &Sink::cookie);
    if (found == sinks_.end()) return CONNECT_E_NOCONNECTION;
    // The sink's last reference may lead back here: it goes once the list is in order.
    const Sink gone = std::move(*found);
    sinks_.erase(found);
    return S_OK;
}

HRESULT ConnectionPoint::EnumConnections(IEnumConnections** connections) {
    if (!connections) return E_POINTER;
    *connections = nullptr;
    return E_NOTIMPL;
}

HRESULT ConnectionPoint::fire(DISPID dispid, DISPPARAMS& params, const IID& iid) {
    const auto call = [&](IDispatch& sink) {
        return sink.Invoke(dispid, iid, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &params, nullptr,
                           nullptr, nullptr);
    };
    // One sink needs no list; of several, each call may change it.
    if (sinks_.empty()) return S_OK;
    if (sinks_.size() == 1) {
        const auto only = sinks_.front().dispatch;
        return call(*only.get());
    }
    std::vector<platform::ComPtr<IDispatch>> snapshot;
    for (const auto& sink : sinks_)
        snapshot.push_back(sink.dispatch);
    HRESULT result = S_OK;
    for (const auto& sink : snapshot)
        if (const HRESULT answer = call(*sink.get()); FAILED(answer)) result = answer;
    return result;
}

} // namespace kit
