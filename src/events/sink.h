// The object that a server calls with its events.
#pragma once

#include "host/interface.h"
#include "platform/com.h"

#include <boost/thread/shared_mutex.hpp>

#include <cstdint>
#include <thread>
#include <unordered_set>

namespace axlink2 {

// The sink of one connected object. It lives in one apartment, on the thread that made it. Its
// handle to the object is weak: a sink that outlives its object delivers nothing.
class CAXSink final : public IDispatch {
  public:
    // The first reference is the creator's.
    CAXSink(const hos::HOSInterfacePtr& source, const IID& sourceIID);
    CAXSink(const CAXSink&) = delete;
    CAXSink& operator=(const CAXSink&) = delete;

    // An event that is there already changes nothing.
    void addEvent(DISPID dispid);
    // Gives the number of events that remain.
    std::size_t removeEvent(DISPID dispid);

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override;
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID lcid, ITypeInfo** info) override;
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID lcid,
                                            DISPID* dispids) override;
    // Runs the listeners of that event before it returns, and lets no exception out. The result
    // stays empty and arguments stay as they are: S_OK, DISP_E_UNKNOWNINTERFACE for another `iid`
    // than IID_NULL, or RPC_E_WRONG_THREAD, where nothing is touched.
    HRESULT STDMETHODCALLTYPE Invoke(DISPID dispid, REFIID iid, LCID lcid, WORD flags,
                                     DISPPARAMS* params, VARIANT* result, EXCEPINFO* excepInfo,
                                     UINT* argumentError) override;

    DWORD cookie = 0; // of the connection, written by IConnectionPoint::Advise

  private:
    ~CAXSink() = default;
    bool hasEvent(DISPID dispid);

    std::uint32_t referenceCount = 1;
    const std::thread::id home = std::this_thread::get_id();
    const IID sourceIID;
    const hos::HOSInterfacePtr source;
    std::unordered_set<DISPID> events;
    boost::shared_mutex eventsLock;
};

} // namespace axlink2
