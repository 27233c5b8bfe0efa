// A server whose persistence does what a test says.
#pragma once

#include "support/com_double.h"
#include "support/served.h"

#include <algorithm>
#include <functional>
#include <map>

namespace axlink2::test {

class PersistingServer : public Served<PersistingServer>,
                         public Silent<IPersistFile>,
                         public Silent<IPersistStorage>,
                         public Silent<IPersistStreamInit>,
                         public Silent<IPersistStream> {
  public:
    static constexpr const char* className = "Persisting";
    static void declare(Builder& builder) { builder.property("Value", &PersistingServer::value); }
    LONG value() { return 42; }

    // What the objects do, for the length of a test.
    struct Script {
        std::vector<IID> offered;
        HRESULT refusal; // of QueryInterface for what isn't offered, when it is a failure
        std::map<std::string, HRESULT> results; // of calls by name; S_OK for the rest
        std::function<void(LPCOLESTR)> withFile;
        std::function<void(IStorage*)> withStorage;
        std::function<void(IStream*)> withStream;
        std::function<void()> whenAsked; // once, for an interface or type information
        std::string calls;               // their names in order, each with a blank
    };
    static inline Script script;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        if (iid != IID_IDispatch && iid != IID_IUnknown && script.whenAsked)
            std::exchange(script.whenAsked, {})();
        const bool isOffered = std::ranges::count(script.offered, iid) > 0;
        if (SUCCEEDED(script.refusal) || isOffered || iid == IID_IDispatch || iid == IID_IUnknown)
            return DispatchObject::QueryInterface(iid, object);
        *object = nullptr;
        return script.refusal;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID lcid, ITypeInfo** info) override {
        if (script.whenAsked) std::exchange(script.whenAsked, {})();
        return DispatchObject::GetTypeInfo(index, lcid, info);
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return DispatchObject::AddRef(); }
    ULONG STDMETHODCALLTYPE Release() override { return DispatchObject::Release(); }

    HRESULT STDMETHODCALLTYPE GetClassID(CLSID* id) override {
        *id = clsid();
        return answer("GetClassID");
    }
    HRESULT STDMETHODCALLTYPE Load(LPCOLESTR path, DWORD mode) override {
        return answer(mode ? "File.LoadOtherwise" : "File.Load", script.withFile, path);
    }
    HRESULT STDMETHODCALLTYPE Save(LPCOLESTR path, BOOL remember) override {
        return answer(remember ? "File.SaveAndRemember" : "File.Save", script.withFile, path);
    }

    HRESULT STDMETHODCALLTYPE Load(IStorage* storage) override {
        return answer("Storage.Load", script.withStorage, storage);
    }
    HRESULT STDMETHODCALLTYPE Save(IStorage* storage, BOOL sameAsLoad) override {
        return answer(sameAsLoad ? "Storage.SaveSame" : "Storage.Save", script.withStorage,
                      storage);
    }
    HRESULT STDMETHODCALLTYPE SaveCompleted(IStorage* storage) override {
        return answer(storage ? "CompletedElsewhere" : "Completed");
    }
    HRESULT STDMETHODCALLTYPE HandsOffStorage() override { return answer("HandsOff"); }

    HRESULT STDMETHODCALLTYPE Load(IStream* stream) override {
        return answer("Stream.Load", script.withStream, stream);
    }
    HRESULT STDMETHODCALLTYPE Save(IStream* stream, BOOL) override {
        return answer("Stream.Save", script.withStream, stream);
    }

  private:
    void* findInterface(REFIID iid) override {
        if (std::ranges::find(script.offered, iid) == script.offered.end()) return nullptr;
        if (iid == IID_IPersistFile) return static_cast<IPersistFile*>(this);
        if (iid == IID_IPersistStorage) return static_cast<IPersistStorage*>(this);
        if (iid == IID_IPersistStreamInit) return static_cast<IPersistStreamInit*>(this);
        return static_cast<IPersistStream*>(this);
    }

    static HRESULT answer(const std::string& call) {
        script.calls += call + ' ';
        const auto found = script.results.find(call);
        return found == script.results.end() ? S_OK : found->second;
    }
    template <class Medium>
    static HRESULT answer(const std::string& call, const std::function<void(Medium)>& work,
                          Medium medium) {
        const HRESULT hr = answer(call);
        if (work) work(medium);
        return hr;
    }
};

} // namespace axlink2::test
