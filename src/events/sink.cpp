// IDispatch for events: the filter by DISPID.
#include "events/sink.h"

#include "events/delivery.h"
#include "platform/holders.h"

#include <boost/thread/locks.hpp>

namespace axlink2 {

CAXSink::CAXSink(const hos::HOSInterfacePtr& source, const IID& sourceIID)
    : sourceIID(sourceIID), source(source, hos::HOSReferenceType::Weak) {}

void CAXSink::addEvent(DISPID dispid) {
    const boost::unique_lock<boost::shared_mutex> lock(eventsLock);
    events.insert(dispid);
}

std::size_t CAXSink::removeEvent(DISPID dispid) {
    const boost::unique_lock<boost::shared_mutex> lock(eventsLock);
    events.erase(dispid);
    return events.size();
}

bool CAXSink::hasEvent(DISPID dispid) {
    const boost::shared_lock<boost::shared_mutex> lock(eventsLock);
    return events.contains(dispid);
}

HRESULT CAXSink::QueryInterface(REFIID iid, void** out) {
    if (!out) return E_POINTER;
    *out = nullptr;
    if (!IsEqualGUID(iid, IID_IUnknown) && !IsEqualGUID(iid, IID_IDispatch) &&
        !IsEqualGUID(iid, sourceIID))
        return E_NOINTERFACE;
    AddRef();
    *out = static_cast<IDispatch*>(this);
    return S_OK;
}

ULONG CAXSink::AddRef() { return ++referenceCount; }

ULONG CAXSink::Release() {
    const std::uint32_t left = --referenceCount;
    if (left == 0) delete this;
    return left;
}

// Types and names aren't told: servers call by DISPID.
HRESULT CAXSink::GetTypeInfoCount(UINT* count) {
    if (!count) return E_POINTER;
    *count = 1;
    return S_OK;
}

HRESULT CAXSink::GetTypeInfo(UINT index, LCID, ITypeInfo** info) {
    if (!info) return E_POINTER;
    *info = nullptr;
    return index == 0 ? S_OK : DISP_E_BADINDEX;
}

HRESULT CAXSink::GetIDsOfNames(REFIID iid, LPOLESTR*, UINT, LCID, DISPID*) {
    return IsEqualGUID(iid, IID_NULL) ? S_OK : DISP_E_UNKNOWNINTERFACE;
}

HRESULT CAXSink::Invoke(DISPID dispid, REFIID iid, LCID, WORD, DISPPARAMS* params, VARIANT* result,
                        EXCEPINFO*, UINT*) {
    if (std::this_thread::get_id() != home) return RPC_E_WRONG_THREAD;
    if (!IsEqualGUID(iid, IID_NULL)) return DISP_E_UNKNOWNINTERFACE;
    if (result) VariantInit(result);
    try {
        if (!hasEvent(dispid)) return S_OK;
        // A listener may take the last reference away.
        const auto kept = platform::ComPtr<CAXSink>::borrow(this);
        deliverEvent(source, dispid, params);
    } catch (...) {
        // The server has no use for it, and nothing of it may reach its frames.
    }
    return S_OK;
}

} // namespace axlink2
