// A server whose persistence does what a test says.
#pragma once

#include "servers/kit/kit.h"

#include <functional>
#include <map>

namespace axlink2::test {

class PersistingServer : public kit::DispatchObject,
                         public IPersistFile,
                         public IPersistStorage,
                         public IPersistStreamInit,
                         public IPersistStream {
  public:
    PersistingServer() : DispatchObject(definition()) {}
    static const kit::ClassDefinition& definition();

    LONG value() { return 42; }

    // What the objects do, for the length of a test.
    struct Script {
        std::vector<IID> offered;
        std::map<std::string, HRESULT> results; // of calls by name; S_OK for the rest
        std::function<void(IStorage*)> withStorage;
        std::function<void(IStream*)> withStream;
        std::string calls; // their names in order, each with a blank
    };
    static inline Script script;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        return DispatchObject::QueryInterface(iid, object);
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return DispatchObject::AddRef(); }
    ULONG STDMETHODCALLTYPE Release() override { return DispatchObject::Release(); }

    HRESULT STDMETHODCALLTYPE GetClassID(CLSID* clsid) override;
    HRESULT STDMETHODCALLTYPE IsDirty() override { return S_OK; }

    HRESULT STDMETHODCALLTYPE Load(LPCOLESTR, DWORD) override { return answer("File.Load"); }
    HRESULT STDMETHODCALLTYPE Save(LPCOLESTR, BOOL) override { return answer("File.Save"); }
    HRESULT STDMETHODCALLTYPE SaveCompleted(LPCOLESTR) override { return E_UNEXPECTED; }
    HRESULT STDMETHODCALLTYPE GetCurFile(LPOLESTR*) override { return E_UNEXPECTED; }

    HRESULT STDMETHODCALLTYPE InitNew(IStorage*) override { return E_UNEXPECTED; }
    HRESULT STDMETHODCALLTYPE Load(IStorage* storage) override;
    HRESULT STDMETHODCALLTYPE Save(IStorage* storage, BOOL sameAsLoad) override;
    HRESULT STDMETHODCALLTYPE SaveCompleted(IStorage* storage) override;
    HRESULT STDMETHODCALLTYPE HandsOffStorage() override { return answer("HandsOff"); }

    HRESULT STDMETHODCALLTYPE InitNew() override { return E_UNEXPECTED; }
    HRESULT STDMETHODCALLTYPE Load(IStream* stream) override;
    HRESULT STDMETHODCALLTYPE Save(IStream* stream, BOOL clearDirty) override;
    HRESULT STDMETHODCALLTYPE GetSizeMax(ULARGE_INTEGER*) override { return E_UNEXPECTED; }

  private:
    void* findInterface(REFIID iid) override;
    static HRESULT answer(const std::string& call);
};

} // namespace axlink2::test
